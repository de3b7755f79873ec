#include "TolenCore/Path.h"

#include <gtest/gtest.h>

namespace Tolen::Tests {
namespace {

TEST(Path, ATextIsHeldInNormalForm) {
    struct Case {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"", ""},
        {"a", "a"},
        {"a/b.ksl", "a/b.ksl"},
        {"/", "/"},
        {"//", "/"},
        {"/a//b/", "/a/b"},
        {".", ""},
        {"./a/./b/.", "a/b"},
        {"a/../b", "b"},
        {"a/..", ""},
        {"a/b/..", "a"},
        {"..", ".."},
        {"../a", "../a"},
        {"../a/..", ".."},
        {"../../a/../b", "../../b"},
        {"a/../../b", "../b"},
        {"/..", "/"},
        {"/../a", "/a"},
        {"/a/..", "/"},
        {"/a/../../b", "/b"},
        {"...", "..."},
        {"a/..b/c", "a/..b/c"},
        {"a b/c d", "a b/c d"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Path(c.text).AsString(), c.expected) << c.text;
        EXPECT_STREQ(Path(c.text).AsChar(), c.expected);
        EXPECT_EQ(Path(Path(c.text).AsString()), Path(c.text)) << c.text;
    }
    EXPECT_TRUE(Path(nullptr).IsEmpty());
}

TEST(Path, FolderAndFileName_AreTheTwoEnds) {
    struct Case {
        const char* path;
        const char* folder;
        const char* file;
    };
    const Case cases[] = {
        {"a", "", "a"},   {"a/b", "a", "b"}, {"/a/b/c.ksl", "/a/b", "c.ksl"},
        {"/a", "/", "a"}, {"/", "/", ""},    {"", "", ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Path(c.path).GetFolder().AsString(), c.folder) << c.path;
        EXPECT_EQ(Path(c.path).GetFileName(), c.file) << c.path;
    }
}

TEST(Path, Joining_KeepsAnAbsolutePathAndFoldsTheRest) {
    EXPECT_EQ(Path("a") / Path("b"), Path("a/b"));
    EXPECT_EQ(Path("a/b") / Path("../c"), Path("a/c"));
    EXPECT_EQ(Path("a") / Path("/c"), Path("/c"));
    EXPECT_EQ(Path() / Path("c"), Path("c"));
    EXPECT_EQ(Path("a") / Path(), Path("a"));
    EXPECT_EQ(Path("/") / Path("c"), Path("/c"));
    EXPECT_TRUE(Path("/c").IsAbsolute());
    EXPECT_FALSE(Path("c").IsAbsolute());
}

TEST(Path, ALongPath_TakesLinearTime) {
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text += "a/../";
    }
    EXPECT_TRUE(Path(text).IsEmpty());
    text.clear();
    for (int i = 0; i < 200000; ++i) {
        text += "../";
    }
    EXPECT_EQ(Path(text).AsString().size(), 3u * 200000 - 1);
}

} // namespace
} // namespace Tolen::Tests

#include "language/FileWatch.h"
#include "language/SourceAssets.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <future>
#include <string>

namespace Tolen::Language {
namespace {

using namespace std::chrono_literals;

class WatchedFiles : public testing::Test {
protected:
    WatchedFiles() {
        std::filesystem::remove_all(FullPath(Tests::GetTemporary("watched")));
        std::filesystem::create_directories(PathOf("inside"));
    }

    static std::string PathOf(const std::string& name) {
        return FullPath(Tests::GetTemporary("watched")) + "/" + name;
    }
    static void Write(const std::string& name) { Tests::WriteTemporary("watched/" + name, "text"); }

    /// Whether the watch tells a change. @param change what happens meanwhile
    template <class Change>
    bool Tells(Change change) {
        std::future<bool> told = std::async(std::launch::async, [this] { return watch.Wait(); });
        change();
        if (told.wait_for(10s) != std::future_status::ready) {
            watch.End();
        }
        return told.get();
    }

    FileWatch watch;
};

TEST_F(WatchedFiles, Changes_AreTold) {
    Write("a");
    Write("b");
    EXPECT_TRUE(watch.Watch({PathOf("a"), PathOf("missing"), PathOf("inside/c")}));
    EXPECT_FALSE(watch.Watch({PathOf("a"), PathOf("missing"), PathOf("inside/c")}));
    EXPECT_TRUE(Tells([] { Write("a"); }));
    EXPECT_TRUE(Tells([] { Write("missing"); }));
    EXPECT_TRUE(Tells([] { std::filesystem::remove(PathOf("a")); }));
    EXPECT_TRUE(Tells([] { std::filesystem::rename(PathOf("b"), PathOf("a")); }));
    EXPECT_TRUE(Tells([] { Write("inside/c"); }));
}

TEST_F(WatchedFiles, Changes_BehindTheCall_AreToldLater) {
    Write("a");
    watch.Watch({PathOf("a")});
    Write("a");
    EXPECT_TRUE(Tells([] {}));
}

TEST_F(WatchedFiles, Folders_MayVanishAndComeBack) {
    Write("inside/a");
    watch.Watch({PathOf("inside/a")});
    EXPECT_TRUE(Tells([] { std::filesystem::remove_all(PathOf("inside")); }));
    watch.Watch({PathOf("inside/a")});
    EXPECT_TRUE(Tells([] {
        std::filesystem::create_directories(PathOf("inside"));
        Write("inside/a");
    }));
    watch.Watch({PathOf("inside/a")});
    EXPECT_TRUE(Tells([] { Write("inside/a"); }));
}

TEST_F(WatchedFiles, Others_AreNotTold) {
    Write("a");
    watch.Watch({PathOf("a")});
    std::future<bool> told = std::async(std::launch::async, [this] { return watch.Wait(); });
    Write("b");
    EXPECT_EQ(told.wait_for(300ms), std::future_status::timeout);
    watch.End();
    EXPECT_FALSE(told.get());
}

TEST_F(WatchedFiles, End_IsRemembered) {
    watch.Watch({PathOf("a")});
    watch.End();
    EXPECT_FALSE(watch.Wait());
}

} // namespace
} // namespace Tolen::Language

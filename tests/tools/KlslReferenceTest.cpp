#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;

std::string Read(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

TEST(KlslReference, OfOurShaders_IsThePageInTheDocuments) {
    const Ended run =
        RunCommand("/bin/sh", {"-c", "cd '" + SourceFolder() + "' && LC_ALL=C '" + ProgramFolder() +
                                         "/klsl' doc --title 'The shader libraries' shaders/*.klsl "
                                         "shaders/lights/*.klsl"});
    EXPECT_EQ(run.errors, "") << "the tables at the top of our shaders are true";
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output == Read(SourceFolder() + "/docs/shaders-reference.md"))
        << "make it anew: build/bin/klsl doc --title 'The shader libraries' shaders/*.klsl "
           "shaders/lights/*.klsl -o docs/shaders-reference.md";
}

TEST(KlslReference, GoesToAFile_WithWarningsBeside) {
    const std::string library =
        WriteTemporary("a.klsl", "// | parameter | type |\n// |---|---|\n// | x | int |\n\n"
                                 "class A { input float x; }\n");
    const std::string page = GetTemporary("a.md");
    const Ended run = RunProgram("klsl", {"doc", library, "-o", page});
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.errors, library + ":3: warning: the type of 'x' is float, not int\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(Read(page), HasSubstr("### A\n"));
}

TEST(KlslReference, TellsWhatCannotBeReadOrWritten) {
    const std::string missing = GetTemporary("missing.klsl");
    const Ended run = RunProgram("klsl", {"doc", missing});
    EXPECT_EQ(run.errors, missing + ": No such file or directory\n");
    EXPECT_EQ(run.status, 1);
    const std::string library = WriteTemporary("b.klsl", "class B { }\n");
    const Ended wrong = RunProgram("klsl", {"doc", library, "-o", "/no/such/folder"});
    EXPECT_EQ(wrong.errors, "/no/such/folder: No such file or directory\n");
    EXPECT_EQ(wrong.status, 1);
    EXPECT_EQ(RunProgram("klsl", {"doc"}).status, 2);
}

} // namespace
} // namespace Tolen::Tests

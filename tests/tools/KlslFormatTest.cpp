#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

namespace fs = std::filesystem;

const std::string kCrowded = "class A{float a;}\n";
const std::string kLaidOut = "class A\n{\n    float a;\n}\n";

std::string Read(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

Ended Format(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "fmt");
    return RunProgram("klsl", arguments);
}

TEST(KlslFormat, RewritesFiles_AndSaysNothing) {
    const std::string first = WriteTemporary("first.klsl", kCrowded);
    const std::string second = WriteTemporary("second.klsl", "class A{\r\nfloat a;}");
    const Ended run = Format({first, second});
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Read(first), kLaidOut);
    EXPECT_EQ(Read(second), "class A\r\n{\r\n    float a;\r\n}\r\n");
    for (const auto& entry : fs::directory_iterator(fs::path(first).parent_path())) {
        EXPECT_EQ(entry.path().string().find(".klsl."), std::string::npos) << entry.path();
    }
}

TEST(KlslFormat, KeepsThePermissions_AndWritesWhereLinksLead) {
    const std::string path = WriteTemporary("shared.klsl", kCrowded);
    const fs::perms permissions = fs::perms::owner_all | fs::perms::group_read;
    fs::permissions(path, permissions);
    const std::string link = GetTemporary("link.klsl");
    fs::create_symlink(path, link);
    EXPECT_EQ(Format({link}).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Read(path), kLaidOut);
    EXPECT_EQ(fs::status(path).permissions(), permissions);
}

TEST(KlslFormat, LeavesFilesAloneThatAreLaidOut) {
    const std::string path = WriteTemporary("good.klsl", kLaidOut);
    const auto before = fs::file_time_type::clock::now() - std::chrono::hours(1);
    fs::last_write_time(path, before);
    EXPECT_EQ(Format({path}).status, 0);
    EXPECT_EQ(fs::last_write_time(path), before);
}

TEST(KlslFormat, Check_ListsFilesAndChangesNone) {
    const std::string good = WriteTemporary("good.klsl", kLaidOut);
    const std::string bad = WriteTemporary("bad.klsl", kCrowded);
    const Ended run = Format({"--check", bad, good});
    EXPECT_EQ(run.output, bad + "\n");
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Read(bad), kCrowded);
    EXPECT_EQ(Format({"--check", good}).status, 0);
}

TEST(KlslFormat, OfStandardInput_WritesStandardOutput) {
    // The input of programs is empty here.
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, {"-"}, {"--check"}}) {
        const Ended run = Format(arguments);
        EXPECT_EQ(run.output + run.errors, "");
        EXPECT_EQ(run.status, 0);
    }
    const std::string path = WriteTemporary("in.klsl", kCrowded);
    const std::string program = ProgramFolder() + "/klsl";
    const Ended run =
        RunCommand("/bin/sh", {"-c", "'" + program + "' fmt < " + path + "; '" + program +
                                         "' fmt --check - < " + path + "; echo $?"});
    EXPECT_EQ(run.output, kLaidOut + "-\n1\n");
    EXPECT_EQ(run.errors, "");
}

TEST(KlslFormat, TellsWhatCannotBeReadOrWritten_AndGoesOn) {
    const std::string missing = GetTemporary("missing.klsl");
    const std::string folder = GetTemporary("folder.klsl");
    fs::create_directory(folder);
    const std::string good = WriteTemporary("good.klsl", kCrowded);
    const Ended run = Format({missing, folder, good});
    EXPECT_EQ(run.errors,
              missing + ": No such file or directory\n" + folder + ": Is a directory\n");
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Read(good), kLaidOut);
    // Output that nothing takes is an error as well.
    const Ended full =
        RunCommand("/bin/sh", {"-c", "echo a | '" + ProgramFolder() + "/klsl' fmt > /dev/full"});
    EXPECT_EQ(full.errors, "-: No space left on device\n");
    EXPECT_EQ(full.status, 1);
}

TEST(KlslFormat, Check_OfOurShaders_ListsNone) {
    std::vector<std::string> arguments = {"--check"};
    for (const char* name : {"/shaders", "/examples"}) {
        for (const auto& entry : fs::recursive_directory_iterator(SourceFolder() + name)) {
            if (entry.path().extension() == ".klsl") {
                arguments.push_back(entry.path());
            }
        }
    }
    ASSERT_GT(arguments.size(), 30u);
    const Ended run = Format(arguments);
    EXPECT_EQ(run.output + run.errors, "");
    EXPECT_EQ(run.status, 0);
}

} // namespace
} // namespace Tolen::Tests

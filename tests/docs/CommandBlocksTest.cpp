// The commands and the CMake code that documents show. Commands of docs/scenes.md are run by
// SceneBlocksTest.cpp, those of a guide's project by the tests of the package. The others take too
// long, or open ports: their programs, options and files are looked up.

#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;

/// Programs of others, of which nothing is checked.
const std::set<std::string> kForeign = {"cmake", "montage"};

/// Our programs, with those of their words that are commands with options of their own.
const std::set<std::string> kPrograms = {"tolen-render", "tolen-stats", "klsl", "ies2image",
                                         "hello"};

std::vector<CodeBlock> _ListBlocks(const std::string& language) {
    std::vector<CodeBlock> found;
    for (const std::string& document : ListDocuments()) {
        for (const CodeBlock& block : ReadCodeBlocks(document)) {
            if (block.language == language && document != "docs/scenes.md") {
                found.push_back(block);
            }
        }
    }
    return found;
}

/// Words of a line without variables in front and without an ampersand behind.
std::vector<std::string> _SplitCommand(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    while (!words.empty() && std::regex_match(words.front(), std::regex("[A-Z_]+=.*"))) {
        words.erase(words.begin());
    }
    if (!words.empty() && words.back() == "&") {
        words.pop_back();
    }
    return words;
}

/// What tells of a program's options; empty for programs of others.
std::string _DescribeProgram(const std::vector<std::string>& words) {
    const std::filesystem::path program = words.front();
    const std::string name = program.filename().string();
    if (program.parent_path() == "scripts") {
        const std::string text = ReadText(SourceFolder() + "/" + program.string());
        EXPECT_FALSE(text.empty()) << program;
        return text;
    }
    if (name == "tolen-bench" || name == "tolen-bench-render") {
        std::string text = "--benchmark_filter";
        for (const auto& entry :
             std::filesystem::directory_iterator(SourceFolder() + "/benchmarks")) {
            text += ReadText(entry.path().string());
        }
        return text;
    }
    if (kPrograms.count(name) != 0) {
        const bool hasCommand = name == "klsl" && words.size() > 1;
        return RunProgram(name, hasCommand ? std::vector<std::string>{words[1], "--help"}
                                           : std::vector<std::string>{"--help"})
            .output;
    }
    EXPECT_EQ(kForeign.count(name), 1U) << name << " is no program that is known here";
    return "";
}

void _CheckWord(const std::string& word, const std::string& description) {
    if (word.starts_with('-')) {
        const std::size_t equals = word.find('=');
        EXPECT_THAT(description, HasSubstr(word.substr(0, equals)));
        if (word.rfind("--benchmark_filter=", 0) == 0) {
            EXPECT_THAT(description, HasSubstr(word.substr(equals + 1)));
        }
    } else if (std::regex_search(word, std::regex("^(examples|docs|shaders|tests|tools)/"))) {
        EXPECT_TRUE(std::filesystem::exists(SourceFolder() + "/" + word)) << word;
    }
}

class CommandBlocks : public testing::TestWithParam<CodeBlock> {};

TEST_P(CommandBlocks, NameProgramsOptionsAndFilesThatExist) {
    const CodeBlock& block = GetParam();
    std::istringstream lines(block.text);
    for (std::string line; std::getline(lines, line);) {
        SCOPED_TRACE(block.GetPlace() + ": " + line);
        const std::vector<std::string> words = _SplitCommand(line);
        ASSERT_FALSE(words.empty());
        const std::string description = _DescribeProgram(words);
        for (std::size_t i = 1; i < words.size() && !description.empty(); ++i) {
            _CheckWord(words[i], description);
        }
        for (std::size_t i = 1; i < words.size() && words.front() == "scripts/demo"; ++i) {
            const std::string scene = SourceFolder() + "/examples/gallery/" + words[i];
            EXPECT_TRUE(std::filesystem::exists(scene + ".json") ||
                        std::filesystem::exists(scene + ".options"))
                << words[i];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, CommandBlocks, testing::ValuesIn(_ListBlocks("sh")),
                         [](const auto& test) { return NameOf(test.param); });

class CMakeBlocks : public testing::TestWithParam<CodeBlock> {};

/// Tests of the package build the examples, each with such code and its own name.
TEST_P(CMakeBlocks, AreThatOfAnExample) {
    const CodeBlock& block = GetParam();
    const bool isOwnApi = block.text.find("OpenKL") == std::string::npos;
    const std::string name = isOwnApi ? "own-api" : "hello";
    const std::string example = ReadText(SourceFolder() + "/examples/" + name + "/CMakeLists.txt");
    std::istringstream lines(block.text);
    for (std::string line; std::getline(lines, line);) {
        if (line.find("SHADERS=") != std::string::npos) {
            continue; // for the guide to lights, and built by Package.guide
        }
        EXPECT_THAT(example, HasSubstr(std::regex_replace(line, std::regex("renderer"), name)))
            << block.GetPlace();
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, CMakeBlocks, testing::ValuesIn(_ListBlocks("cmake")),
                         [](const auto& test) { return NameOf(test.param); });

} // namespace
} // namespace Tolen::Tests

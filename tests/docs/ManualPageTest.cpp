#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <string>
#include <vector>

/// The manual pages in docs/man, against the programs.

namespace Tolen::Tests {
namespace {

struct Program {
    std::string name;
    std::vector<std::string> commands; ///< each has options of its own
};

std::ostream& operator<<(std::ostream& stream, const Program& program) {
    return stream << program.name;
}

std::set<std::string> FindOptions(const std::string& text) {
    const std::regex option("--[a-z][a-z-]+");
    return {std::sregex_token_iterator(text.begin(), text.end(), option),
            std::sregex_token_iterator()};
}

class ManualPage : public testing::TestWithParam<Program> {};

TEST_P(ManualPage, ListsTheOptionsThatTheProgramHas) {
    const auto& [name, commands] = GetParam();
    std::string help = RunProgram(name, {"--help"}).output;
    for (const std::string& command : commands) {
        help += RunProgram(name, {command, "--help"}).output;
    }
    std::string page = ReadText(SourceFolder() + "/docs/man/" + name + ".1");
    page = std::regex_replace(page, std::regex("\\\\-"), "-");
    EXPECT_EQ(FindOptions(page), FindOptions(help));
    for (const std::string& command : commands) {
        EXPECT_NE(page.find(".B " + name + " " + command + "\n"), std::string::npos) << command;
    }
}

INSTANTIATE_TEST_SUITE_P(Programs, ManualPage,
                         testing::Values(Program{"tolen-render", {}},
                                         Program{"klsl", {"check", "print", "graph", "fmt", "doc"}},
                                         Program{"klsl-lsp", {}}, Program{"tolen-stats", {}},
                                         Program{"ies2image", {}}),
                         [](const auto& information) {
                             return std::regex_replace(information.param.name, std::regex("-"),
                                                       "_");
                         });

} // namespace
} // namespace Tolen::Tests

// What documents show of C++, run. docs/programs/ makes programs of it.
//
// A text block right behind one of C++ is what that one prints, on the terminal and on the console,
// to the last character; without a text block it prints nothing. Texts are those of somebody who
// works in kFolder. Lines of the console that would come on each page are left out, unless the page
// shows them.

#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

namespace Tolen::Tests {
namespace {

constexpr const char* kFolder = "/home/me/renderer";

struct PageProgram {
    std::string program;
    std::string document;
};

void PrintTo(const PageProgram& page, std::ostream* stream) {
    *stream << page.document;
}

std::vector<PageProgram> _ListPages() {
    std::vector<PageProgram> pages = {{"doc-pages", "docs/klsl.md"},
                                      {"doc-pages", "docs/openkl.md"}};
    for (const std::string& document : ListDocuments()) {
        if (IsGuide(document)) {
            const bool isOwn = document == "docs/guides/own-openkl.md";
            pages.push_back({isOwn ? "doc-own-openkl" : "doc-pages", document});
        }
    }
    return pages;
}

struct ShownBlock {
    CodeBlock block;
    std::string prints;
};

/// The blocks that stand in the page's function.
std::vector<ShownBlock> _ReadStatements(const std::string& document) {
    std::vector<ShownBlock> shown;
    const std::vector<CodeBlock> blocks = ReadCodeBlocks(document);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        const CodeBlock& block = blocks[i];
        if (block.language == "cpp" && !block.HasMark("frame") && !block.HasMark("file-scope") &&
            !block.HasMark("include")) {
            const bool hasText = i + 1 < blocks.size() && blocks[i + 1].language == "text" &&
                                 blocks[i + 1].section == block.section;
            shown.push_back({block, hasText ? blocks[i + 1].text : ""});
        }
    }
    return shown;
}

/// Runs a page in an empty folder.
std::string _RunPage(const PageProgram& page) {
    const std::filesystem::path folder = GetTemporary("page");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const std::string name = std::filesystem::path(page.document).stem().string();
    const Ended run = RunProgram(page.program, {name});
    std::filesystem::current_path(before);
    EXPECT_EQ(run.status, 0) << run.output;
    std::string output = run.output;
    for (std::size_t at = 0; (at = output.find(folder.string(), at)) != std::string::npos;) {
        output.replace(at, folder.string().size(), kFolder);
    }
    return output;
}

std::string _WithoutUsualLines(const std::string& text) {
    const std::regex usual("[^\n]*(Acquired shader source asset successfully: '[^\n]*'|"
                           "\\w+ shut down with \\d+ remaining shader\\(s\\))\n");
    return std::regex_replace(text, usual, "");
}

class Pages : public testing::TestWithParam<PageProgram> {};

TEST_P(Pages, PrintWhatTheyShow) {
    const PageProgram& page = GetParam();
    std::istringstream output(_RunPage(page));
    for (const ShownBlock& shown : _ReadStatements(page.document)) {
        SCOPED_TRACE(shown.block.GetPlace());
        std::string printed;
        std::string end;
        ASSERT_TRUE(std::getline(output, printed, '\x1e') && std::getline(output, end));
        ASSERT_EQ(end, std::to_string(shown.block.line));
        if (printed != shown.prints) {
            EXPECT_EQ(_WithoutUsualLines(printed), shown.prints);
        }
    }
    std::string rest;
    std::getline(output, rest, '\x1e');
    EXPECT_EQ(_WithoutUsualLines(rest), "") << "behind the page's last block";
}

INSTANTIATE_TEST_SUITE_P(Documents, Pages, testing::ValuesIn(_ListPages()), [](const auto& test) {
    return std::regex_replace(test.param.document, std::regex("[^A-Za-z0-9]"), "_");
});

TEST(Guides, AreInTheirIndexAndBeginWithWhatOneWillHave) {
    const std::string index = "docs/guides/README.md";
    const std::vector<std::string> links = ReadLinks(index);
    for (const std::string& document : ListDocuments()) {
        if (IsGuide(document) && document != index) {
            const std::string name = std::filesystem::path(document).filename().string();
            EXPECT_NE(std::find(links.begin(), links.end(), name), links.end()) << document;
            EXPECT_NE(
                ReadText(SourceFolder() + "/" + document).find("\n\nAt the end of this page "),
                std::string::npos)
                << document;
        }
    }
}

} // namespace
} // namespace Tolen::Tests

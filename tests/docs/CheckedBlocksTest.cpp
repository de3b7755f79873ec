// Texts marked "check=FILE" are what `klsl check` tells of the KLSL that the document shows as FILE.

#include "Markdown.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

/// What the program tells of a file in the present folder.
std::string _Check(const CodeBlock& klsl, const std::string& name) {
    const std::string path = WriteTemporary(name, klsl.text);
    std::string told = RunProgram("klsl", {"check", path}).errors;
    const std::string folder = path.substr(0, path.size() - name.size());
    for (std::size_t at; (at = told.find(folder)) != std::string::npos;) {
        told.erase(at, folder.size());
    }
    return told;
}

TEST(CheckedBlocks, AreWhatTheCheckTells) {
    int count = 0;
    for (const std::string& document : ListDocuments()) {
        const std::vector<CodeBlock> blocks = ReadCodeBlocks(document);
        for (const CodeBlock& text : blocks) {
            const std::string file = text.GetMark("check");
            if (file.empty()) {
                continue;
            }
            ++count;
            const auto klsl = std::find_if(blocks.begin(), blocks.end(), [&](const auto& block) {
                return block.language == "klsl" && block.GetMark("file") == file;
            });
            ASSERT_NE(klsl, blocks.end()) << text.GetPlace() << ": no block shows " << file;
            EXPECT_EQ(_Check(*klsl, std::filesystem::path(file).filename()), text.text)
                << text.GetPlace();
        }
    }
    EXPECT_GT(count, 0);
}

} // namespace
} // namespace Tolen::Tests

// No block of any document is without a test: here is said which one looks at which.

#include "Markdown.h"

#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

/// Whose blocks a test looks at.
struct Tester {
    std::string language;
    std::string documents; ///< a document, or a folder with a slash behind it; empty for all
    std::string test;      ///< in tests/
};

const std::vector<Tester> kTesters = {
    {"klsl", "", "docs/KlslBlocksTest.cpp"},
    {"cpp", "docs/guides/", "docs/PageTest.cpp"},
    {"cpp", "docs/klsl.md", "docs/PageTest.cpp"},
    {"cpp", "docs/openkl.md", "docs/PageTest.cpp"},
    {"cpp", "README.md", "docs/ReadmeTest.cpp"},
    {"cpp", "docs/lights.md", "shaders/LightShadersTest.cpp"},
    {"cpp", "docs/statistics.md", "docs/statistics/StatisticsDocumentTest.cpp"},
    {"json", "docs/scenes.md", "docs/SceneBlocksTest.cpp"},
    {"json", "docs/shaders.md", "docs/ShaderPiecesTest.cpp"},
    {"json", "docs/statistics.md", "docs/statistics/StatisticsDocumentTest.cpp"},
    {"sh", "docs/scenes.md", "docs/SceneBlocksTest.cpp"},
    {"sh", "", "docs/CommandBlocksTest.cpp"},
    {"cmake", "", "docs/CommandBlocksTest.cpp"},
    {"lua", "docs/editors.md", "language-server/EditorsDocumentTest.cpp"},
    {"elisp", "docs/editors.md", "language-server/EditorsDocumentTest.cpp"},
};

bool _IsOf(const std::string& document, const Tester& tester) {
    const bool isFolder = !tester.documents.empty() && tester.documents.back() == '/';
    return tester.documents.empty() || document == tester.documents ||
           (isFolder && document.rfind(tester.documents, 0) == 0);
}

const Tester* _FindTester(const CodeBlock& block) {
    const auto found = std::find_if(kTesters.begin(), kTesters.end(), [&](const Tester& tester) {
        return block.language == tester.language && _IsOf(block.document, tester);
    });
    return found == kTesters.end() ? nullptr : &*found;
}

/// Texts are what the block before them, which is tested, gives, or say by a mark what they are.
bool _IsTestedText(const CodeBlock& text, const CodeBlock* before) {
    if (text.HasMark("diagram")) {
        return true; // a drawing for people
    }
    if (text.HasMark("messages")) {
        return text.document == "docs/openkl.md"; // OpenKlMessagesTest.cpp
    }
    if (text.HasMark("grammar")) {
        return text.document == "docs/klsl.md"; // KslGrammarDocumentTest.cpp
    }
    if (!text.GetMark("check").empty()) {
        return true; // CheckedBlocksTest.cpp
    }
    if (text.document == "docs/statistics.md") {
        return true; // StatisticsDocumentTest.cpp compares all of them with what is printed
    }
    const bool follows = before != nullptr && before->section == text.section;
    if (follows && before->language == "klsl") {
        return before->HasMark("wrong") || before->HasMark("tells") || before->HasMark("prints");
    }
    if (follows && (before->language == "json" || before->language == "sh")) {
        return before->HasMark("wrong");
    }
    return follows && before->language == "cpp" && !before->HasMark("file-scope") &&
           !before->HasMark("frame") && !before->HasMark("include");
}

TEST(EveryBlock, HasATest) {
    int count = 0;
    for (const std::string& document : ListDocuments()) {
        const std::vector<CodeBlock> blocks = ReadCodeBlocks(document);
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            const CodeBlock& block = blocks[i];
            ++count;
            if (block.language == "text") {
                EXPECT_TRUE(_IsTestedText(block, i == 0 ? nullptr : &blocks[i - 1]))
                    << block.GetPlace() << ": nothing gives this text";
            } else {
                EXPECT_NE(_FindTester(block), nullptr)
                    << block.GetPlace() << ": nobody tests " << block.language;
            }
        }
    }
    EXPECT_GT(count, 200);
}

TEST(EveryBlock, IsTestedByATestThatExists) {
    for (const Tester& tester : kTesters) {
        EXPECT_NE(ReadText(SourceFolder() + "/tests/" + tester.test), "") << tester.test;
        int blocks = 0;
        for (const std::string& document : ListDocuments()) {
            for (const CodeBlock& block : ReadCodeBlocks(document)) {
                blocks += _FindTester(block) == &tester ? 1 : 0;
            }
        }
        EXPECT_GT(blocks, 0) << tester.language << " of " << tester.documents;
    }
}

} // namespace
} // namespace Tolen::Tests

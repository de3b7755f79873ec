// What the documents show of KLSL, tried out.
//
// A block loads, and each of its classes compiles as an effect of every kind that it has the entry
// for. Marks behind the language say more:
//
// | mark        | the block                                                                     |
// |-------------|-------------------------------------------------------------------------------|
// | wrong       | fails, with the lines of the text block that follows                          |
// | tells       | works, and those lines are told                                               |
// | prints      | works, and those lines are in the generated texts                             |
// | parse       | loads; its classes are not made                                               |
// | prefix      | has classes with Shade for prefix effects                                     |
// | pixel=r,g,b | has a class Show whose Render gives this pixel                                |
// | connect=... | has a class Show, to whose inputs shaders are connected, as in a:Dots,b:Dots+Rings |
// | file=name   | is a file that the section's later blocks can include; shader.klsl otherwise  |

#include "Markdown.h"
#include "ShaderRig.h"

#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>

namespace Tolen::Tests {
namespace {

struct KlslBlock {
    CodeBlock block;
    std::vector<CodeBlock> before; ///< KLSL blocks of the section that stand above it
    std::string lines;             ///< the text block behind it
};

void PrintTo(const KlslBlock& parameter, std::ostream* stream) {
    *stream << parameter.block.GetPlace();
}

std::vector<KlslBlock> _ReadKlslBlocks() {
    std::vector<KlslBlock> found;
    for (const std::string& document : ListDocuments()) {
        const std::vector<CodeBlock> blocks = ReadCodeBlocks(document);
        std::vector<CodeBlock> before;
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            if (blocks[i].language != "klsl") {
                continue;
            }
            if (!before.empty() && before.back().section != blocks[i].section) {
                before.clear();
            }
            const bool hasText = i + 1 < blocks.size() && blocks[i + 1].language == "text";
            found.push_back({blocks[i], before, hasText ? blocks[i + 1].text : ""});
            before.push_back(blocks[i]);
        }
    }
    return found;
}

std::string _FileOf(const CodeBlock& block) { return block.GetMark("file", "shader.klsl"); }

std::vector<std::string> _FindClasses(const std::string& text) {
    // Comments may talk of classes.
    const std::string code = std::regex_replace(text, std::regex("//[^\\n]*"), "");
    const std::regex head("\\bclass\\s+(\\w+)");
    std::vector<std::string> names;
    for (std::sregex_iterator found(code.begin(), code.end(), head), end; found != end; ++found) {
        names.push_back((*found)[1]);
    }
    return names;
}

void _ExpectLines(const KlslBlock& parameter, const std::string& text) {
    ASSERT_FALSE(parameter.lines.empty()) << "no text block follows";
    std::istringstream lines(parameter.lines);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_NE(text.find(line), std::string::npos) << line << "\nis not among\n" << text;
    }
}

void _ExpectPixel(ShaderRig& rig, const std::string& text) {
    const std::vector<float> pixel = rig.RenderPixel("Show");
    ASSERT_EQ(pixel.size(), 3U) << rig.GetMessages();
    std::istringstream numbers(text);
    for (std::size_t channel = 0; channel < 3; ++channel) {
        std::string number;
        ASSERT_TRUE(std::getline(numbers, number, ',')) << text;
        EXPECT_NEAR(pixel[channel], std::stof(number), 1e-5) << "channel " << channel;
    }
}

class KlslBlocks : public testing::TestWithParam<KlslBlock> {};

TEST_P(KlslBlocks, DoWhatTheDocumentSays) {
    const KlslBlock& parameter = GetParam();
    const CodeBlock& block = parameter.block;
    SCOPED_TRACE(block.GetPlace());
    ShaderRig rig;
    for (const CodeBlock& earlier : parameter.before) {
        rig.AddFile(_FileOf(earlier), earlier.text);
    }
    rig.AddFile(_FileOf(block), block.text);

    rig.SetConnections(block.GetMark("connect"));

    bool works = rig.Load(_FileOf(block));
    if (works && !block.HasMark("parse")) {
        for (const std::string& name : _FindClasses(block.text)) {
            works = works && rig.Use(name, block.HasMark("prefix"));
        }
    }
    if (block.HasMark("wrong")) {
        EXPECT_FALSE(works);
    } else {
        ASSERT_TRUE(works) << rig.GetMessages();
    }
    // On pages with C++ in between, PageTest.cpp compares what is told.
    const bool isShownElsewhere = parameter.lines.empty() && IsGuide(block.document);
    if ((block.HasMark("wrong") || block.HasMark("tells")) && !isShownElsewhere) {
        _ExpectLines(parameter, rig.GetMessages());
    }
    if (block.HasMark("prints")) {
        _ExpectLines(parameter, rig.GetPrograms());
    }
    const std::string pixel = block.GetMark("pixel");
    if (!pixel.empty()) {
        _ExpectPixel(rig, pixel);
    }
}

INSTANTIATE_TEST_SUITE_P(Documents, KlslBlocks, testing::ValuesIn(_ReadKlslBlocks()),
                         [](const auto& test) { return NameOf(test.param.block); });

TEST(KlslDocument, HasBlocksOfEveryKind) {
    int blocks = 0;
    int wrong = 0;
    int pixels = 0;
    for (const KlslBlock& parameter : _ReadKlslBlocks()) {
        ++blocks;
        wrong += parameter.block.HasMark("wrong") ? 1 : 0;
        pixels += parameter.block.GetMark("pixel").empty() ? 0 : 1;
    }
    EXPECT_GT(blocks, 20);
    EXPECT_GT(wrong, 5);
    EXPECT_GT(pixels, 5);
}

} // namespace
} // namespace Tolen::Tests

#include "language/Reference.h"

#include "language/HeadComment.h"
#include "language/MarkdownPage.h"
#include "language/Outline.h"
#include "language/ParameterTable.h"
#include "language/SourceToken.h"

#include "docs/Markdown.h"
#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

namespace Tolen::Language {
namespace {

/// Reads a file of the folder golden beside this one.
std::string ReadGolden(const std::string& name) {
    return Tests::ReadText(Tests::SourceFolder() + "/tests/language/golden/" + name);
}

/// With TOLEN_UPDATE_GOLDEN set in the environment the file is written instead.
void ExpectGolden(const std::string& name, const std::string& text) {
    if (std::getenv("TOLEN_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(Tests::SourceFolder() + "/tests/language/golden/" + name, std::ios::binary)
            << text;
    }
    EXPECT_EQ(text, ReadGolden(name));
}

std::string ListDifferences(const std::string& text) {
    std::string list;
    for (const Diagnostic& difference : MakeReference({{"a.klsl", text}}).differences) {
        list +=
            difference.file + ":" + std::to_string(difference.line) + ": " + difference.text + "\n";
    }
    return list;
}

TEST(Reference, DescribesLibraries) {
    const Reference reference =
        MakeReference({{"patterns/interfaces.klsl", ReadGolden("interfaces.klsl")},
                       {"patterns/rings.klsl", ReadGolden("rings.klsl")}});
    ASSERT_FALSE(reference.page.empty());
    ExpectGolden("reference.md", reference.page);
    EXPECT_TRUE(reference.differences.empty());
}

TEST(Reference, OfNothing_HasATitle) {
    EXPECT_EQ(MakeReference({}).page.substr(0, 12), "# Reference\n");
    EXPECT_EQ(MakeReference({}, "Shaders").page.substr(0, 10), "# Shaders\n");
    EXPECT_NE(MakeReference({{"a", ""}}).page.find("## a\n"), std::string::npos);
}

TEST(Reference, TellsWhereATableContradictsTheSource) {
    EXPECT_EQ(ListDifferences("// A table.\n"
                              "// | parameter | type | default |\n"
                              "// |---|---|---|\n"
                              "// | A.a | int | 1 |\n"
                              "// | A.b, c | float | 1, 3 |\n"
                              "// | A.d | vec3 | 1, 0 |\n"
                              "// | A.e | I | C |\n"
                              "// | A.f | bool | true |\n"
                              "// | A.g | float[] | 1 |\n"
                              "// | B.a | float | |\n"
                              "// | h | float | 1 |\n"
                              "\nclass A\n{\n    input float a = 1.0;\n    input float b = 1.0;\n"
                              "    input float c = 2.0;\n    input vec3 d = vec3(1.0);\n"
                              "    input I e = D();\n    input bool f = false;\n"
                              "    input float g = 1.0;\n    input float h;\n}\n"),
              "a.klsl:4: the type of 'A.a' is float, not int\n"
              "a.klsl:5: the default of 'A.c' is 2.0, not 3\n"
              "a.klsl:6: the default of 'A.d' is vec3(1.0), not 1, 0\n"
              "a.klsl:7: the default of 'A.e' is D(), not C\n"
              "a.klsl:8: the default of 'A.f' is false, not true\n"
              "a.klsl:9: the type of 'A.g' is float, not float[]\n"
              "a.klsl:10: no class has an input 'B.a'\n"
              "a.klsl:11: the default of 'h' is missing, not 1\n");
}

TEST(Reference, RowsWithoutAClass_AreAboutOneThatFits) {
    EXPECT_EQ(ListDifferences("// | parameter | type | default |\n// |---|---|---|\n"
                              "// | radius | float | 0.5 |\n// | radius | float | 2 |\n"
                              "// | radius | float | 3 |\n\n"
                              "class A { input float radius = 0.5; }\n"
                              "class B { input float radius = 2.0; }\n"),
              "a.klsl:5: the default of 'radius' is 0.5, not 3\n");
}

TEST(Reference, Defaults_MayBeWrittenShorter) {
    const struct {
        const char* type;
        const char* value;
        const char* told;
        bool isSame;
    } kCases[] = {
        {"vec3", "vec3(0.0, 1.0, 5.0)", "0, 1, 5", true},
        {"vec3", "vec3(1.0)", "1, 1, 1", true},
        {"vec3", "vec3(0.8)", "0.8", true},
        {"vec3", "vec3(0.8)", "0.8, 0.8, 0.9", false},
        {"vec2", "vec2(-1.0, 2.0)", "-1, 2", true},
        {"vec2", "vec2(1.0, 2.0)", "-1, 2", false},
        {"float", "1e-3", "0.001", true},
        {"float", "", "0", true},
        {"float", "", "1", false},
        {"float", "2.0", "as wide as high", true},
        {"vec3", "vec3(0.0)", "0, 0, 0 (no sun)", true},
        {"bool", "true", "true", true},
        {"bool", "", "false", true},
        {"bool", "true", "false", false},
        {"IColor", "ColorWhite()", "ColorWhite", true},
        {"IColor", "ColorWhite()", "ColorBlack", false},
        {"IColor", "", "none", true},
        {"IColor", "", "ColorBlack", false},
        {"float", "1.0", "", true},
    };
    for (const auto& c : kCases) {
        Symbol value;
        value.type = c.type;
        value.value = c.value;
        EXPECT_EQ(IsSameDefault(value, c.told), c.isSame) << c.value << " told as " << c.told;
    }
}

TEST(HeadComment, CutsParagraphsAndTables) {
    const std::vector<HeadBlock> blocks = ReadHeadComment(
        "First\nparagraph.\n\nA: of a.\n| parameter | range |\n|---|---|\n| x | 0\n| | to 1 |\n\n"
        "B (I)\n| y | 2 |\n\nAll others",
        {"A", "B"});
    ASSERT_EQ(blocks.size(), 5u);
    EXPECT_EQ(blocks[0].paragraph, "First paragraph.");
    EXPECT_EQ(blocks[0].className, "");
    EXPECT_EQ(blocks[1].paragraph, "of a.");
    EXPECT_EQ(blocks[1].className, "A");
    EXPECT_TRUE(blocks[1].isCaption);
    ASSERT_TRUE(blocks[2].IsTable());
    EXPECT_EQ(blocks[2].className, "A");
    ASSERT_EQ(blocks[2].rows.size(), 1u);
    EXPECT_EQ(blocks[2].GetCell(blocks[2].rows[0], "range"), "0 to 1");
    EXPECT_EQ(blocks[2].GetCell(blocks[2].rows[0], "type"), "");
    EXPECT_EQ(blocks[3].className, "B");
    EXPECT_EQ(blocks[3].GetCell(blocks[3].rows[0], "range"), "2");
    EXPECT_EQ(blocks[4].paragraph, "All others");
    EXPECT_TRUE(ReadHeadComment("", {}).empty());
    EXPECT_EQ(ReadHeadComment("|", {}).size(), 1u);
}

TEST(MarkdownPage, TellsEqualHeadingsApart) {
    MarkdownPage page;
    page.Announce("a/b.klsl", "one");
    page.Announce("AB klsl_x", "two");
    page.Announce("A-b.klsl", "three");
    page.Announce("a/b.klsl", "four");
    EXPECT_EQ(page.Link("one"), "[one](#abklsl)");
    EXPECT_EQ(page.Link("two", "text"), "[text](#ab-klsl_x)");
    EXPECT_EQ(page.Link("three"), "[three](#a-bklsl)");
    EXPECT_EQ(page.Link("four"), "[four](#abklsl-1)");
    EXPECT_EQ(page.Link("five"), "five");
}

TEST(MarkdownPage, EscapesSignsOutsideOfCode) {
    EXPECT_EQ(MarkdownPage::Escape("a * `b * c` <d>"), "a \\* `b * c` \\<d>");
    EXPECT_EQ(MarkdownPage::Escape("one ` and [x]"), "one \\` and \\[x]");
    EXPECT_EQ(MarkdownPage::Code("a`b"), "`` a`b ``");
    MarkdownPage page;
    page.AddTable({"a", "b"}, {{"x|y", ""}, {"z"}});
    EXPECT_EQ(page.GetText(), "| a | b |\n|---|---|\n| x\\|y | |\n| z | |\n");
}

} // namespace
} // namespace Tolen::Language

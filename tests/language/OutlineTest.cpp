#include "language/Outline.h"

#include "language/Corpus.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace Tolen::Language {
namespace {

using Tests::CorpusText;

/// An outline with the text that it is of.
struct Read {
    explicit Read(const std::string& source)
        : text(source), outline(MakeOutline(text, Tokenize(source))) {}

    std::string Get(const SourceRange& range) const { return std::string(text.GetText(range)); }

    SourceText text;
    Outline outline;
};

void Describe(const Symbol& symbol, const std::string& indent, std::string& description) {
    static const char* const kKinds[] = {"define", "class",     "interface", "function",
                                         "method", "input",     "member",    "coord",
                                         "output", "parameter", "local"};
    description += indent + kKinds[symbol.kind] + " " + symbol.name + ": " + symbol.signature +
                   (symbol.isCut ? " (cut)" : "") + "\n";
    for (const Symbol& child : symbol.children) {
        Describe(child, indent + "  ", description);
    }
}

std::string Describe(const std::string& source) {
    std::string description;
    for (const Symbol& symbol : Read(source).outline.symbols) {
        Describe(symbol, "", description);
    }
    return description;
}

TEST(Outline, ListsWhatAFileDeclares) {
    EXPECT_EQ(Describe("interface Pattern\n{\n    float At(vec2 place);\n}\n"
                       "float square(float x) { return x*x; }\n"
                       "class Rings:Pattern\n{\n"
                       "    static input vec3 up=vec3(0.0,1.0 , -1);\n"
                       "    input Pattern more [ ] = Pattern[](A(), B());\n"
                       "    const float half = 0.5;\n    float steps[3];\n"
                       "    coord vec2 uv; tangent vec3 grain;\n    out vec4 o_x;\n"
                       "    static void Look(in vec2 a, inout float b[2]) { }\n}\n"),
              "interface Pattern: interface Pattern\n"
              "  method At: float At(vec2 place)\n"
              "    parameter place: vec2 place\n"
              "function square: float square(float x)\n"
              "  parameter x: float x\n"
              "class Rings: class Rings : Pattern\n"
              "  input up: static input vec3 up = vec3(0.0, 1.0, -1)\n"
              "  input more: input Pattern more[] = Pattern[](A(), B())\n"
              "  member half: const float half = 0.5\n"
              "  member steps: float steps[3]\n"
              "  coord uv: coord vec2 uv\n"
              "  coord grain: tangent vec3 grain\n"
              "  output o_x: out vec4 o_x\n"
              "  method Look: static void Look(in vec2 a, inout float b[2])\n"
              "    parameter a: in vec2 a\n"
              "    parameter b: inout float b[2]\n");
}

TEST(Outline, TellsTheParts) {
    const Read read("class A : I\n{\n    static input vec3 up[ 2 ] = vec3[](\n        a, b);\n"
                    "    const int n = -1;\n}\n");
    const Symbol& a = read.outline.symbols.at(0);
    EXPECT_EQ(a.type, "I");
    EXPECT_EQ(read.Get(a.nameRange), "A");
    EXPECT_EQ(read.Get(a.range), read.text.GetText().substr(0, a.range.end));
    EXPECT_EQ(read.Get(a.bodyRange), read.text.GetText().substr(12, a.range.end - 12));
    const Symbol& up = a.children.at(0);
    EXPECT_TRUE(up.isStatic);
    EXPECT_FALSE(up.isConst);
    EXPECT_EQ(up.type, "vec3");
    EXPECT_EQ(up.brackets, "[2]");
    EXPECT_EQ(up.value, "vec3[](\n        a, b)");
    EXPECT_EQ(read.Get(up.nameRange), "up");
    EXPECT_EQ(read.Get(up.range).substr(0, 12), "static input");
    EXPECT_EQ(read.Get(up.range).back(), ';');
    EXPECT_TRUE(a.children.at(1).isConst);
    EXPECT_EQ(a.children.at(1).value, "-1");
}

TEST(Outline, ListsDefinitionsAndInclusionsWhereverTheyStand) {
    const Read read("#include \"a.klsl\"\n#define TWICE(x) (2.0 * x) // c\nclass A\n{\n"
                    "  #define EMPTY\n  #import \"b.klsl\n#include c.klsl\n}\n#define\n");
    ASSERT_EQ(read.outline.symbols.size(), 3u);
    const Symbol& twice = read.outline.symbols[0];
    EXPECT_EQ(twice.name, "TWICE(x)");
    EXPECT_EQ(twice.value, "(2.0 * x) // c");
    EXPECT_EQ(read.Get(twice.nameRange), "TWICE(x)");
    EXPECT_EQ(read.outline.symbols[1].name, "A");
    EXPECT_EQ(read.outline.symbols[2].signature, "#define EMPTY");
    ASSERT_EQ(read.outline.inclusions.size(), 2u);
    EXPECT_EQ(read.Get(read.outline.inclusions[0].range), "a.klsl");
    EXPECT_FALSE(read.outline.inclusions[0].isImport);
    EXPECT_EQ(read.Get(read.outline.inclusions[1].range), "b.klsl");
    EXPECT_TRUE(read.outline.inclusions[1].isImport);
}

TEST(Outline, TakesCommentsAboveAndBehind) {
    const Read read(
        "// Head.\n//\n// | a |\n\n// Of A,\n//   indented.\nclass A\n{\n"
        "    // Of a.\n    float a; // not this\n    float b; ///< Of b.\n    float c;\n"
        "    // Of nothing.\n\n    /* Of d,\n     * in two lines.\n     */\n"
        "    void d() { }\n}\n/// Of f.\nfloat f() { return 1.0; }\n");
    EXPECT_EQ(read.outline.headComment, "Head.\n\n| a |");
    const Symbol& a = read.outline.symbols.at(0);
    EXPECT_EQ(a.comment, "Of A,\n  indented.");
    EXPECT_EQ(a.children.at(0).comment, "Of a.");
    EXPECT_EQ(a.children.at(1).comment, "Of b.");
    EXPECT_EQ(a.children.at(2).comment, "");
    EXPECT_EQ(a.children.at(3).comment, "Of d,\nin two lines.");
    EXPECT_EQ(read.outline.symbols.at(1).comment, "Of f.");
}

TEST(Outline, HeadComment_LeavesOutWhatBelongsToTheFirstDeclaration) {
    EXPECT_EQ(Read("// a\nclass A { }").outline.headComment, "");
    EXPECT_EQ(Read("// a\n\n// b\n\nclass A { }").outline.headComment, "a\n\nb");
    EXPECT_EQ(Read("#ifndef A\n// a\n#define A\n").outline.headComment, "a");
    EXPECT_EQ(Read("// a").outline.headComment, "a");
    EXPECT_EQ(Read("").outline.headComment, "");
}

/// The names that are seen at each "@" of a text, which is taken out.
std::vector<std::string> SeenAtMarks(std::string source) {
    std::vector<std::size_t> marks;
    for (std::size_t at; (at = source.find('@')) != std::string::npos;) {
        source.erase(at, 1);
        marks.push_back(at);
    }
    const Read read(source);
    std::vector<std::string> seen;
    for (const std::size_t mark : marks) {
        std::string names;
        const std::vector<const Symbol*> around = read.outline.FindAround(mark);
        if (!around.empty()) {
            for (const Symbol& child : around.back()->children) {
                names += child.bodyRange.Contains(mark) ? child.name : "";
            }
        }
        seen.push_back(names);
    }
    return seen;
}

TEST(Outline, LocalsAreSeenToTheEndOfTheirBlock) {
    EXPECT_EQ(SeenAtMarks("float f(float a, out vec3 b) {@ float c = a;@ { int d;@ } @ Thing e;@"
                          " e = d; }@"),
              (std::vector<std::string>{"ab", "abc", "abcd", "abc", "abce", ""}));
}

TEST(Outline, VariablesOfLoopsAreSeenToTheEndOfTheLoop) {
    EXPECT_EQ(SeenAtMarks("void f() { for (int i = 0;@ i < 9; ++i)@ { float x;@ }@ @; }"),
              (std::vector<std::string>{"i", "i", "ix", "", ""}));
    EXPECT_EQ(SeenAtMarks("void f() { for (int i = 0; i < 9; ++i) if (i) x;@ else@ y;@ z; }"),
              (std::vector<std::string>{"i", "i", ""}));
    EXPECT_EQ(SeenAtMarks("void f() { for (int i = 0; i < 9; ++i) while (bool m = i)@ ;@ z; }"),
              (std::vector<std::string>{"im", ""}));
    EXPECT_EQ(SeenAtMarks("void f() { for (int i = 0; bool b = i;)@ do { int c;@ } while (i);@ }"),
              (std::vector<std::string>{"ib", "ibc", ""}));
}

TEST(Outline, WithoutABrace_EndsWhereSomethingElseBegins) {
    EXPECT_EQ(Describe("class A\n{\n  void f()\n  {\n    if (x) {\n  void g() { }\n"
                       "  float h(\n  input float y = 1.0\n  input float z;\nclass B { }\n"),
              "class A: class A (cut)\n"
              "  method f: void f() (cut)\n"
              "  method g: void g()\n"
              "  method h: float h(\n"
              "  input y: input float y = 1.0\n"
              "  input z: input float z\n"
              "class B: class B\n");
}

TEST(Outline, LeavesOutWhatCannotBeRead) {
    EXPECT_EQ(Describe("class A { input vec3 = vec3(1.0); input float b; inp float c; float d; }"),
              "class A: class A\n  input b: input float b\n  member d: float d\n");
    EXPECT_EQ(Describe("class { } class B : { float a } float f(a, float b,, vec2) { }"),
              "class B: class B :\n  member a: float a\n"
              "function f: float f(a, float b,, vec2)\n  parameter b: float b\n");
    EXPECT_EQ(Describe("float a; } ) interface I { float b; vec3 c(); } $ void g() { }"),
              "interface I: interface I\n  method c: vec3 c()\nfunction g: void g()\n");
}

TEST(Outline, TakesEveryBranchOfConditions) {
    EXPECT_EQ(Describe("#ifdef A\nfloat f(float a)\n{\n#else\nfloat f(vec2 b)\n{\n#endif\n"
                       "    float c = 1.0;\n    return c;\n}\nclass B { }\n"),
              "function f: float f(float a) (cut)\n  parameter a: float a\n"
              "function f: float f(vec2 b)\n  parameter b: vec2 b\n  local c: float c\n"
              "class B: class B\n");
}

TEST(Outline, FindAround_NamesTheContainerAndTheMethod) {
    const Read read("class A { void f() { x; } float b; } void g() { y; } class C { void h() { z");
    const auto find = [&](const std::string& piece) {
        std::string names;
        for (const Symbol* symbol : read.outline.FindAround(read.text.GetText().find(piece))) {
            names += symbol->name;
        }
        return names;
    };
    EXPECT_EQ(find("x;"), "Af");
    EXPECT_EQ(find("float b"), "A");
    EXPECT_EQ(find("y;"), "g");
    EXPECT_EQ(find(" void g"), "");
    const std::vector<const Symbol*> end = read.outline.FindAround(read.text.GetText().size());
    ASSERT_EQ(end.size(), 2u);
    EXPECT_EQ(end[1]->name, "h");
    EXPECT_EQ(read.outline.Find("C"), &read.outline.symbols.at(2));
    EXPECT_EQ(read.outline.Find("h"), nullptr);
}

void ExpectInside(const SourceRange& inner, const SourceRange& outer) {
    EXPECT_LE(outer.begin, inner.begin);
    EXPECT_LE(inner.begin, inner.end);
    EXPECT_LE(inner.end, outer.end);
}

void ExpectSound(const Read& read, const Symbol& symbol, const SourceRange& outer) {
    ExpectInside(symbol.range, outer);
    ExpectInside(symbol.nameRange, symbol.range);
    ExpectInside(symbol.bodyRange, {0, read.text.GetText().size()});
    EXPECT_EQ(read.Get(symbol.nameRange), symbol.name);
    EXPECT_FALSE(symbol.name.empty());
    EXPECT_EQ(symbol.signature.find('\n'), std::string::npos);
    std::size_t begin = symbol.range.begin;
    for (const Symbol& child : symbol.children) {
        ExpectSound(read, child, symbol.range);
        EXPECT_LE(begin, child.range.begin);
        begin = child.range.begin;
        if (child.kind == Symbol::kKind_Parameter || child.kind == Symbol::kKind_Local) {
            EXPECT_EQ(child.bodyRange.begin, child.range.begin);
            EXPECT_LE(child.bodyRange.end, symbol.range.end);
            EXPECT_LE(child.nameRange.end, child.bodyRange.end);
        }
    }
}

void ExpectSound(const std::string& source) {
    const Read read(source);
    for (const Symbol& symbol : read.outline.symbols) {
        ExpectSound(read, symbol, {0, source.size()});
    }
    for (const Inclusion& inclusion : read.outline.inclusions) {
        EXPECT_EQ(read.Get(inclusion.range), inclusion.name);
    }
    ASSERT_FALSE(testing::Test::HasFailure()) << source;
}

TEST(Outline, OfEverySource_IsSound) {
    for (const CorpusText& source : Tests::GetCorpus()) {
        ExpectSound(source.text);
    }
}

TEST(Outline, OfEveryPrefix_IsSound) {
    for (const char* name : {"mappings.klsl", "lights/managers.klsl", "scattering.klsl"}) {
        const auto& corpus = Tests::GetCorpus();
        const auto found = std::find_if(corpus.begin(), corpus.end(), [&](const CorpusText& text) {
            return text.name.ends_with(name);
        });
        ASSERT_NE(found, corpus.end()) << name;
        for (std::size_t length = 0; length < found->text.size(); length += 13) {
            ExpectSound(found->text.substr(0, length));
        }
    }
}

TEST(Outline, OfDamagedAndRandomTexts_IsSound) {
    std::mt19937 random(5);
    const auto& corpus = Tests::GetCorpus();
    for (std::size_t i = 0; i < 500; ++i) {
        ExpectSound(Tests::Damage(random, corpus[i % corpus.size()].text));
        ExpectSound(Tests::MakeRandomText(random, 80));
    }
}

TEST(Outline, TakesLinearTimeAndNoStack) {
    for (const char* piece :
         {"{", "}", "(", "class A {", "void f() {", "if (x) ", "for (int i = 0;", "float f(", "do ",
          "else ", "input float a = ", "#ifdef A\n{\n", "// c\n", "float a; // b\n", "a b ",
          "float a = b {", "void f(float a, ", "class "}) {
        std::string text = "class A { void f() { ";
        while (text.size() < 30'000) {
            text += piece;
        }
        const Read read(text);
        EXPECT_FALSE(read.outline.symbols.empty()) << piece;
    }
}

} // namespace
} // namespace Tolen::Language

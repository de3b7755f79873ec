#include "language/Checker.h"
#include "language/SourceAssets.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Tolen::Language {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

std::string PathOf(const std::string& name) {
    return Tests::GetTemporary(name);
}

std::vector<Diagnostic> CheckText(const std::string& text) {
    Checker checker;
    checker.SetText(PathOf("t.klsl"), text);
    return checker.Check({PathOf("t.klsl")});
}

/// A line of @p text with what @p columns mean in brackets: "float x = [colr];".
std::string Mark(const std::string& text, int line, const SourceRange& columns) {
    const SourceText source(text);
    const std::string shown(source.GetLine(line));
    if (columns.GetLength() == 0) {
        return shown;
    }
    return shown.substr(0, columns.begin) + "[" + shown.substr(columns.begin, columns.GetLength()) +
           "]" + shown.substr(columns.end);
}

// ---- where messages point

struct PlaceCase {
    const char* source;
    std::vector<std::string> expected; ///< the message, the marked line and what was meant
    std::vector<std::string> notes;    ///< of all messages: the text and the marked line
};

std::ostream& operator<<(std::ostream& stream, const PlaceCase& c) {
    return stream << c.source;
}

class Places : public testing::TestWithParam<PlaceCase> {};

TEST_P(Places, AreTold) {
    const PlaceCase& c = GetParam();
    std::vector<std::string> found;
    std::vector<std::string> notes;
    for (const Diagnostic& diagnostic : CheckText(c.source)) {
        EXPECT_EQ(diagnostic.file, PathOf("t.klsl"));
        const std::string meant =
            diagnostic.suggestion.empty() ? "" : " -> " + diagnostic.suggestion;
        found.push_back(diagnostic.text + " | " +
                        Mark(c.source, diagnostic.line, diagnostic.columns) + meant);
        for (const Diagnostic::Note& note : diagnostic.notes) {
            notes.push_back(note.text + " | " + Mark(c.source, note.line, note.columns));
        }
    }
    EXPECT_EQ(found, c.expected);
    EXPECT_EQ(notes, c.notes);
}

const PlaceCase kParser[] = {
    {"class A {\n\tfloat x = ;\n}\nclass B { }\n",
     {"Syntax Error. Near \";\" | \tfloat x = [;]", "Parse Failure. Near \"}\" | class B { [}]"},
     {}},
    {"class A { input input vec3 x; }\n",
     {"Syntax Error. Near \"Unknown\" | class A { input [input] vec3 x; }"},
     {}},
    {"class A { inptu vec3 x; }\n",
     {"Syntax Error. Near \"identifier\" inptu | class A { [inptu] vec3 x; } -> input"},
     {}},
    {"class A { float f() { retrun 1.0; } }\n",
     {"Syntax Error. Near \"float constant\" | class A { float f() { retrun [1.0]; } }"},
     {"is 'retrun' meant to be 'return'? | class A { float f() { [retrun] 1.0; } }"}},
    {"class A { void f() {\n",
     {"Syntax Error. Near \"{\" | class A { void f() [{]",
      "Parse Failure. Near \"{\" | class A { void f() [{]"},
     {}},
    {"class A { }\nclass B { } class A { }\n\n",
     {"Duplicate class definition: \"A\" | class B { } class [A] { }"},
     {"the first one is here | class [A] { }"}},
    {"interface A { }\nclass A { }\ninterface A { }\n",
     {"Duplicate interface definition: \"A\" | interface [A] { }"},
     {"the first one is here | interface [A] { }"}},
    {"class A { coord vec2 a; normal vec3 a; int b; }\n",
     {"Conflicting coord declaration Near \"int\" | class A { coord vec2 a; normal vec3 [a]; "
      "int b; }"},
     {"the first one is here | class A { coord vec2 [a]; normal vec3 a; int b; }"}},
};
INSTANTIATE_TEST_SUITE_P(OfTheParser, Places, testing::ValuesIn(kParser));

const PlaceCase kClasses[] = {
    {"interface I { float At(); }\nclass A : I { vec3 At() { return vec3(1.0); } }\n",
     {"Class \"A\" is missing implementation of method \"At\" from interface \"I\" | class [A] : I "
      "{ vec3 At() { return vec3(1.0); } }"},
     {"'At' is declared here | interface I { float [At](); }",
      "'At' has another result or other parameters here | class A : I { vec3 [At]() { return "
      "vec3(1.0); } }"}},
    {"interface I { float Value(); }\nclass A : I { float Valeu() { return 1.0; } }\n",
     {"Class \"A\" is missing implementation of method \"Value\" from interface \"I\" | class [A] "
      ": I { float Valeu() { return 1.0; } }"},
     {"'Value' is declared here | interface I { float [Value](); }",
      "is 'Valeu' meant to be 'Value'? | class A : I { float [Valeu]() { return 1.0; } }"}},
    {"interface Pattern { float At(); }\nclass A : Patern { }\n",
     {"Failed to find interface Patern while initializing PrototypeShader A. | class A : [Patern] "
      "{ } -> Pattern"},
     {"'Pattern' is declared here | interface [Pattern] { float At(); }"}},
    {"interface Pattern { float At(); }\nclass A {\n  input Patern a;\n}\n",
     {"Initialization of prototype param \"a\" in class \"A\" failed. |   input [Patern] a; -> "
      "Pattern"},
     {}},
    {"interface I { }\nclass White : I { }\nclass A { input I a = Whiet(); }\n",
     {"Could not create shader named \"Whiet\" | class A { input I a = [Whiet](); } -> White"},
     {}},
    {"class A {\n  input vec3 a = vec3(1.0, 2.0);\n}\n",
     {"a: Initializer: Parameter Count |   input vec3 [a] = vec3(1.0, 2.0);"},
     {}},
    {"class A { tangent vec3 b; tangent vec4 a; }\n",
     {"ParameterCoord::Init Transformed Coords must be declared vec3 | class A { tangent vec3 b; "
      "tangent vec4 [a]; }"},
     {}},
    {"class A { input float more[3] = float[](1.0); }\n",
     {"more: Initializer: Length Mismatch | class A { input float [more][3] = float[](1.0); }"},
     {}},
};
INSTANTIATE_TEST_SUITE_P(OfClasses, Places, testing::ValuesIn(kClasses));

const PlaceCase kNames[] = {
    {"class A {\n  input vec3 color;\n  void Shade() { accumulate(o_color, color * colr); }\n}\n",
     {"'colr' is not declared |   void Shade() { accumulate(o_color, color * [colr]); } -> color"},
     {"'color' is declared here |   input vec3 [color];"}},
    // Where the name is also a member of something, that isn't meant.
    {"class A { float f(vec3 v) { return v.x + x; } }\n",
     {"'x' is not declared | class A { float f(vec3 v) { return v.x + [x]; } }"},
     {}},
    // A statement may go on in the lines below.
    {"class A {\n  float f(float size) {\n    return size +\n      sise;\n  }\n}\n",
     {"'sise' is not declared |       [sise]; -> size"},
     {"'size' is declared here |   float f(float [size]) {"}},
    {"float twice(float x) { return 2.0 * x; }\nclass A { float f() { return twyce(1.0); } }\n",
     {"function 'twyce' is not declared | class A { float f() { return [twyce](1.0); } } -> twice"},
     {"'twice' is declared here | float [twice](float x) { return 2.0 * x; }"}},
    {"class A { vec3 f(vec3 x) { return normalise(x); } }\n",
     {"function 'normalise' is not declared | class A { vec3 f(vec3 x) { return [normalise](x); } "
      "} -> normalize"},
     {}},
    {"class A { float f() { return kl_HitDistanse; } }\n",
     {"'kl_HitDistanse' is not declared | class A { float f() { return [kl_HitDistanse]; } } -> "
      "kl_HitDistance"},
     {}},
    {"class A { float f() { vce2 a; return 1.0; } }\n",
     {"type 'vce2' is not declared: the declaration is left out | class A { float f() { [vce2] a; "
      "return 1.0; } } -> vec2"},
     {}},
    {"class A {\n  output vec3 o_normal;\n  void Shade() { accumulate(o_nromal, Normal); }\n}\n",
     {"accumulate() call refers to unknown output 'o_nromal', call omitted... |   void Shade() { "
      "accumulate([o_nromal], Normal); } -> o_normal"},
     {"'o_normal' is declared here |   output vec3 [o_normal];"}},
    {"class A { void Shade() { accumulate(o_color); } }\n",
     {"Malformed accumulate() call found during code generation - must be of the form "
      "accumulate(output, value) | class A { void Shade() { [accumulate](o_color); } }"},
     {}},
    {"class Gray { static float Level() { return 1.0; } }\n"
     "class A { float f() { return Gray.Levle(); } }\n",
     {"Class \"Gray\" has no static method named \"Levle\". | class A { float f() { return "
      "Gray.[Levle](); } } -> Level"},
     {"'Level' is declared here | class Gray { static float [Level]() { return 1.0; } }"}},
    {"class Gray { static float Level() { return 1.0; } }\n"
     "class A { float f() { return Grey.Level(); } }\n",
     {"Class \"Grey\" cannot be found. | class A { float f() { return [Grey].Level(); } } -> Gray"},
     {"'Gray' is declared here | class [Gray] { static float Level() { return 1.0; } }"}},
    {"interface Pattern { float At(vec2 p); }\n"
     "class A { input Pattern pattern; float f() { return pattern.Att(vec2(0.0)); } }\n",
     {"Interface \"Pattern\" has no method named \"Att\". | class A { input Pattern pattern; float "
      "f() { return pattern.[Att](vec2(0.0)); } } -> At"},
     {"'At' is declared here | interface Pattern { float [At](vec2 p); }"}},
};
INSTANTIATE_TEST_SUITE_P(OfNames, Places, testing::ValuesIn(kNames));

const PlaceCase kCode[] = {
    // Of two calls, that with as many arguments.
    {"class A {\n  float g(float a, float b) { return a; }\n"
     "  float f() { return g(1.0, 2.0) + g(1.0); }\n}\n",
     {"no function 'g' takes (float) |   float f() { return g(1.0, 2.0) + [g](1.0); }"},
     {"'g' is declared here |   float [g](float a, float b) { return a; }"}},
    // Of two alike, none.
    {"class A {\n  float g(vec4 a) { return a.x; }\n"
     "  float f() { return g(1.0) + g(1.0); }\n}\n",
     {"no function 'g' takes (float) |   float f() { return g(1.0) + g(1.0); }"},
     {"'g(vec4)' is declared here |   float [g](vec4 a) { return a.x; }"}},
    {"interface Pattern { float At(vec2 p); }\n"
     "class A { input Pattern pattern; float f() { return pattern.At(1.0); } }\n",
     {"no function 'At' takes (float) | class A { input Pattern pattern; float f() { return "
      "pattern.[At](1.0); } }"},
     {"'At' is declared here | interface Pattern { float [At](vec2 p); }"}},
    {"interface Pattern { float At(vec2 p); }\n"
     "class A { input Pattern many[2]; float f() { return many[1].At(); } }\n",
     {"no function 'At' takes () | class A { input Pattern many[2]; float f() { return "
      "many[1].[At](); } }"},
     {"'At' is declared here | interface Pattern { float [At](vec2 p); }"}},
    {"class A { input vec3 color; void f() { vec3 x = color; color = x; } }\n",
     {"cannot assign to 'color', which is a uniform | class A { input vec3 color; void f() { vec3 "
      "x = color; [color] = x; } }"},
     {"'color' is declared here | class A { input vec3 [color]; void f() { vec3 x = color; color "
      "= x; } }"}},
    {"class A { const float half = 0.5; float f() { vec2 half2 = half; return half2.x; } }\n",
     {"cannot initialise 'half2' (vec2) with float | class A { const float half = 0.5; float f() { "
      "vec2 [half2] = half; return half2.x; } }"},
     {}},
    {"class A {\n  float f(float x) {\n    float y = x;\n    float y = x;\n    return y;\n  }\n}\n",
     {"'y' is declared twice |     float [y] = x;"},
     {"the first one is here |     float [y] = x;"}},
    {"class A { int f() { return 1.5; } }\n",
     {"cannot return float: 'f' returns int | class A { int f() { [return] 1.5; } }"},
     {"'f' is declared here | class A { int [f]() { return 1.5; } }"}},
    {"class A { float f(vec2 v) { return v.foo; } }\n",
     {"'foo' selects nothing of vec2: components are named by letters of xyzw, of rgba or of stpq "
      "| class A { float f(vec2 v) { return v.[foo]; } }"},
     {}},
    {"class A { float m; void f() { m.x = 1.0; } }\n",
     {"float has no member 'x' | class A { float m; void f() { m.[x] = 1.0; } }"},
     {}},
    {"class A { float f(float a) { if (a) return 1.0; return 2.0; } }\n",
     {"the condition of 'if' must be a bool, found float | class A { float f(float a) { [if] (a) "
      "return 1.0; return 2.0; } }"},
     {}},
    {"class A { vec2 f(vec2 a, vec3 b) { return a + b; } }\n",
     {"operator '+' cannot take vec2 and vec3 | class A { vec2 f(vec2 a, vec3 b) { return a [+] b; "
      "} }"},
     {}},
    {"class A { float h = float(undefined); }\n",
     {"'undefined' is not declared | class A { float h = float([undefined]); }"},
     {}},
    {"interface I { float Get(); }\nclass A { input I more[2]; float f() { return more.Get(); } "
     "}\n",
     {"Calling array input \"more\" as single value. | class A { input I more[2]; float f() { "
      "return [more].Get(); } }"},
     {"'more' is declared here | class A { input I [more][2]; float f() { return more.Get(); } }"}},
};
INSTANTIATE_TEST_SUITE_P(OfCode, Places, testing::ValuesIn(kCode));

const PlaceCase kCycles[] = {
    {"float F(float x) { return x > 1.0 ? F(x - 1.0) : x; }\n",
     {"functions call one another in a cycle: 'F' calls 'F' | float [F](float x) { return x > 1.0 ? "
      "F(x - 1.0) : x; }"},
     {}},
    // Whichever method comes first, the cycle is told once.
    {"class A_B {\n  float b() { return c(); }\n  float a() { return b(); }\n"
     "  float c() { return a(); }\n}\n",
     {"functions call one another in a cycle: 'A_B.b' calls 'A_B.c' calls 'A_B.a' calls 'A_B.b' |   "
      "float [b]() { return c(); }"},
     {"'A_B.c' is declared here |   float [c]() { return a(); }",
      "'A_B.a' is declared here |   float [a]() { return b(); }"}},
    // "b_kind" ends as a key begins.
    {"class A { float b(float x) { return x; }\n  float b_kind(float x) { return b_kind(x); } }\n",
     {"functions call one another in a cycle: 'A.b_kind' calls 'A.b_kind' |   float [b_kind](float x) "
      "{ return b_kind(x); } }"},
     {}},
    {"class A { static float s(int i) { return 1.0; }\n"
     "  static float s(float x) { return s(x); } }\n",
     {"functions call one another in a cycle: 'A.s' calls 'A.s' |   static float [s](float x) { "
      "return s(x); } }"},
     {}},
};
INSTANTIATE_TEST_SUITE_P(OfCycles, Places, testing::ValuesIn(kCycles));

const PlaceCase kDirectives[] = {
    {"#define A 1\n#define A 2\nclass B { }\n",
     {"Effects Manager: Pre-Processor found redefinition of 'A' as '2' (was '1') | #define [A] 2"},
     {"the definition before is here | #define [A] 1"}},
    {"#include \"none.klsl\"\nclass A { }\n",
     {"Failed to read shader source file 'none.klsl' (not found) | #include [\"none.klsl\"]"},
     {}},
    // What a name stands for is where the name is.
    {"#define SUM a + b\nclass A { float f(float a) { return 1.0 + SUM; } }\n",
     {"'b' is not declared | class A { float f(float a) { return 1.0 + [SUM]; } }"},
     {}},
    {"#define LONGER 1\nclass A { float f(float a) { return LONGER + LONGER + aa; } }\n",
     {"'aa' is not declared | class A { float f(float a) { return LONGER + LONGER + [aa]; } }"},
     {}},
    {"#define F(x) (x)\nclass A { float f(float a) { return F(x) + nothing; } }\n",
     {"'x' is not declared | class A { float f(float a) { return F([x]) + nothing; } }",
      "'nothing' is not declared | class A { float f(float a) { return F(x) + [nothing]; } }"},
     {}},
};
INSTANTIATE_TEST_SUITE_P(OfDirectives, Places, testing::ValuesIn(kDirectives));

// ---- what is compiled

std::vector<std::string> TextsOf(const std::vector<Diagnostic>& diagnostics) {
    std::vector<std::string> texts;
    texts.reserve(diagnostics.size());
    for (const Diagnostic& diagnostic : diagnostics) {
        texts.push_back(diagnostic.text);
    }
    return texts;
}

TEST(Checker, OurShaders_AreFlawless) {
    std::vector<std::string> files;
    for (const auto& entry :
         std::filesystem::recursive_directory_iterator(Tests::SourceFolder() + "/shaders")) {
        if (entry.path().extension() == ".klsl") {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    ASSERT_THAT(files, testing::Not(IsEmpty()));
    EXPECT_THAT(TextsOf(Checker().Check(files)), IsEmpty());
}

TEST(Checker, Code_IsRightIfOneKindOfEffectTakesIt) {
    EXPECT_THAT(TextsOf(CheckText(
                    "class Surface { coord vec2 uv; void Shade() { accumulate(o_color, Normal + "
                    "vec3(uv, 0.0)); } }\n"
                    "class Camera { void Render() { accumulate(o_color, vec3(kl_PixelCoord, 0.0)); "
                    "} int GetRayCount() { return 1; } }\n"
                    "class Both { void Shade() { accumulate(o_color, Normal); }\n"
                    " void Render() { accumulate(o_color, vec3(kl_PixelCoord, 0.0)); } }\n"
                    "class Haze { void Shade() { throughput *= direct; } }\n")),
                IsEmpty());
}

TEST(Checker, Code_ThatNobodyCalls_IsCompiled) {
    EXPECT_THAT(
        TextsOf(CheckText("float free() { return a; }\n"
                          "class A { static float g() { return b; } float h() { return c; }\n"
                          "  void out3(out float x[2], sampler2D s, primitive p) { x[0] = d; } }\n"
                          "interface I { void f(); }\n"
                          "class B : I { input I next; void f() { e = 1.0; next.f(); } }\n")),
        testing::UnorderedElementsAre("'a' is not declared", "'b' is not declared",
                                      "'c' is not declared", "'d' is not declared",
                                      "'e' is not declared"));
}

TEST(Checker, Mistakes_InSeveralMethods_AreToldTogetherAndOnce) {
    EXPECT_THAT(TextsOf(CheckText("class A {\n"
                                  "  float f() { return one; }\n"
                                  "  float g() { return f() + one; }\n"
                                  "  float h() { return g() + two; }\n"
                                  "}\n"
                                  "class B { input A a = A(); float f() { return a.f(); } }\n")),
                ElementsAre("'one' is not declared", "'two' is not declared"));
}

TEST(Checker, WhatNeedsShaders_GetsSomeThatDoNothing) {
    EXPECT_THAT(
        TextsOf(CheckText(
            "interface I { float a(vec3 x, out vec2 y); bvec2 b(); mat3 c(); primitive d(); "
            "void e(inout int z[3]); bool f(); }\n"
            "class A { input I one; input I many[]; static input I shared; input B other;\n"
            "  void Shade() { vec2 y; accumulate(o_color, vec3(one.a(vec3(1.0), y) + "
            "many[0].a(vec3(1.0), y))); }\n"
            "  static bool s() { return shared.f(); } }\n"
            "class B { input B itself; float f() { return 1.0; } }\n")),
        IsEmpty());
}

TEST(Checker, ClientNames_AreThere) {
    const std::string text =
        "class A { void Shade() { accumulate(o_color, weight * wetness * throughput); } }\n";
    EXPECT_THAT(CheckText(text), SizeIs(2));
    Checker checker;
    ClientNames names;
    ClientVariable variable;
    ASSERT_TRUE(ReadClientVariable("float weight", variable));
    Put(names.rayAttributes, variable);
    ASSERT_TRUE(ReadClientVariable(" vec3  wetness ", variable));
    Put(names.globals, variable);
    checker.SetClientNames(names);
    checker.SetText(PathOf("t.klsl"), text);
    EXPECT_THAT(TextsOf(checker.Check({PathOf("t.klsl")})), IsEmpty());

    for (const char* wrong : {"", "weight", "vec5 weight", "float 1", "float a b", "void a"}) {
        EXPECT_FALSE(ReadClientVariable(wrong, variable)) << wrong;
    }
}

TEST(Checker, OnlyWhatFollowsFromOthers_IsLeftOut) {
    EXPECT_THAT(
        TextsOf(CheckText("class A { input bool on = 1; static float f() { return 1.0; } }\n"
                          "class B { float g() { return A.f(); } }\n")),
        SizeIs(1));
    EXPECT_THAT(TextsOf(CheckText("interface I { }\n"
                                  "class Bad { float f() { return none; } }\n"
                                  "class Endless : I { input I next = Endless(); }\n")),
                testing::Contains(HasSubstr("Endless")));
}

// ---- files

TEST(Checker, Includes_AreFollowedToTheirLines) {
    const std::string part = Tests::WriteTemporary("part.h", "\n\nfloat part() { return a; }\n");
    Checker checker;
    checker.AddSearchPath(std::filesystem::path(part).parent_path());
    checker.SetText(PathOf("t.klsl"), "#define X 1\n\n#include \"part.h\"\n\n"
                                      "class A { float f() { return b; } }\n");
    const std::vector<Diagnostic> found = checker.Check({PathOf("t.klsl")});
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0].file, PathOf("t.klsl"));
    EXPECT_EQ(found[0].line, 5);
    EXPECT_EQ(found[0].columns, (SourceRange{29, 30}));
    EXPECT_EQ(found[1].file, FullPath(part));
    EXPECT_EQ(found[1].line, 3);
    EXPECT_EQ(found[1].columns, (SourceRange{22, 23}));
    ASSERT_THAT(found[1].notes, SizeIs(1));
    EXPECT_EQ(found[1].notes[0].text, "included from here");
    EXPECT_EQ(found[1].notes[0].file, PathOf("t.klsl"));
    EXPECT_EQ(found[1].notes[0].line, 3);
}

TEST(Checker, Texts_StandForFilesUntilTheyAreRemoved) {
    const std::string path = Tests::WriteTemporary("held.klsl", "class A { }\n");
    Checker checker;
    EXPECT_THAT(checker.Check({path}), IsEmpty());
    checker.SetText(path, "class A { float f() { return a; } }\n");
    EXPECT_THAT(checker.Check({path}), SizeIs(1));
    EXPECT_THAT(checker.Check({path}), SizeIs(1));
    checker.RemoveText(path);
    EXPECT_THAT(checker.Check({path}), IsEmpty());
}

TEST(Checker, LongCycles_AreToldInPart) {
    std::string text;
    for (int i = 0; i < 12; ++i) {
        text += "float f" + std::to_string(i) + "() { return f" + std::to_string((i + 1) % 12) +
                "(); }\n";
    }
    const std::vector<Diagnostic> diagnostics = CheckText(text);
    ASSERT_FALSE(diagnostics.empty());
    EXPECT_EQ(diagnostics[0].text,
              "functions call one another in a cycle: 'f0' calls 'f1' calls 'f2' calls 'f3' calls "
              "'f4' calls 'f5' calls 'f6' calls 'f7' calls ..., which calls 'f0'");
    EXPECT_EQ(diagnostics[0].line, 1);
    EXPECT_THAT(diagnostics[0].notes, SizeIs(7));
}

TEST(Checker, NamesWithoutEnd_AreCut) {
    const std::string name(1000000, 'a');
    const std::string texts[] = {
        "class A : " + name + " { }",
        "class A { void Shade() { float x = " + name + "; " + name + "(1.0); } }",
        "class " + name + " { input " + name + " x = " + name + "(); void Shade() { none = 1; } }",
        "#define A " + name + "\n#define A 1\n#include \"" + name + "\"",
    };
    for (const std::string& text : texts) {
        const std::vector<Diagnostic> diagnostics = CheckText(text);
        ASSERT_FALSE(diagnostics.empty()) << text.substr(0, 20);
        for (const Diagnostic& diagnostic : diagnostics) {
            EXPECT_LT(diagnostic.text.size(), 3000U) << text.substr(0, 20);
        }
    }
}

TEST(Checker, Messages_ComeByFileAndLine) {
    Checker checker;
    checker.SetText(PathOf("b.klsl"),
                    "class B {\n float f() { return a; }\n int g() { return b; } }");
    checker.SetText(PathOf("a.klsl"), "class A { float f() { return c; } }");
    EXPECT_THAT(TextsOf(checker.Check({PathOf("b.klsl"), PathOf("a.klsl")})),
                ElementsAre("'a' is not declared", "'b' is not declared", "'c' is not declared"));
    EXPECT_THAT(TextsOf(checker.Check({PathOf("a.klsl"), PathOf("b.klsl")})),
                ElementsAre("'c' is not declared", "'a' is not declared", "'b' is not declared"));
}

TEST(Checker, Files_AreThoseThatWereLookedFor) {
    const std::string part = Tests::WriteTemporary("there.h", "float part() { return 1.0; }\n");
    const std::string folder = std::filesystem::path(FullPath(part)).parent_path();
    Checker checker;
    checker.AddSearchPath(folder);
    checker.SetText(folder + "/t.klsl", "#include \"there.h\"\n#include \"missing.h\"\n");
    checker.Check({folder + "/t.klsl"});
    for (const char* name : {"/t.klsl", "/there.h", "/missing.h"}) {
        EXPECT_TRUE(checker.GetFiles().contains(folder + name)) << name;
    }
}

TEST(Checker, Files_OfOneNameInTwoFolders_KeepTheirMessages) {
    Checker checker;
    checker.SetText(PathOf("one/same.klsl"), "class One {\n float f() { return a; } }");
    checker.SetText(PathOf("two/same.klsl"), "class Two {\n\n float f() { return b; } }");
    const std::vector<Diagnostic> found =
        checker.Check({PathOf("one/same.klsl"), PathOf("two/same.klsl")});
    ASSERT_THAT(found, SizeIs(2));
    EXPECT_EQ(found[0].file, PathOf("one/same.klsl"));
    EXPECT_EQ(found[0].line, 2);
    EXPECT_EQ(found[1].file, PathOf("two/same.klsl"));
    EXPECT_EQ(found[1].line, 3);
}

} // namespace
} // namespace Tolen::Language

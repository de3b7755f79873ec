#include "KslParsing.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

using namespace Tests;

struct Case {
    const char* source;
    const char* tree;
};

std::string ParseMember(const std::string& member) {
    const std::string text = ParseToText("class A {" + member + "}");
    const std::string head = "(class A ";
    return text.starts_with(head) ? text.substr(head.size(), text.size() - head.size() - 2) : text;
}

TEST(KslParserDeclarations, EmptyText_IsAnEmptyFile) {
    const Parsed parsed = Parse("");
    EXPECT_TRUE(parsed.success);
    EXPECT_EQ(TreeText(*parsed.module), "");
}

TEST(KslParserDeclarations, FileLevel_HoldsFunctionsInterfacesClassesAndStandAloneCode) {
    EXPECT_EQ(ParseToText("float f() {} interface I {} class A {} [ ; ] { a } class B : I {}"),
              "(function (head float f) (block))\n"
              "(interface I)\n"
              "(class A)\n"
              "(class B : I)\n"
              "[(empty)]\n"
              "{a}\n");
}

TEST(KslParserDeclarations, Functions_WithEveryKindOfParameter) {
    const Case kCases[] = {
        {"void f() {}", "(function (head void f) (block))\n"},
        {"void f(void) {}", "(function (head void f) (block))\n"},
        {"vec3 f(float a) {}", "(function (head vec3 f (in float a)) (block))\n"},
        {"mat4 f(in int a, out bool b, inout vec2 c[3]) {}",
         "(function (head mat4 f (in int a) (out bool b) (inout vec2[3] c)) (block))\n"},
        {"primitive f(sampler2D s, sampler3D t, samplerCube u, primitive p) {}",
         "(function (head primitive f (in sampler2D s) (in sampler3D t) (in samplerCube u)"
         " (in primitive p)) (block))\n"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseToText(c.source), c.tree);
    }
}

TEST(KslParserDeclarations, EveryBuiltinType_MayBeReturnedAndDeclared) {
    for (int type = kType_Float; type <= kType_Primitive; ++type) {
        const std::string name = TypeSpecifierToString(static_cast<TypeSpecifier>(type));
        EXPECT_EQ(ParseToText(name + " f(" + name + " a) { " + name + " b; }"),
                  "(function (head " + name + " f (in " + name + " a)) (block (local (var " + name +
                      " b))))\n");
        EXPECT_EQ(ParseMember(name + " a;"), "(var " + name + " a)");
        EXPECT_EQ(ParseMember("input " + name + " a;"), "(var input " + name + " a)");
    }
}

TEST(KslParserDeclarations, Interfaces_HoldPrototypes) {
    EXPECT_EQ(ParseToText("interface I { void f(); vec3 g(in vec2 a, float b[4]); float h(void); }"),
              "(interface I (head void f) (head vec3 g (in vec2 a) (in float[4] b))"
              " (head float h))\n");
}

TEST(KslParserDeclarations, Coords_OfEveryKeywordAndType) {
    EXPECT_EQ(ParseMember("coord float a; normal vec2 b; tangent vec3 c; coord vec4 d;"),
              "(var coord float a) (var normal vec2 b) (var tangent vec3 c) (var coord vec4 d)");
}

TEST(KslParserDeclarations, Outputs_HaveTwoKeywordsAndTwoTypes) {
    EXPECT_EQ(ParseMember("output vec3 a; out vec4 b;"), "(output vec3 a) (output vec4 b)");
}

TEST(KslParserDeclarations, Members_OfEveryForm) {
    const Case kCases[] = {
        {"float a;", "(var float a)"},
        {"static float a;", "(var static float a)"},
        {"const float a;", "(var const float a)"},
        {"static const float a;", "(var static const float a)"},
        {"float a[3];", "(var float[3] a)"},
        {"float a[];", "(var float[] a)"},
        {"int a = 3;", "(var int a 3)"},
        {"int a = -3;", "(var int a -3)"},
        {"float a = 1.5f;", "(var float a 1.5f)"},
        {"vec3 v = -1.0;", "(var vec3 v -1.0)"},
        {"bool a = true;", "(var bool a true)"},
        {"vec3 a = vec3(1.0, 0.0, 0.0);", "(var vec3 a (make vec3 1.0 0.0 0.0))"},
        {"float a[2] = float[2](1.0, 2.0);", "(var float[2] a (make float[2] 1.0 2.0))"},
        {"float a[] = float[](1.0);", "(var float[] a (make float[] 1.0))"},
        {"int a[] = int[]();", "(var int[] a (make int[]))"},
        {"float a = Foo(1);", "(var float a (make :Foo 1))"},
        {"float a = Foo[2](b, c = d);", "(var float a (make :Foo[2] b (= c d)))"},
        {"float a = float();", "(var float a (make float))"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseMember(c.source), c.tree) << c.source;
    }
}

TEST(KslParserDeclarations, Inputs_OfEveryForm) {
    const Case kCases[] = {
        {"input float a;", "(var input float a)"},
        {"input Foo a;", "(var input :Foo a)"},
        {"static input Foo a;", "(var static input :Foo a)"},
        {"static input vec2 a = 1;", "(var static input vec2 a 1)"},
        {"input float a[3];", "(var input float[3] a)"},
        {"input float a[];", "(var input float[] a)"},
        {"static input Foo a[2];", "(var static input :Foo[2] a)"},
        {"input int a = -2147483648;", "(var input int a -2147483648)"},
        {"input int a = 7;", "(var input int a 7)"},
        {"input float a = .5;", "(var input float a .5)"},
        {"input float a = -.5f;", "(var input float a -.5f)"},
        {"input bool a = false;", "(var input bool a false)"},
        {"input Foo a = Bar();", "(var input :Foo a (make :Bar))"},
        {"input Foo a[] = Foo[](Bar(), Baz(1));",
         "(var input :Foo[] a (make :Foo[] (call Bar) (call Baz 1)))"},
        {"static input vec4 a[1] = vec4[1](vec4(1, 2, 3, x ? y : z));",
         "(var static input vec4[1] a (make vec4[1] (make vec4 1 2 3 (? x y z))))"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseMember(c.source), c.tree) << c.source;
    }
}

TEST(KslParserDeclarations, Constructors_OfMembersAndInputsKnowTheseTypes) {
    for (int type = kType_Float; type <= kType_Mat4; ++type) {
        const std::string name = TypeSpecifierToString(static_cast<TypeSpecifier>(type));
        const bool isBoolVector = type >= kType_BVec2 && type <= kType_BVec4;
        for (const std::string qualifier : {"", "input "}) {
            const std::string text = ParseMember(qualifier + "int a = " + name + "(1);");
            EXPECT_EQ(text.find("Syntax Error.") != std::string::npos, isBoolVector) << text;
            EXPECT_EQ(text.find("(make " + name + " 1)") == std::string::npos, isBoolVector);
        }
    }
}

TEST(KslParserDeclarations, Methods_ComeInAnyOrderWithMembers) {
    EXPECT_EQ(ParseMember("void f() {} float a; static vec3 g(float b) { return b; }"
                          "static void h(void) {} bool i() {}"),
              "(var float a) (function (head void f) (block))"
              " (function (head static vec3 g (in float b)) (block (return b)))"
              " (function (head static void h) (block)) (function (head bool i) (block))");
}

TEST(KslParserDeclarations, LowestNumber_IsItsOwnNegation) {
    EXPECT_EQ(ParseMember("int a = -2147483648;"), "(var int a -2147483648)");
    EXPECT_EQ(ParseMember("int a = -4294967295;"), "(var int a 1)");
    EXPECT_EQ(ParseMember("float a[4294967295];"), "(var float[-1] a)");
}

TEST(KslParserDeclarations, NegativeFloat_KeepsItsSignInValueAndSpelling) {
    const Parsed parsed = Parse("class A { vec3 v = -1.25f; }");
    const auto* constant = static_cast<const FloatConstant*>(
        parsed.module->GetClassDefinition("A")->GetMemberVariables()[0]->GetInitializer());
    EXPECT_EQ(constant->GetValue(), -1.25);
    EXPECT_EQ(constant->GetString()->GetString(), "-1.25f");
}

TEST(KslParserDeclarations, EveryUseOfAName_HasAStringOfItsOwn) {
    const Parsed parsed = Parse("class A : A { input A A; }");
    const ClassDefinition* definition = parsed.module->GetClassDefinition("A");
    const VariableDeclaration* input = definition->GetMemberVariables()[0];
    const String* const kStrings[] = {
        definition->GetName(), definition->GetInterface(), input->GetIdentifier(),
        static_cast<const UserType*>(input->GetType())->GetName()};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(kStrings[i]->GetString(), "A");
        for (int j = 0; j < i; ++j) {
            EXPECT_NE(kStrings[i], kStrings[j]);
        }
    }
}

TEST(KslParserDeclarations, ParsingTwice_FillsOneModule) {
    Parsed parsed = Parse("class A {}");
    EXPECT_TRUE(KslParser::Parse(parsed.module.get(), parsed.errors, *parsed.file, "class B {}", 0));
    EXPECT_FALSE(KslParser::Parse(parsed.module.get(), parsed.errors, *parsed.file, "class A {}\n", 0));
    EXPECT_EQ(parsed.Errors(), "t.ksl(2) : Duplicate class definition: \"A\"\n");
    EXPECT_EQ(TreeText(*parsed.module), "(class A)\n(class B)\n");
}

} // namespace
} // namespace Tolen::Effects

#include "KslParsing.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

using namespace Tests;

/// Parses a class with @p member, whose text starts at column 10.
std::string MemberRanges(const std::string& member) {
    return ParseToText("class A { " + member + " }", Ranges::Shown);
}

std::string ExpressionRanges(const std::string& expression) {
    return ParseExpression(expression, Ranges::Shown);
}

std::string StatementRanges(const std::string& statement) {
    return ParseStatement(statement, Ranges::Shown);
}

TEST(KslParserRanges, Definitions) {
    EXPECT_EQ(ParseToText("interface Foo { }", Ranges::Shown), "(interface Foo)@10-13\n");
    EXPECT_EQ(ParseToText("class Foo { }", Ranges::Shown), "(class Foo)@6-9\n");
    EXPECT_EQ(ParseToText("class Foo : Bar { }", Ranges::Shown), "(class Foo : Bar)@6-15\n");
    EXPECT_EQ(ParseToText("void f(in vec2 a, int b[3]) { }", Ranges::Shown),
              "(function (head void@0-4 f (in vec2@10-14 a)@15-16 (in int[3@24-25]@18-21 b)@22-25)"
              "@5-25 (block)@28-31)@0-31\n");
    EXPECT_EQ(ParseToText("interface I { int f(int a); }", Ranges::Shown),
              "(interface I (head int@14-17 f (in int@20-23 a)@24-25)@14-25)@10-11\n");
}

TEST(KslParserRanges, Members) {
    EXPECT_EQ(MemberRanges("coord vec3 a;"), "(class A (var coord vec3@16-20 a)@-)@6-7\n");
    EXPECT_EQ(MemberRanges("output vec4 a;"), "(class A (output vec4@17-21 a))@6-7\n");
    EXPECT_EQ(MemberRanges("float a = 1;"), "(class A (var float@10-15 a 1@-)@10-17)@6-7\n");
    EXPECT_EQ(MemberRanges("static const float a[2];"),
              "(class A (var static const float[2@-]@23-28 a)@23-30)@6-7\n");
    EXPECT_EQ(MemberRanges("float a = vec2[1](b, 2);"),
              "(class A (var float@10-15 a (make vec2[1@25-26]@- b@28-29 2@31-32)@-)@10-17)@6-7\n");
    EXPECT_EQ(MemberRanges("float a = Foo(-1.0);"),
              "(class A (var float@10-15 a (make :Foo@- (pre- 1.0@25-28)@24-28)@-)@10-17)@6-7\n");
    EXPECT_EQ(MemberRanges("bool a = true;"), "(class A (var bool@10-14 a true@-)@10-16)@6-7\n");
    EXPECT_EQ(MemberRanges("static void f() { }"),
              "(class A (function (head static void@17-21 f)@22-23 (block)@26-29)@17-29)@6-7\n");
}

TEST(KslParserRanges, Inputs) {
    EXPECT_EQ(MemberRanges("input float a;"),
              "(class A (var input float@16-21 a)@16-23)@6-7\n");
    EXPECT_EQ(MemberRanges("input float a = -1.0;"),
              "(class A (var input float@16-21 a -1.0@27-30)@16-30)@6-7\n");
    EXPECT_EQ(MemberRanges("input float a = -1;"),
              "(class A (var input float@16-21 a -1@27-28)@16-28)@6-7\n");
    EXPECT_EQ(MemberRanges("input Foo a = Bar(b, c);"),
              "(class A (var input :Foo@16-19 a (make :Bar@24-27 b@28-29 c@31-32)@24-32)@16-32)"
              "@6-7\n");
    EXPECT_EQ(MemberRanges("input Foo a[2] = Foo[1](b);"),
              "(class A (var input :Foo[2@22-23]@16-19 a"
              " (make :Foo[1@31-32]@27-30 b@34-35)@27-35)@16-21)@6-7\n");
    EXPECT_EQ(MemberRanges("static input float a = true;"),
              "(class A (var static input float@23-28 a true@33-37)@-)@6-7\n");
    EXPECT_EQ(MemberRanges("static input float a[];"),
              "(class A (var static input float[]@23-28 a)@-)@6-7\n");
}

TEST(KslParserRanges, Expressions) {
    EXPECT_EQ(ExpressionRanges("a + b * (c)"),
              "{(+ a@1-2 (* b@5-6 c@10-11)@5-11)@1-11}\n");
    EXPECT_EQ(ExpressionRanges("(a).b[1 , 2]"),
              "{([] (field a@2-3 b)@5-6 (, 1@7-8 2@11-12)@7-12)@5-12}\n");
    EXPECT_EQ(ExpressionRanges("a.f(b, c) ++"),
              "{(post++ (method a@1-2 (call f b@5-6 c@8-9)@3-9)@1-9)@1-9}\n");
    EXPECT_EQ(ExpressionRanges("vec3(1.5)"), "{(make vec3@- 1.5@6-9)@1-9}\n");
    EXPECT_EQ(ExpressionRanges("f( void )"), "{(call f)@1-2}\n");
    EXPECT_EQ(ExpressionRanges("- - a"), "{(pre- (pre- a@5-6)@3-6)@1-6}\n");
    EXPECT_EQ(ExpressionRanges("a ? b : true"), "{(? a@1-2 b@5-6 true@9-13)@1-13}\n");
    EXPECT_EQ(ExpressionRanges("a += b"), "{(+= a@1-2 b@6-7)@1-7}\n");
}

TEST(KslParserRanges, Statements) {
    EXPECT_EQ(StatementRanges("{ ; a ; }"), "[(block (empty)@3-4 (eval a@5-6)@5-6)@1-10]\n");
    EXPECT_EQ(StatementRanges("float a = b;"), "[(local (var float@1-6 a b@11-12)@-)@1-12]\n");
    EXPECT_EQ(StatementRanges("float a[2];"), "[(local (var float[2@9-10]@1-6 a)@-)@1-8]\n");
    EXPECT_EQ(StatementRanges("Foo a;"), "[(local (var :Foo@- a)@-)@1-6]\n");
    EXPECT_EQ(StatementRanges("Foo a[] = b;"), "[(local (var :Foo[]@- a b@11-12)@-)@1-12]\n");
    EXPECT_EQ(StatementRanges("if ( a ) b ;"), "[(if a@6-7 (eval b@10-11)@10-11)@6-11]\n");
    EXPECT_EQ(StatementRanges("if (a) ; else c;"),
              "[(if a@5-6 (empty)@8-9 (eval c@15-16)@15-16)@5-16]\n");
    EXPECT_EQ(StatementRanges("while (a) b;"),
              "[(while (condition a@8-9)@8-9 (eval b@11-12)@11-12)@8-12]\n");
    EXPECT_EQ(StatementRanges("while (int a = b) ;"),
              "[(while (condition (var int@8-11 a b@16-17)@-)@8-17 (empty)@19-20)@8-20]\n");
    EXPECT_EQ(StatementRanges("do a; while (b);"),
              "[(do (eval a@4-5)@4-5 b@14-15)@4-15]\n");
    EXPECT_EQ(StatementRanges("return a;"), "[(return a@8-9)@8-9]\n");
    EXPECT_EQ(StatementRanges("return ;"), "[(return)@1-7]\n");
    EXPECT_EQ(StatementRanges("break ;"), "[(break)@1-6]\n");
}

TEST(KslParserRanges, ForLoops_BeginAtTheInitialization) {
    EXPECT_EQ(StatementRanges("for (a; b; c) d;"),
              "[(for (eval a@6-7)@6-7 (condition b@9-10)@9-10 c@12-13 (eval d@15-16)@15-16)"
              "@6-16]\n");
}

TEST(KslParserRanges, Lines_AreThoseOfTheTokens) {
    EXPECT_EQ(StatementRanges("{\n a\n+\nb;\n}"),
              "[(block (eval (+ a@2:2-2:3 b@4:1-4:2)@2:2-4:2)@2:2-4:2)@1:1-5:2]\n");
}

TEST(KslParserRanges, Files_AreTheNameThatTheCallerGave) {
    const Parsed parsed = Parse("class A { input float a; }", 10);
    const ClassDefinition* definition = parsed.module->GetClassDefinition("A");
    EXPECT_EQ(definition->GetRange().file, parsed.file.get());
    EXPECT_EQ(definition->GetRange().firstLine, 11);
    EXPECT_EQ(definition->GetMemberVariables()[0]->GetRange().file, parsed.file.get());
}

} // namespace
} // namespace Tolen::Effects

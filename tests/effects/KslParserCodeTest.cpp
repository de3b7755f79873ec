#include "KslParsing.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

using namespace Tests;

struct Case {
    const char* source;
    const char* tree;
};

TEST(KslParserExpressions, Operands_OfEveryKind) {
    const Case kCases[] = {
        {"a", "a"},
        {"1", "1"},
        {"0x10", "16"},
        {"1.5f", "1.5f"},
        {"true", "true"},
        {"(a)", "a"},
        {"(((1)))", "1"},
        {"a[1]", "([] a 1)"},
        {"a[b, c]", "([] a (, b c))"},
        {"a.b", "(field a b)"},
        {"a.b.c", "(field (field a b) c)"},
        {"a++", "(post++ a)"},
        {"a--", "(post-- a)"},
        {"a++--", "(post-- (post++ a))"},
        {"f()", "(call f)"},
        {"f(void)", "(call f)"},
        {"f(a)", "(call f a)"},
        {"f(a, b = c, (d, e))", "(call f a (= b c) (, d e))"},
        {"a.f()", "(method a (call f))"},
        {"a.f(b).g(c)[1].h", "(field ([] (method (method a (call f b)) (call g c)) 1) h)"},
        {"a.vec3(1)", "(method a (make vec3 1))"},
        {"vec3(void)", "(make vec3)"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseExpression(c.source), "{" + std::string(c.tree) + "}\n");
    }
}

TEST(KslParserExpressions, Constructors_KnowTheBoolVectorsToo) {
    for (int type = kType_Float; type <= kType_Mat4; ++type) {
        const std::string name = TypeSpecifierToString(static_cast<TypeSpecifier>(type));
        EXPECT_EQ(ParseExpression(name + "(1, a)"), "{(make " + name + " 1 a)}\n");
        EXPECT_EQ(ParseExpression(name + "()"), "{(make " + name + ")}\n");
    }
}

TEST(KslParserExpressions, PrefixOperators_NestToTheRight) {
    const Case kCases[] = {
        {"-a", "(pre- a)"},         {"+a", "(pre+ a)"},
        {"!a", "(pre! a)"},         {"~a", "(pre~ a)"},
        {"++a", "(pre++ a)"},       {"--a", "(pre-- a)"},
        {"- -a", "(pre- (pre- a))"}, {"!~-a.b", "(pre! (pre~ (pre- (field a b))))"},
        {"-1.0", "(pre- 1.0)"},     {"-a++", "(pre- (post++ a))"},
        {"a- -b", "(- a (pre- b))"}, {"a---b", "(- (post-- a) b)"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseExpression(c.source), "{" + std::string(c.tree) + "}\n");
    }
}

/// The binary operators from the loosest binding to the tightest.
const std::vector<std::vector<std::string>> kLevels = {
    {","}, {"||"},       {"^^"},                 {"&&"},       {"|"},      {"^"},
    {"&"}, {"==", "!="}, {"<", ">", "<=", ">="}, {"<<", ">>"}, {"+", "-"}, {"*", "/", "%"}};

TEST(KslParserExpressions, BinaryOperators_AssociateToTheLeft) {
    for (const auto& level : kLevels) {
        for (const std::string& first : level) {
            for (const std::string& second : level) {
                EXPECT_EQ(ParseExpression("a" + first + "b" + second + "c"),
                          "{(" + second + " (" + first + " a b) c)}\n");
            }
        }
    }
}

TEST(KslParserExpressions, BinaryOperators_BindByTheirLevel) {
    for (std::size_t loose = 0; loose < kLevels.size(); ++loose) {
        for (std::size_t tight = loose + 1; tight < kLevels.size(); ++tight) {
            for (const std::string& outer : kLevels[loose]) {
                for (const std::string& inner : kLevels[tight]) {
                    EXPECT_EQ(ParseExpression("a" + outer + "b" + inner + "c"),
                              "{(" + outer + " a (" + inner + " b c))}\n");
                    EXPECT_EQ(ParseExpression("a" + inner + "b" + outer + "c"),
                              "{(" + outer + " (" + inner + " a b) c)}\n");
                    EXPECT_EQ(ParseExpression("a" + inner + "(b" + outer + "c)"),
                              "{(" + inner + " a (" + outer + " b c))}\n");
                }
            }
        }
    }
}

TEST(KslParserExpressions, Assignments_OfEveryOperatorAssociateToTheRight) {
    for (const std::string op :
         {"=", "*=", "/=", "%=", "+=", "-=", "<<=", ">>=", "&=", "^=", "|="}) {
        EXPECT_EQ(ParseExpression("a.x" + op + "b" + op + "c"),
                  "{(" + op + " (field a x) (" + op + " b c))}\n");
    }
    EXPECT_EQ(ParseExpression("a = b ? c : d = e"), "{(= a (? b c (= d e)))}\n");
    EXPECT_EQ(ParseExpression("-a = b"), "{(= (pre- a) b)}\n");
}

TEST(KslParserExpressions, Conditionals_AssociateToTheRight) {
    EXPECT_EQ(ParseExpression("a ? b : c ? d : e"), "{(? a b (? c d e))}\n");
    EXPECT_EQ(ParseExpression("a ? b ? c : d : e"), "{(? a (? b c d) e)}\n");
    EXPECT_EQ(ParseExpression("a ? b, c : d"), "{(? a (, b c) d)}\n");
    EXPECT_EQ(ParseExpression("a || b ? c : d, e"), "{(, (? (|| a b) c d) e)}\n");
}

TEST(KslParserStatements, OfEveryKind) {
    const Case kCases[] = {
        {";", "(empty)"},
        {"a;", "(eval a)"},
        {"a, b;", "(eval (, a b))"},
        {"{}", "(block)"},
        {"{;{}a;}", "(block (empty) (block) (eval a))"},
        {"continue;", "(continue)"},
        {"break;", "(break)"},
        {"return;", "(return)"},
        {"return a, b;", "(return (, a b))"},
        {"if (a) b;", "(if a (eval b))"},
        {"if (a, b) ; else ;", "(if (, a b) (empty) (empty))"},
        {"while (a) ;", "(while (condition a) (empty))"},
        {"while (float a = b) {}", "(while (condition (var float a b)) (block))"},
        {"do a; while (b);", "(do (eval a) b)"},
        {"do {} while (a, b);", "(do (block) (, a b))"},
        {"for (;;) ;", "(for (empty) (condition) () (empty))"},
        {"for (a; b; c) {}", "(for (eval a) (condition b) c (block))"},
        {"for (int i = 0; i < 3; ++i) a;",
         "(for (local (var int i 0)) (condition (< i 3)) (pre++ i) (eval a))"},
        {"for (Foo i; vec2 b = c;) ;",
         "(for (local (var :Foo i)) (condition (var vec2 b c)) () (empty))"},
        {"for (;; a, b) break;", "(for (empty) (condition) (, a b) (break))"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(ParseStatement(c.source), "[" + std::string(c.tree) + "]\n");
    }
}

TEST(KslParserStatements, Locals_OfEveryForm) {
    const Case kCases[] = {
        {"float a;", "(var float a)"},
        {"float a = b, c;", "t.ksl(1) : Syntax Error. Near \",\"\n"},
        {"float a = b;", "(var float a b)"},
        {"float a = b = c;", "(var float a (= b c))"},
        {"float a[2];", "(var float[2] a)"},
        {"float a[];", "(var float[] a)"},
        {"float a[2] = b;", "(var float[2] a b)"},
        {"Foo a;", "(var :Foo a)"},
        {"Foo a = b;", "(var :Foo a b)"},
        {"Foo a[3];", "(var :Foo[3] a)"},
        {"Foo a[] = b;", "(var :Foo[] a b)"},
        {"bvec3 b = bvec3(true);", "(var bvec3 b (make bvec3 true))"},
        {"vec3 v = -1.0;", "(var vec3 v (pre- 1.0))"},
    };
    for (const Case& c : kCases) {
        const std::string tree = c.tree;
        EXPECT_EQ(ParseStatement(c.source),
                  tree.front() == '(' ? "[(local " + tree + ")]\n" : tree);
    }
}

TEST(KslParserStatements, TypeKeyword_BeginsAConstructorOrADeclaration) {
    EXPECT_EQ(ParseStatement("vec3(1).x;"), "[(eval (field (make vec3 1) x))]\n");
    EXPECT_EQ(ParseStatement("vec3 x;"), "[(local (var vec3 x))]\n");
    EXPECT_EQ(ParseStatement("Foo(1);"), "[(eval (call Foo 1))]\n");
    EXPECT_EQ(ParseStatement("Foo[1];"), "[(eval ([] Foo 1))]\n");
    EXPECT_EQ(ParseStatement("while (vec3(1)) ;"), "[(while (condition (make vec3 1)) (empty))]\n");
}

TEST(KslParserStatements, Else_BindsToTheNearestIf) {
    EXPECT_EQ(ParseStatement("if (a) if (b) c; else d;"),
              "[(if a (if b (eval c) (eval d)))]\n");
    EXPECT_EQ(ParseStatement("if (a) if (b) c; else d; else e;"),
              "[(if a (if b (eval c) (eval d)) (eval e))]\n");
    EXPECT_EQ(ParseStatement("if (a) {if (b) c;} else d;"),
              "[(if a (block (if b (eval c))) (eval d))]\n");
    EXPECT_EQ(ParseStatement("if (a) while (b) if (c) d; else e;"),
              "[(if a (while (condition b) (if c (eval d) (eval e))))]\n");
    EXPECT_EQ(ParseStatement("if (a) b; else if (c) d; else e;"),
              "[(if a (eval b) (if c (eval d) (eval e)))]\n");
}

} // namespace
} // namespace Tolen::Effects

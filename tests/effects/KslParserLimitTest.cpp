#include "KslParsing.h"
#include "SmallStack.h"

#include "TolenEffects/Limits.h"

#include <gtest/gtest.h>

#include <string>

namespace Tolen::Effects {
namespace {

using namespace Tests;

std::string Repeat(const std::string& text, int count) {
    std::string repeated;
    repeated.reserve(text.size() * static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

/// A source that nests to any depth: head, opening text each level, core, closing text, tail.
struct Shape {
    const char* name;
    const char* head;
    const char* open;
    const char* core;
    const char* close;
    const char* tail;

    std::string Make(int depth) const {
        return std::string(head) + Repeat(open, depth) + core + Repeat(close, depth) + tail;
    }
};

constexpr Shape kShapes[] = {
    {"groups", "int f() { return ", "(", "a", ")", "; }"},
    {"calls", "int f() { a = 1; return ", "f(", "a", ")", "; }"},
    {"second arguments", "int f() { return ", "f(1, ", "a", ")", "; }"},
    {"constructors", "int f() { return ", "vec3(", "a", ")", "; }"},
    {"subscripts", "int f() { return ", "a[", "a", "]", "; }"},
    {"prefixes", "int f() { return ", "- ", "a", "", "; }"},
    {"prefixed groups", "int f() { return ", "-(", "a", ")", "; }"},
    {"right operands", "int f() { return ", "a * (", "a", ")", "; }"},
    {"left operands", "int f() { return ", "(", "a", ") * a", "; }"},
    {"fields", "int f() { return a", "", "", ".a", "; }"},
    {"methods", "int f() { return a", "", "", ".a()", "; }"},
    {"elements", "int f() { return a", "", "", "[1]", "; }"},
    {"postfixes", "int f() { return a", "", "", "++", "; }"},
    {"assignments", "int f() { ", "a = ", "a", "", "; }"},
    {"conditionals", "int f() { return ", "a ? a : ", "a", "", "; }"},
    {"inner conditionals", "int f() { return ", "a ? ", "a", " : a", "; }"},
    {"blocks", "void f() {", "{", ";", "}", "}"},
    {"ifs", "void f() {", "if (a) ", ";", "", "}"},
    {"whiles", "void f() {", "while (a) ", ";", "", "}"},
    {"dos", "void f() {", "do ", ";", " while (a);", "}"},
    {"fors", "void f() {", "for (;;) ", ";", "", "}"},
    {"stand-alone groups", "{", "(", "a", ")", "}"},
    {"member values", "class A { int a = int(", "(", "a", ")", "); }"},
    {"input values", "class A { input int a = int(", "(", "a", ")", "); }"},
};

/// The level that the constructor around the value takes.
int Outer(const Shape& shape) { return std::string(shape.name).ends_with("values") ? 1 : 0; }

TEST(KslParserLimits, Nesting_WorksUpToTheLimitAndIsRefusedBeyondIt) {
    OnSmallStack([] {
        for (const Shape& shape : kShapes) {
            const int limit = kLimitNesting - Outer(shape);
            EXPECT_TRUE(Parse(shape.Make(limit)).success) << shape.name;

            const Parsed parsed = Parse("\n\n" + shape.Make(limit + 1));
            EXPECT_FALSE(parsed.success) << shape.name;
            ASSERT_EQ(parsed.errors.size(), 1u) << shape.name;
            EXPECT_TRUE(parsed.errors[0].starts_with(
                "t.ksl(3) : The source exceeds the nesting limit of 1024 levels of expressions,"
                " statements and blocks. Near \""))
                << parsed.errors[0];
        }
    });
}

TEST(KslParserLimits, Nesting_FarBeyondTheLimitIsRefusedToo) {
    OnSmallStack([] {
        for (const Shape& shape : kShapes) {
            EXPECT_EQ(Parse(shape.Make(50'000)).errors.size(), 1u) << shape.name;
            EXPECT_EQ(Parse(std::string(shape.head) + Repeat(shape.open, 50'000)).errors.size(),
                      std::string(shape.open).empty() ? 2u : 1u)
                << shape.name;
        }
    });
}

TEST(KslParserLimits, Nesting_CountsThroughGroupsAndOperands) {
    // Each group holds a hundred selections: neither alone comes near the limit.
    const std::string selections = Repeat(".a", 100);
    std::string source = "a";
    for (int i = 0; i < 11; ++i) {
        source = "(" + source + selections + " + 1)";
    }
    EXPECT_EQ(Parse("{" + source + "}").errors.size(), 1u);
    EXPECT_TRUE(Parse("{(a" + Repeat(".a", 1023) + ")}").success);
    EXPECT_FALSE(Parse("{1 + (a" + Repeat(".a", 1024) + ")}").success);
    EXPECT_TRUE(Parse("{" + Repeat("(", 500) + "a" + Repeat(".a", 500) + Repeat(")", 500) + "}")
                    .success);
}

TEST(KslParserLimits, SiblingsDoNotNest) {
    EXPECT_TRUE(Parse("void f() {" + Repeat("{ if (a) { f(a, (b)); } else { ; } }", 5000) + "}")
                    .success);
    EXPECT_TRUE(Parse("{f(" + Repeat("-(a.b), ", 5000) + "1)}").success);
    EXPECT_TRUE(Parse(Repeat("void f() { { ; } }", 5000)).success);
}

TEST(KslParserLimits, Source_WorksUpToTheLimitAndIsRefusedBeyondIt) {
    std::string source = "class A {} //";
    source.resize(kLimitExpandedSource - 1, ' ');
    source += '\n';
    EXPECT_TRUE(Parse(source).success);
    source += '\n';
    EXPECT_EQ(Parse(source, 6).Errors(),
              "t.ksl(7) : The source exceeds the limit of 67108864 bytes.\n");
}

TEST(KslParserLimits, OperatorChains_HaveAnyLength) {
    OnSmallStack([] {
        for (const char* op : {"+", "-", "*", ",", "||", "<", "<<"}) {
            const Parsed parsed = Parse("{a" + Repeat(std::string(op) + "a", 50'000) + "}");
            EXPECT_TRUE(parsed.success) << op;
        }
    });
}

TEST(KslParserLimits, ElseIfChains_HaveAnyLength) {
    OnSmallStack([] {
        EXPECT_TRUE(Parse("void f() {" + Repeat("if (a) b; else ", 50'000) + ";}").success);
        EXPECT_TRUE(Parse("void f() {" + Repeat("if (a) { b; } else ", 50'000) + "{} }").success);
    });
}

TEST(KslParserLimits, AbandonedChains_AreFreed) {
    OnSmallStack([] {
        EXPECT_FALSE(Parse("{a" + Repeat("+a", 50'000)).success);
        EXPECT_FALSE(Parse("[" + Repeat("if (a) b; else ", 50'000)).success);
    });
}

} // namespace
} // namespace Tolen::Effects

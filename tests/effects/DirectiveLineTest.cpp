#include "DirectiveLine.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

TEST(DirectiveLine, OnlyTheExactFirstWord_IsADirective) {
    struct Case {
        const char* line;
        DirectiveLine::Directive expected;
    };
    const Case cases[] = {
        {"#include \"a\"", DirectiveLine::kDirective_Include},
        {"#import \"a\"", DirectiveLine::kDirective_Import},
        {"#define A", DirectiveLine::kDirective_Define},
        {"#undef A", DirectiveLine::kDirective_Undef},
        {"#ifdef A", DirectiveLine::kDirective_Ifdef},
        {"#ifndef A", DirectiveLine::kDirective_Ifndef},
        {"#else", DirectiveLine::kDirective_Else},
        {"#endif\r", DirectiveLine::kDirective_Endif},
        {" \t\v\f\r #endif", DirectiveLine::kDirective_Endif},
        {"#endif x", DirectiveLine::kDirective_Endif},
        {"# define A", DirectiveLine::kDirective_None},
        {"#Define A", DirectiveLine::kDirective_None},
        {"#defined A", DirectiveLine::kDirective_None},
        {"#endif//", DirectiveLine::kDirective_None},
        {"x #define A", DirectiveLine::kDirective_None},
        {"#pragma x", DirectiveLine::kDirective_None},
        {"#", DirectiveLine::kDirective_None},
        {"", DirectiveLine::kDirective_None},
        {" \t", DirectiveLine::kDirective_None},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(DirectiveLine::Parse(c.line).directive, c.expected) << c.line;
    }
}

TEST(DirectiveLine, TheRest_IsCleanedAtBothEnds) {
    struct Case {
        const char* line;
        const char* argument;
        const char* rest;
    };
    const Case cases[] = {
        {"#define", "", ""},
        {"#define A", "A", ""},
        {"#define A 1", "A", "1"},
        {"#define  A \t 1 \t", "A", "1"},
        {"#define A 1\r", "A", "1"},
        {"#define A 1 \r\r", "A", "1"},
        {"#define A 1  2\t3 ", "A", "1  2\t3"},
        {"#define A(x) x", "A(x)", "x"},
        {"#define A\r", "A", ""},
        {"#define A \r", "A", ""},
        {"#define A \r\r", "A", ""},
        {"#define A \r \t", "A", ""},
        {"#define A  ", "A", "  "},
        {"#define A \t", "A", " \t"},
        {"#define A // x", "A", "// x"},
    };
    for (const Case& c : cases) {
        const DirectiveLine line = DirectiveLine::Parse(c.line);
        EXPECT_EQ(line.argument, c.argument) << c.line;
        EXPECT_EQ(line.rest, c.rest) << c.line;
    }
}

TEST(DirectiveLine, TheFileName_StandsBetweenTheFirstAndTheLastQuote) {
    struct Case {
        const char* line;
        bool good;
        const char* name;
    };
    const Case cases[] = {
        {"#include \"a.ksl\"", true, "a.ksl"},
        {"#include \"a b.ksl\"", true, "a"},
        {"#include x\"a\"y", true, "a"},
        {"#include \"a\"b\"", true, "a\"b"},
        {"#include \"\"", true, ""},
        {"#include \"a", true, "a"},
        {"#include a\"", true, ""},
        {"#include <a.ksl>", false, ""},
        {"#include", false, ""},
        {"#include a \"b\"", false, ""},
        {"#include \"a.ksl\" \"b\"", true, "a.ksl"},
    };
    for (const Case& c : cases) {
        std::string name;
        EXPECT_EQ(DirectiveLine::Parse(c.line).GetFileName(name), c.good) << c.line;
        EXPECT_EQ(name, c.name) << c.line;
    }
}

} // namespace
} // namespace Tolen::Effects

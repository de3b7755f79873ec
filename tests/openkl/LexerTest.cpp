#include "compiler/Lexer.h"
#include "compiler/Diagnostics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace Tolen::OpenKL::Tests {

namespace {

/// The tokens of a text between bars, each constant with its value.
std::string Cut(std::string_view text) {
    Diagnostics diagnostics;
    std::string out;
    for (const Token& token : Tokenize(text, diagnostics)) {
        out += out.empty() ? "" : "|";
        out += token.kind == kToken_IntConstant     ? "int " + std::to_string(token.value.i)
               : token.kind == kToken_FloatConstant ? "float " + std::to_string(token.value.f)
               : token.kind == kToken_Identifier    ? "name " + std::string(token.text)
               : token.kind == kToken_End           ? "end"
                                                    : std::string(token.text);
    }
    return out;
}

std::string GetErrors(std::string_view text) {
    Diagnostics diagnostics;
    Tokenize(text, diagnostics);
    return diagnostics.ToString();
}

struct Case {
    const char* text;
    const char* expected;
};

} // namespace

TEST(Lexer, Texts_AreCutIntoTheLongestTokens) {
    const Case cases[] = {
        {"", "end"},
        {" \t\r\v\f\n", "end"},
        {"a b_1 _c Void", "name a|name b_1|name _c|name Void|end"},
        {"vec3 vec5 int inty", "vec3|name vec5|int|name inty|end"},
        {"uniform varying normalized attribute",
         "name uniform|name varying|name normalized|name attribute|end"},
        {"a+++b", "name a|++|+|name b|end"},
        {"a- -b", "name a|-|-|name b|end"},
        {"- -x", "-|-|name x|end"},
        {"a<<=b>>=c", "name a|<<=|name b|>>=|name c|end"},
        {"a<=b<c<<d", "name a|<=|name b|<|name c|<<|name d|end"},
        {"a&&b^^c||d&e^f|g", "name a|&&|name b|^^|name c||||name d|&|name e|^|name f|||name g|end"},
        {"!a!=~b==c", "!|name a|!=|~|name b|==|name c|end"},
        {"a.x.5", "name a|.|name x|float 0.500000|end"},
        {"a?b:c,d;", "name a|?|name b|:|name c|,|name d|;|end"},
        {"// gone\na", "name a|end"},
        {"// without a line feed", "end"},
        {"a/* gone \n ** / // */b", "name a|name b|end"},
        {"a/b*c", "name a|/|name b|*|name c|end"},
        {"/**/a/***/", "name a|end"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Cut(c.text), c.expected) << c.text;
        EXPECT_EQ(GetErrors(c.text), "") << c.text;
    }
}

TEST(Lexer, Numbers_HaveTheValueOfTheirSpelling) {
    const Case cases[] = {
        {"0", "int 0|end"},
        {"10", "int 10|end"},
        {"017", "int 15|end"},
        {"0x1F", "int 31|end"},
        {"0Xff", "int 255|end"},
        {"2147483647", "int 2147483647|end"},
        {"2147483648", "int -2147483648|end"},
        {"4294967295", "int -1|end"},
        {"0xffffffff", "int -1|end"},
        {"1.", "float 1.000000|end"},
        {".5", "float 0.500000|end"},
        {"1.5", "float 1.500000|end"},
        {"1.000000000000000", "float 1.000000|end"},
        {"1e5", "float 100000.000000|end"},
        {"1E+2", "float 100.000000|end"},
        {"5e-1", "float 0.500000|end"},
        {"1.e1", "float 10.000000|end"},
        {".5e1", "float 5.000000|end"},
        {"1f", "float 1.000000|end"},
        {"1.5f", "float 1.500000|end"},
        {"1.5F", "float 1.500000|end"},
        {"2.e2f", "float 200.000000|end"},
        {"08.5", "float 8.500000|end"},
        {"09e1", "float 90.000000|end"},
        {"007f", "float 7.000000|end"},
        {"1..2", "float 1.000000|float 0.200000|end"},
        {"1e999", "float inf|end"},
        {"1e-999", "float 0.000000|end"},
        {"340282346638528859811704183484516925440.0",
         "float 340282346638528859811704183484516925440.000000|end"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Cut(c.text), c.expected) << c.text;
        EXPECT_EQ(GetErrors(c.text), "") << c.text;
    }
}

TEST(Lexer, Floats_AreTheNearestToTheirDecimals) {
    Diagnostics diagnostics;
    EXPECT_EQ(Tokenize("0.1", diagnostics)[0].value.f, 0.1f);
    EXPECT_EQ(Tokenize("3.141592653589793", diagnostics)[0].value.f, 3.14159265358979323846f);
    EXPECT_EQ(Tokenize("1.1754943508222875e-38", diagnostics)[0].value.f, 0x1p-126f);
    EXPECT_EQ(Tokenize(std::string(100000, '1') + ".0", diagnostics)[0].value.f, INFINITY);
}

TEST(Lexer, BadCharactersAndNumbers_AreNamedOnceWithTheirLine) {
    const Case cases[] = {
        {"a\n$$$ b", "String 0 Line 2: error: unexpected character '$'"},
        {"\"text\"", "String 0 Line 1: error: unexpected character '\"'\n"
                     "String 0 Line 1: error: unexpected character '\"'"},
        {"\xc3\xa4", "String 0 Line 1: error: unexpected character '\\xc3\\xa4'"},
        {"#if", "String 0 Line 1: error: unexpected character '#'"},
        {"\x01", "String 0 Line 1: error: unexpected character '\\x01'"},
        {"a /* b\nc", "String 0 Line 1: error: comment has no end"},
        {"089", "String 0 Line 1: error: '089' is no number: octal digits go from 0 to 7"},
        {"4294967296", "String 0 Line 1: error: '4294967296' does not fit into 32 bits"},
        {"1u", "String 0 Line 1: error: unexpected 'u' behind the number '1'"},
        {"3abc", "String 0 Line 1: error: unexpected 'abc' behind the number '3'"},
        {"1.0fx", "String 0 Line 1: error: unexpected 'x' behind the number '1.0f'"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(GetErrors(c.text), c.expected) << c.text;
    }
    EXPECT_EQ(GetErrors(std::string_view("a\0b", 3)),
              "String 0 Line 1: error: unexpected character '\\x00'");
}

TEST(Lexer, Lines_CountLineFeedsInCodeAndComments) {
    Diagnostics diagnostics;
    const auto tokens = Tokenize("a\r\nb // c\n/* d\n\n*/ e\n", diagnostics);
    ASSERT_EQ(tokens.size(), 4u);
    EXPECT_EQ(tokens[0].line, 1);
    EXPECT_EQ(tokens[1].line, 2);
    EXPECT_EQ(tokens[2].line, 5);
    EXPECT_EQ(tokens[3].line, 6);
}

} // namespace Tolen::OpenKL::Tests

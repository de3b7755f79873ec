#include "TreePrinter.h"

#include "compiler/Limits.h"
#include "compiler/LinkedProgram.h"
#include "compiler/OverloadChooser.h"
#include "effects/SmallStack.h"

#include <gtest/gtest.h>

#include <ctime>
#include <random>
#include <string>

namespace Tolen::OpenKL::Tests {

namespace {

std::string Repeat(std::string_view text, int count) {
    std::string repeated;
    for (int i = 0; i < count; ++i) {
        repeated += text;
    }
    return repeated;
}

/// `open` and `close` around `core`, @p levels times.
std::string Nest(std::string_view open, std::string_view core, std::string_view close, int levels) {
    return Repeat(open, levels) + std::string(core) + Repeat(close, levels);
}

std::string InMain(const std::string& statements) {
    return "float g(float x); void main() { float f; int i; bool b; float a[2]; int n[2]; " +
           statements + " }";
}

struct Nested {
    const char* name;
    const char* before;
    const char* open;
    const char* core;
    const char* close;
    const char* after;
    int levels; ///< that the limit allows
};

std::string MakeText(const Nested& c, int levels) {
    return InMain(c.before + Nest(c.open, c.core, c.close, levels) + c.after);
}

const Nested kNested[] = {
    {"calls", "", "g(", "f", ")", ";", kMaxNesting - 1},
    {"built-in calls", "", "sin(", "f", ")", ";", kMaxNesting - 1},
    {"operands on the right", "", "f+(", "f", ")", ";", kMaxNesting - 1},
    {"subscripts", "", "n[", "i", "]", ";", kMaxNesting - 1},
    {"minus signs", "", "- ", "f", "", ";", kMaxNesting - 1},
    {"conditionals", "", "b?f:", "f", "", ";", kMaxNesting - 1},
    {"conditionals in the middle", "", "b?", "f", ":f", ";", kMaxNesting - 1},
    {"assignments", "", "f=", "f", "", ";", kMaxNesting - 1},
    {"constructors", "", "float(1+int(", "f", "))", ";", kMaxNesting / 3},
    {"blocks", "", "{", "", "}", "", kMaxNesting},
    {"if statements", "", "if (b) ", "f = 1;", "", "", kMaxNesting - 1},
    {"if blocks", "", "if (b) { ", "f = 1;", " }", "", kMaxNesting - 1},
    {"else blocks", "", "if (b) ; else { ", "f = 1;", " }", "", kMaxNesting - 1},
    {"for loops", "", "for (;;) { ", "break;", " }", "", kMaxNesting - 1},
    {"while loops", "", "while (b) ", "break;", "", "", kMaxNesting - 1},
    {"do loops", "", "do { ", "break;", " } while (b);", "", kMaxNesting - 1},
};

/// Processor time, which other work on the machine leaves alone.
double MeasureSeconds(const std::string& text) {
    const std::clock_t start = std::clock();
    GetMessages(text);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

} // namespace

TEST(CompilerLimits, Nesting_UpToTheLimitCompilesOnASmallStack) {
    for (const Nested& c : kNested) {
        Effects::Tests::OnSmallStack(
            [&] { EXPECT_EQ(GetMessages(MakeText(c, c.levels)), "") << c.name; });
    }
}

TEST(CompilerLimits, Nesting_BeyondTheLimitIsRefused) {
    for (const Nested& c : kNested) {
        for (const int levels : {c.levels + 1, 20000}) {
            Effects::Tests::OnSmallStack([&] {
                const std::string messages = GetMessages(MakeText(c, levels));
                EXPECT_NE(messages.find("deeper than the limit of 1024 levels"), std::string::npos)
                    << c.name << ": " << messages;
                EXPECT_EQ(messages.find('\n'), std::string::npos) << c.name << ": " << messages;
            });
        }
    }
}

TEST(CompilerLimits, ParenthesesThatOnlyGroup_AreNoLevels) {
    EXPECT_EQ(GetMessages(InMain(Nest("(", "f", ")", 100000) + ";")), "");
}

TEST(CompilerLimits, Chains_OfAnyLengthCompileOnASmallStack) {
    constexpr int kLength = 30000;
    const std::string chains[] = {
        "f" + Repeat("+f", kLength),
        "f" + Repeat("+i*f", kLength),
        "i" + Repeat("<<i", kLength),
        "b" + Repeat("||b", kLength),
        "b" + Repeat("&&f<f", kLength),
        "i" + Repeat(",i++", kLength),
        "i" + Repeat("+i", kLength) + Repeat("+f", kLength),
        "b" + Repeat("==b", kLength),
        "1" + Repeat("+1", kLength),
        Repeat("(", kLength) + "f" + Repeat("-1)", kLength),
    };
    for (const std::string& chain : chains) {
        Effects::Tests::OnSmallStack(
            [&] { EXPECT_EQ(GetMessages(InMain(chain + ";")), "") << chain.substr(0, 20); });
    }
    Effects::Tests::OnSmallStack([&] {
        EXPECT_EQ(GetMessages(InMain(Repeat("if (b) i++; else ", kLength) + ";")), "");
        EXPECT_EQ(GetMessages(InMain("vec3 v;v" + Repeat(".zyx", kLength) + ";")), "");
        EXPECT_EQ(GetMessages(InMain(Repeat("f = f;", kLength))), "");
    });
}

TEST(CompilerLimits, Heights_TellHowDeepATreeIs) {
    std::string messages;
    const auto shader = CompileShader(
        kStage_Ray, InMain("f" + Repeat("+sin(f)", 1000) + "; sin(sin(f+f))*f;"), messages);
    ASSERT_NE(shader, nullptr) << messages;
    const auto statements = FindFunction(*shader, "main")->body->statements;
    const auto getHeight = [&](std::size_t fromEnd) {
        return statements[statements.size() - fromEnd]
            ->As<ExpressionStatement>()
            .expression->height;
    };
    EXPECT_EQ(getHeight(2), 3);
    EXPECT_EQ(getHeight(1), 4);
}

TEST(CompilerLimits, Variables_AreHeldToTheirSize) {
    const std::string most = std::to_string(kMaxScalarsInVariable);
    const std::string tooMany = std::to_string(kMaxScalarsInVariable + 1);
    EXPECT_EQ(GetMessages("float a[" + most + "];"), "");
    EXPECT_EQ(GetMessages("float a[" + tooMany + "];"),
              "String 0 Line 1: error: 'a' of type float[16385] holds 16385 scalars; the limit is "
              "16384");
    EXPECT_EQ(GetMessages("void f() { mat4 m[2147483647]; }"),
              "String 0 Line 1: error: 'm' of type mat4[2147483647] holds 34359738352 scalars; the "
              "limit is 16384");
    EXPECT_NE(GetMessages("void f(float[100000] a);").find("limit"), std::string::npos);
    EXPECT_NE(GetMessages("struct S { float a[16384]; float b; };").find("limit"),
              std::string::npos);
    EXPECT_NE(GetMessages("struct S { float a[1000]; }; S s[1000];").find("limit"),
              std::string::npos);
}

TEST(CompilerLimits, Structs_NestOnlySoDeep) {
    std::string text = "struct S0 { float a; };";
    for (int i = 1; i <= 64; ++i) {
        text += "struct S" + std::to_string(i) + " { S" + std::to_string(i - 1) + " a; };";
    }
    EXPECT_EQ(GetMessages(text),
              "String 0 Line 1: error: struct 'S64' passes the limit of 64 structs inside of one "
              "another");
}

TEST(CompilerLimits, Parameters_AndArgumentsAreCounted) {
    const int most = static_cast<int>(OverloadChooser::kMaxParameters);
    EXPECT_EQ(GetMessages("void f(int" + Repeat(", int", most - 1) + "); void main() { f(1" +
                          Repeat(", 1", most - 1) + "); }"),
              "");
    EXPECT_NE(GetMessages("void f(int" + Repeat(", int", most) + ");").find("limit of 128"),
              std::string::npos);
    EXPECT_NE(GetMessages("void f(); void main() { f(1" + Repeat(", 1", most) + "); }")
                  .find("limit of 128"),
              std::string::npos);
    EXPECT_EQ(GetMessages("void main() { float a[300] = float[](1" + Repeat(", 1", 299) + "); }"),
              "");
}

TEST(CompilerLimits, RandomBytes_AreRefusedWithoutHarm) {
    std::mt19937 random(1);
    for (int i = 0; i < 300; ++i) {
        std::string text(random() % 2000, '\0');
        for (char& c : text) {
            c = static_cast<char>(random());
        }
        const std::string messages = GetMessages(text);
        EXPECT_TRUE(text.empty() || messages.starts_with("String 0 Line ")) << messages;
    }
}

TEST(CompilerLimits, RandomTokens_AreAcceptedOrRefusedWithoutHarm) {
    static constexpr const char* kTokens[] = {"float",   "vec3",      "mat3",    "int",
                                              "bool",    "void",      "(",       ")",
                                              "(",       ")",         "{",       "}",
                                              "[",       "]",         ";",       ";",
                                              ",",       "=",         "+=",      "+",
                                              "-",       "*",         "<",       "==",
                                              "&&",      "?",         ":",       "!",
                                              "++",      ".",         "x",       "a",
                                              "b",       "f",         "1",       "2.5",
                                              "true",    "if",        "else",    "for",
                                              "do",      "while",     "return",  "break",
                                              "struct",  "S",         "uniform", "const",
                                              "out",     "sin",       "main",    "uniformblock",
                                              "varying", "precision", "length",  "texture2D",
                                              "B",       "//\n",      "in",      "primitive"};
    std::mt19937 random(2);
    for (int i = 0; i < 3000; ++i) {
        std::string text = i % 2 == 0 ? "void main() { float a; vec3 b; int x; " : "";
        const std::size_t count = random() % 60;
        for (std::size_t j = 0; j < count; ++j) {
            text += std::string(kTokens[random() % std::size(kTokens)]) + " ";
        }
        const std::string messages = GetMessages(text, static_cast<Stage>(i % 4));
        EXPECT_TRUE(messages.empty() || messages.starts_with("String 0 Line ")) << text;
    }
}

TEST(CompilerLimits, TextsWithOneTokenLess_NeverCrash) {
    const std::string text =
        "uniformblock B { vec3 a [ 1 ] ; } ; struct S { float x ; vec3 v ; } ; "
        "float f ( out vec3 v , int i ) { for ( int j = 0 ; j < i ; j ++ ) { v . "
        "xy += B . a [ j ] . yx ; } return i > 0 ? S ( 1.0 , v ) . x : - v [ 2 ] "
        "; } void main ( ) { vec3 v ; if ( f ( v , 3 ) > 0.5 ) spawnRay ( v , v "
        ", 1 ) ; else { accumulate ( 0 , v ) ; } }";
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find(' ', at), text.size());
        words.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    EXPECT_EQ(GetMessages(text), "");
    for (std::size_t left = 0; left < words.size(); ++left) {
        std::string without;
        std::string until;
        for (std::size_t i = 0; i < words.size(); ++i) {
            without += i == left ? "" : words[i] + " ";
            until += i < left ? words[i] + " " : "";
        }
        GetMessages(without);
        GetMessages(until);
    }
}

TEST(CompilerLimits, Time_GrowsWithTheTextAndNoFaster) {
    const auto makeFunctions = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            const std::string n = std::to_string(i);
            text += "float g" + n + "; float f" + n + "(float x);\n";
        }
        for (int i = 0; i < count; ++i) {
            const std::string n = std::to_string(i);
            text += "float f" + n + "(float x) { float y = x * g" + n + "; return y + sin(y); }\n";
        }
        return text;
    };
    MeasureSeconds(makeFunctions(100));
    const double small = MeasureSeconds(makeFunctions(1000));
    const double large = MeasureSeconds(makeFunctions(16000));
    EXPECT_LT(large, 16 * small * 6 + 0.2);
}

} // namespace Tolen::OpenKL::Tests

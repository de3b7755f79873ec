#include "KslParsing.h"

#include "KslToken.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

using namespace Tests;

/// The messages for @p source, without the place on line 1.
std::string Errors(const std::string& source) {
    const Parsed parsed = Parse(source);
    EXPECT_EQ(parsed.success, parsed.errors.empty()) << source;
    std::string text;
    for (const std::string& error : parsed.errors) {
        const std::string place = "t.ksl(1) : ";
        text += error.starts_with(place) ? error.substr(place.size()) : error;
    }
    return text;
}

struct Case {
    const char* source;
    const char* errors;
};

TEST(KslParserErrors, TextsAndRecovery) {
    const Case kCases[] = {
        // Dropping the bad tokens leaves no whole file.
        {"struct S { float a; };",
         "Syntax Error. Near \"struct\"\nParse Failure. Near \";\"\n"},
        {"float f(Foo a){}",
         "Syntax Error. Near \"identifier\" Foo\nParse Failure. Near \"}\"\n"},
        {"class", "Syntax Error. Near \"class\"\nParse Failure. Near \"class\"\n"},
        {"class A", "Syntax Error. Near \"identifier\" A\nParse Failure. Near \"identifier\" A\n"},
        {"float x;", "Syntax Error. Near \";\"\nParse Failure. Near \";\"\n"},
        {"uniform float x;",
         "Syntax Error. Near \"identifier\" uniform\nParse Failure. Near \";\"\n"},
        {"x", "Syntax Error. Near \"identifier\" x\n"},
        // Dropping them leaves one: the parse goes on to its end and fails all the same.
        {"class A { Foo x; }", "Syntax Error. Near \"identifier\" Foo\n"},
        {"class A { input float a }", "Syntax Error. Near \"}\"\nParse Failure. Near \"}\"\n"},
        // What is left is "void f() { x = g(); }".
        {"void f() { x = ; } void g() { y = ; }",
         "Syntax Error. Near \";\"\nSyntax Error. Near \"{\"\n"},
        {"class A {};", "Syntax Error. Near \";\"\n"},
        {"class A { input input float a; }", "Syntax Error. Near \"Unknown\"\n"},
        {"class A { float a[-1]; }", "Syntax Error. Near \"-\"\n"},
        {"class A { float a[1 + 1]; }", "Syntax Error. Near \"+\"\n"},
        {"class A { int a = 1, b = 2; }", "Syntax Error. Near \",\"\n"},
        {"void f() { int a = 1, b = 2; }", "Syntax Error. Near \",\"\n"},
        {"void f() { float a[2] = float[2](1.0, 2.0); }", "Syntax Error. Near \"[\"\n"},
        {"class A { bvec3 b = bvec3(true); }", "Syntax Error. Near \"bvec3\"\n"},
        {"class A { coord float a[2]; }", "Syntax Error. Near \"[\"\n"},
        {"class A { coord mat4 a; }", "Syntax Error. Near \"mat4\"\nParse Failure. Near \"}\"\n"},
        {"class A { output vec2 a; }", "Syntax Error. Near \"vec2\"\nParse Failure. Near \"}\"\n"},
        {"void f() { return 1 }", "Syntax Error. Near \"}\"\nParse Failure. Near \"}\"\n"},
        {"void f() { switch (a) {} }", "Syntax Error. Near \"{\"\nParse Failure. Near \"}\"\n"},
    };
    for (const Case& c : kCases) {
        EXPECT_EQ(Errors(c.source), c.errors) << c.source;
    }
}

TEST(KslParserErrors, FurtherErrors_AreMutedUntilThreeTokensWereTaken) {
    // Two tokens are taken between the bad ones, then three.
    EXPECT_EQ(Errors("[ a + ) b * ) c ; ]"), "Syntax Error. Near \")\"\n");
    EXPECT_EQ(Errors("[ a + ) b * c ) ; ]"), "Syntax Error. Near \")\"\nSyntax Error. Near \")\"\n");
    // Dropped ones start the count again.
    EXPECT_EQ(Errors("[ a + ) b ) * c ) ; ]"), "Syntax Error. Near \")\"\n");
}

TEST(KslParserErrors, EndOfInput_IsReportedAsFailureEvenWhenMuted) {
    EXPECT_EQ(Errors("[ a + ) b"), "Syntax Error. Near \")\"\nParse Failure. Near \"identifier\" b\n");
    EXPECT_EQ(Errors("[ a + b"),
              "Syntax Error. Near \"identifier\" b\nParse Failure. Near \"identifier\" b\n");
}

TEST(KslParserErrors, EveryToken_IsNamedWhereItIsWrong) {
    for (int code = 1; code < kToken_Count; ++code) {
        std::string text = kTokenTexts[code];
        std::string near = std::string("\"") + TokenName(code) + "\"";
        if (code == kToken_Identifier || code == kToken_Reserved) {
            text = "name";
            near = "\"identifier\" name";
        } else if (code == kToken_IntConstant || code == kToken_FloatConstant) {
            text = code == kToken_IntConstant ? "1" : "1.5";
        } else if (code == kToken_BoolConstant) {
            text = "true";
        }
        if (code == kToken_RightBracket) {
            continue; // the one that is right
        }
        EXPECT_TRUE(Errors("[ a ; " + text).starts_with("Syntax Error. Near " + near + "\n"))
            << text;
    }
}

TEST(KslParserErrors, Messages_BearTheLineOfTheScanner) {
    EXPECT_EQ(Errors("class A {}\n\nclass A {\n}\n\nvoid f() {}"),
              "t.ksl(6) : Duplicate class definition: \"A\"\n");
    EXPECT_EQ(Errors("class A {}\nclass A {}\n\n"),
              "t.ksl(4) : Duplicate class definition: \"A\"\n");
    EXPECT_EQ(Parse("$", 5).Errors(), "");
    EXPECT_EQ(Parse(";", 5).Errors(), "t.ksl(6) : Syntax Error. Near \";\"\n");
    EXPECT_EQ(Parse("\n\n;", -5).Errors(), "t.ksl(-2) : Syntax Error. Near \";\"\n");
}

TEST(KslParserErrors, Duplicates_AreReportedAndTheFirstStays) {
    const Parsed classes = Parse("class A { int a; } class A : I { float b; void f() {} } class B {}");
    EXPECT_FALSE(classes.success);
    EXPECT_EQ(classes.Errors(), "t.ksl(1) : Duplicate class definition: \"A\"\n");
    EXPECT_EQ(TreeText(*classes.module), "(class A (var int a))\n(class B)\n");

    const Parsed interfaces = Parse("interface I { int a(); } interface I { float b(int c); }");
    EXPECT_EQ(interfaces.Errors(), "t.ksl(1) : Duplicate interface definition: \"I\"\n");
    EXPECT_EQ(TreeText(*interfaces.module), "(interface I (head int a))\n");

    // A class may be named as an interface, and functions may be overloaded.
    EXPECT_TRUE(Parse("interface A {} class A {} void A() {} void A() {}").success);
}

TEST(KslParserErrors, Structs_AreCheckedForDuplicatesToo) {
    Parsed parsed;
    KslParser parser;
    parser.Init();
    EXPECT_TRUE(parser.Parse(parsed.module.get(), *parsed.file, "", 0));
    for (int i = 0; i < 2; ++i) {
        StructDefinition* definition = parser.CreateStructDefinition();
        definition->SetName(parsed.module->CreateString("S"));
        parser.AddStructDefinition(definition);
    }
    EXPECT_EQ(parser.GetErrors(),
              std::vector<std::string>{"t.ksl(1) : Duplicate struct definition: \"S\"\n"});
    EXPECT_EQ(parsed.module->GetCountStructDefinitions(), 1u);
}

TEST(KslParserErrors, ConflictingMembers_AreReportedNearTheTokenBehindThem) {
    const Parsed coords = Parse("class A { coord vec2 a; normal vec3 a; int b; coord vec4 c; }");
    EXPECT_EQ(coords.Errors(), "t.ksl(1) : Conflicting coord declaration Near \"int\"\n");
    EXPECT_EQ(TreeText(*coords.module),
              "(class A (var coord vec2 a) (var coord vec4 c) (var int b))\n");

    const Parsed outputs = Parse("class A { output vec3 a; out vec4 a;\n}");
    EXPECT_EQ(outputs.Errors(), "t.ksl(2) : Conflicting output declaration Near \"}\"\n");
    EXPECT_EQ(TreeText(*outputs.module), "(class A (output vec3 a))\n");

    const Parsed mixed = Parse("class A { coord vec3 a; output vec3 a; input vec3 a; vec3 a; }");
    EXPECT_TRUE(mixed.success);
}

TEST(KslParserErrors, IllegalCharacter_EndsTheTextInSilence) {
    const Parsed between = Parse("class A {} $ class B {}");
    EXPECT_TRUE(between.success);
    EXPECT_EQ(TreeText(*between.module), "(class A)\n");
    EXPECT_EQ(Errors("class A { $ }"), "Syntax Error. Near \"{\"\nParse Failure. Near \"{\"\n");
    EXPECT_TRUE(Parse("#pragma once\nclass A {}").success);
    EXPECT_TRUE(Parse("class A {} /* no end").success);
}

TEST(KslParserErrors, PercentSigns_AreNoFormats) {
    Parsed parsed;
    *parsed.file = "%s%n.ksl";
    EXPECT_FALSE(KslParser::Parse(parsed.module.get(), parsed.errors, *parsed.file, "%", 0));
    EXPECT_EQ(parsed.Errors(), "%s%n.ksl(1) : Syntax Error. Near \"%\"\n");
}

TEST(KslParserErrors, GoodParse_LeavesTheListOfErrorsAlone) {
    std::vector<std::string> errors = {"before"};
    Parsed parsed;
    EXPECT_TRUE(KslParser::Parse(parsed.module.get(), errors, *parsed.file, "class A {}", 0));
    EXPECT_EQ(errors, std::vector<std::string>{"before"});
    EXPECT_FALSE(KslParser::Parse(parsed.module.get(), errors, *parsed.file, "}", 0));
    EXPECT_EQ(errors.size(), 2u);
}

TEST(KslParserErrors, CurrentToken_IsTheLastOneDelivered) {
    Parsed parsed;
    KslParser parser;
    EXPECT_TRUE(parser.Init());
    EXPECT_TRUE(parser.Parse(parsed.module.get(), *parsed.file, "void f() { return; } [ 7; ]", 0));
    EXPECT_EQ(parser.GetCurrentToken().range.firstColumn, 26);
    EXPECT_EQ(parser.GetCurrentToken().range.file, parsed.file.get());
    EXPECT_TRUE(parser.Shutdown());
}

TEST(KslParserErrors, ManyDefinitions_TakeLinearTime) {
    std::string source;
    std::string outputs;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        source += "class A" + number + " {}\ninterface I" + number + " {}\n";
        outputs += "output vec3 a" + number + ";\n";
    }
    const Parsed parsed = Parse(source + "class A {" + outputs + "}");
    EXPECT_TRUE(parsed.success);
    EXPECT_EQ(parsed.module->GetClassDefinitions().back()->GetCountOutputs(), 20000u);
}

} // namespace
} // namespace Tolen::Effects

#include "language-server/LanguageClient.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// What the language server says about names and calls. "@" is where a client asks.

namespace Tolen::Tests {
namespace {

const Json kMarkdown = {
    {"textDocument",
     {{"hover", {{"contentFormat", {"markdown", "plaintext"}}}},
      {"signatureHelp",
       {{"signatureInformation", {{"documentationFormat", {"markdown", "plaintext"}}}}}}}}};

Json Ask(const std::string& method, const std::string& marked,
         const Json& capabilities = kMarkdown) {
    const MarkedText source(marked);
    LanguageClient client;
    client.Initialize(capabilities);
    client.Open("untitled:a", source.text);
    return client.RequestAt(method, "untitled:a", source.places.front());
}

std::string Hover(const std::string& marked, const Json& capabilities = kMarkdown) {
    const Json hover = Ask("textDocument/hover", marked, capabilities);
    return hover.is_null() ? "" : hover["contents"]["value"].get<std::string>();
}

TEST(Hover, ShowsAnInputWithItsDefaultAndComment) {
    EXPECT_EQ(Hover("class Wood\n{\n    // Of all rings,\n    // in metres.\n"
                    "    input float width = 0.25;\n    float At() { return wi@dth; }\n}\n"),
              "```klsl\ninput float width = 0.25\n```\n\n"
              "Input of class `Wood`. Default: `0.25`.\n\nOf all rings,\nin metres.");
}

TEST(Hover, IsPlainForClientsThatDoNotKnowMarkdown) {
    EXPECT_EQ(
        Hover("class Wood { input float width; float At() { return @width; } }", Json::object()),
        "input float width\n\nInput of class Wood. No default.");
}

TEST(Hover, TellsTheRangeOfTheName) {
    const Json hover = Ask("textDocument/hover", "class A { float x; float F() { return x@; } }");
    EXPECT_EQ(hover["range"], (Json{{"start", {{"line", 0}, {"character", 38}}},
                                    {"end", {{"line", 0}, {"character", 39}}}}));
}

TEST(Hover, ShowsMethodsThroughInterfaces) {
    EXPECT_EQ(Hover("interface Pattern { float At(vec2 place); } "
                    "class A { input Pattern part; float F() { return part.@At(vec2(0.0)); } }"),
              "```klsl\nfloat At(vec2 place)\n```\n\nMethod of interface `Pattern`.");
}

TEST(Hover, ShowsTheVariablesOfTheRenderer) {
    const MarkedText source("class A { float F() { return @time * t@int.x * @direct; } }");
    LanguageClient client;
    client.Initialize(Json::object(), {},
                      {{"rayAttributes", {"vec3 tint"}}, {"globals", {"float time"}}});
    client.Open("untitled:a", source.text);
    const std::string expected[] = {
        "float time\n\nA global variable of the renderer: all shaders share it.",
        "vec3 tint\n\nA ray attribute of the renderer: each ray carries a value of its own.",
        "float direct\n\nA ray attribute of the renderer: each ray carries a value of its own."};
    for (std::size_t i = 0; i < 3; ++i) {
        const Json hover = client.RequestAt("textDocument/hover", "untitled:a", source.places[i]);
        EXPECT_EQ(hover["contents"]["value"], expected[i]);
    }
}

TEST(Hover, ShowsTheMethodsOfAnInterface) {
    EXPECT_EQ(Hover("#define X 1\ninterface Pattern { float At(vec2 place); vec3 Tint(); } "
                    "class A : @Pattern { }",
                    Json::object()),
              "interface Pattern\n{\n    float At(vec2 place);\n    vec3 Tint();\n}\n\n"
              "Interface.");
}

TEST(Hover, ShowsEachMethodThatACallFits) {
    const std::string text = Hover("float f(float x) { return x; } float f(vec2 x) { return x.x; } "
                                   "float g() { return @f(1.0); }");
    EXPECT_NE(text.find("float f(float x)"), std::string::npos) << text;
    EXPECT_NE(text.find("float f(vec2 x)"), std::string::npos) << text;
}

TEST(Hover, ShowsBuiltIns) {
    EXPECT_NE(Hover("vec3 f(vec3 x) { return @normalize(x); }").find("normalize("),
              std::string::npos);
    EXPECT_NE(Hover("void f() { vec2 p = @kl_PixelCoord; }").find("kl_PixelCoord"),
              std::string::npos);
}

TEST(Hover, HasNothingToSayElsewhere) {
    for (const char* const marked :
         {"@", "class A { } @", "float f() { return 1@.0; }", "// f@loat",
          "float f() { @return_; }", "class A { float F() { return @nothing; } }",
          "#include \"a@.klsl\""}) {
        EXPECT_EQ(Hover(marked), "") << marked;
    }
}

TEST(Hover, TakesPlacesBeyondTheText) {
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", "class Wood { }");
    const Json behindLine = {{"line", 0}, {"character", 4000000000u}};
    const Json behindText = {{"line", 18446744073709551615u}, {"character", 0}};
    EXPECT_TRUE(client.RequestAt("textDocument/hover", "untitled:a", behindLine).is_null());
    EXPECT_TRUE(client.RequestAt("textDocument/hover", "untitled:a", behindText).is_null());
}

struct Call {
    std::string marked;
    std::vector<std::string> signatures; ///< none: no help at all
    int parameter;
};

TEST(SignatureHelp, ShowsTheParametersOfTheCallAroundAPlace) {
    const std::string functions =
        "float f(float x, vec2 y) { return x; } float g() { return 1.0; }\n"
        "interface I { float At(vec2 place, int i); }\n";
    const std::string f = "float f(float x, vec2 y)";
    for (const Call& call : {
             Call{"float h() { return f(@", {f}, 0},
             Call{"float h() { return f(1.0,@", {f}, 1},
             Call{"float h() { return f(@1.0, y); }", {f}, 0},
             Call{"float h() { return f(g(), vec2(1.0, 2.0)@); }", {f}, 1},
             Call{"float h() { return f((1.0 + (2.0@)), y); }", {f}, 0},
             Call{"float h() { return f(a[1@], y); }", {f}, 0},
             Call{"float h() { return f(g(@), y); }", {"float g()"}, 0},
             Call{"class A { input I part; void F() { part.At(vec2(0.0), @",
                  {"float At(vec2 place, int i)"},
                  1},
             Call{"float h() { return f(1.0, y)@; }", {}, 0},
             Call{"float h() { f(1.0; @", {}, 0},
             Call{"float h() { return unknown(@", {}, 0},
             Call{"float h() { return (@1.0); }", {}, 0},
             Call{"float h() { return f(/* @ */", {}, 0},
         }) {
        const Json help = Ask("textDocument/signatureHelp", functions + call.marked);
        if (call.signatures.empty()) {
            EXPECT_TRUE(help.is_null()) << call.marked << help;
            continue;
        }
        ASSERT_FALSE(help.is_null()) << call.marked;
        std::vector<std::string> labels;
        for (const Json& signature : help["signatures"]) {
            labels.push_back(signature["label"]);
        }
        EXPECT_EQ(labels, call.signatures) << call.marked;
        EXPECT_EQ(help["activeParameter"], call.parameter) << call.marked;
    }
}

TEST(SignatureHelp, ChoosesTheFirstOverloadWithTheParameter) {
    const Json help = Ask("textDocument/signatureHelp",
                          "float f(float x) { return x; } float f(float x, vec2 y) { return x; } "
                          "float g() { return f(1.0, @); }");
    ASSERT_EQ(help["signatures"].size(), 2u);
    EXPECT_EQ(help["activeSignature"], 1);
    EXPECT_EQ(help["signatures"][1]["parameters"],
              (Json{{{"label", "float x"}}, {{"label", "vec2 y"}}}));
}

} // namespace
} // namespace Tolen::Tests

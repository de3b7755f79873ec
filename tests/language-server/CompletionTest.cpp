#include "language-server/LanguageClient.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <string>
#include <vector>

/// What the language server offers to complete. "@" is where somebody types.

namespace Tolen::Tests {
namespace {

const std::string kDeclarations =
    "interface Pattern { float At(vec2 place); vec3 Tint(); }\n"
    "class White : Pattern { float At(vec2 place) { return 1.0; } "
    "vec3 Tint() { return vec3(1.0); } float Own() { return 1.0; } }\n"
    "class Tools { static float Twice(float x) { return 2.0 * x; } "
    "float Once() { return 1.0; } }\n"
    "float halved(float x) { return 0.5 * x; }\n"
    "#define GOLDEN 1.618\n";

Json Complete(const std::string& marked, const Json& capabilities = Json::object()) {
    const MarkedText source(marked);
    LanguageClient client;
    client.Initialize(capabilities);
    client.Open("untitled:a", source.text);
    return client.RequestAt("textDocument/completion", "untitled:a",
                            source.places.front())["items"];
}

std::set<std::string> LabelsOf(const Json& items) {
    std::set<std::string> labels;
    for (const Json& item : items) {
        EXPECT_TRUE(labels.insert(item["label"]).second) << item;
    }
    return labels;
}

struct Case {
    std::string name;
    std::string marked; ///< behind the declarations
    std::set<std::string> has;
    std::set<std::string> hasNot;
};

std::ostream& operator<<(std::ostream& stream, const Case& item) {
    return stream << item.name;
}

class Completion : public testing::TestWithParam<Case> {};

TEST_P(Completion, OffersWhatCanStandThere) {
    const std::set<std::string> labels = LabelsOf(Complete(kDeclarations + GetParam().marked));
    for (const std::string& label : GetParam().has) {
        EXPECT_TRUE(labels.contains(label)) << label;
    }
    for (const std::string& label : GetParam().hasNot) {
        EXPECT_FALSE(labels.contains(label)) << label;
    }
    if (GetParam().has.empty() && GetParam().hasNot.empty()) {
        EXPECT_TRUE(labels.empty());
    }
}

TEST(CompletionOfVariables, OffersThoseOfTheRendererWithTheirComponents) {
    const MarkedText source("class A { vec3 F() { return @tint.@x; } }");
    LanguageClient client;
    client.Initialize(Json::object(), {},
                      {{"rayAttributes", {"vec3 tint"}}, {"globals", {"float time"}}});
    client.Open("untitled:a", source.text);
    const auto complete = [&](std::size_t place) {
        return LabelsOf(client.RequestAt("textDocument/completion", "untitled:a",
                                         source.places[place])["items"]);
    };
    const std::set<std::string> variables = complete(0);
    for (const char* const name : {"tint", "time", "throughput", "direct"}) {
        EXPECT_TRUE(variables.contains(name)) << name;
    }
    EXPECT_TRUE(complete(1).contains("xyz"));
}

INSTANTIATE_TEST_SUITE_P(
    Places, Completion,
    testing::Values(
        Case{"Code",
             "class A { input float width; float own; coord vec2 uv; output vec3 o_n; "
             "float F(float x) { float y; { float z; } @ float late; } static float S() { return "
             "1.0; } }",
             {"width", "own", "uv", "o_n", "F", "S", "x", "y", "halved", "GOLDEN", "Tools",
              "return", "float", "vec3", "dot", "accumulate"},
             {"z", "late", "Pattern", "White", "At", "input", "class", "interface"}},
        Case{"CodeThatHasBegun",
             "class A { input float width; float F() { return wi@",
             {"width", "halved"},
             {"input"}},
        Case{"FreeFunction",
             "float f(float x) { return @; } class A { input float width; }",
             {"x", "f", "halved", "GOLDEN"},
             {"width"}},
        Case{"StaticMethod",
             "class A { input float width; static input float shared; static float F() { return @; "
             "} }",
             {"shared", "F"},
             {"width"}},
        Case{
            "LaterDefine", "float f() { return @; }\n#define LATER 1.0\n", {"GOLDEN", "LATER"}, {}},
        Case{"Interface",
             "class A { input Pattern part; float F() { return part.@",
             {"At", "Tint"},
             {"Own", "halved", "return", "length"}},
        Case{"InterfaceInAnArray",
             "class A { input Pattern parts[]; float F() { return parts[0].A@",
             {"At", "Tint"},
             {"length"}},
        Case{"Array",
             "class A { input Pattern parts[]; int F() { return parts.@",
             {"length"},
             {"At", "x"}},
        Case{"ArrayOfNumbers",
             "class A { input float xs[3]; int F() { return xs.@; } }",
             {"length"},
             {"x"}},
        Case{"ClassInput",
             "class A { input White part; float F() { return part.@",
             {"At", "Own"},
             {}},
        Case{"ClassName", "class A { float F() { return Tools.@", {"Twice"}, {"Once"}},
        Case{"Vector",
             "class A { float F(vec3 v) { return v.@; } }",
             {"x", "z", "r", "xy", "xyz", "rgb"},
             {"w", "a", "xyzw", "length"}},
        Case{"VectorOfIntegers", "float f() { ivec2 v; v.@", {"x", "y", "xy"}, {"z"}},
        Case{"VectorInAnArray", "float f() { vec2 v[2]; v[1].@", {"x", "y"}, {"z", "length"}},
        Case{"BuiltInVector", "float f() { return kl_RayDirection.@", {"x", "z"}, {"w"}},
        Case{"BuiltInNumber", "float f() { return kl_HitDistance.@", {}, {}},
        Case{"NumberHasNoMembers", "float f(float x) { return x.@", {}, {}},
        Case{"UnknownHasNoMembers", "float f() { return nothing.@", {}, {}},
        Case{"Digits", "float f() { return 1@", {}, {}},
        Case{"Class",
             "class A { @ }",
             {"input", "static", "coord", "output", "float", "vec3", "void"},
             {"return", "halved", "class"}},
        Case{"ClassBehindAMethod", "class A { void F() { } inp@ }", {"input"}, {"return"}},
        Case{"InputType",
             "class A { input @ }",
             {"Pattern", "White", "float", "sampler2D"},
             {"input", "halved"}},
        Case{"InputName", "class A { input float @ }", {}, {}},
        Case{"InputValue", "class A { input vec3 color = @; }", {"vec3", "true"}, {"White()"}},
        Case{
            "ShaderValue", "class A { input Pattern part = @; }", {"White()"}, {"Tools()", "vec3"}},
        Case{"ParameterType",
             "class A { float F(@) { return 1.0; } }",
             {"float", "inout"},
             {"halved"}},
        Case{"Outside", "cl@", {"class", "interface", "float"}, {"input", "return"}},
        Case{"InterfaceName", "class A : @", {"Pattern"}, {"White", "float"}},
        Case{"InterfaceNameBefore", "class A : P@ { } class B { }", {"Pattern"}, {"White"}},
        Case{"ClassNameIsFree", "class @", {}, {}},
        Case{"LocalNameIsFree", "float f() { float @", {}, {}},
        Case{"MethodOfInterface", "interface I { @ }", {"float", "void"}, {"input", "return"}},
        Case{"Directive", "#in@", {"#include", "#import", "#define"}, {"include"}},
        Case{"DefineName", "#ifdef @", {"GOLDEN"}, {"halved", "float"}},
        Case{"DefineValue", "#define X @", {"GOLDEN", "halved"}, {}},
        Case{"Comment", "float f() { /* @ */ }", {}, {}},
        Case{"LineComment", "float f() { // @\n}", {}, {}}),
    [](const auto& information) { return information.param.name; });

TEST(CompletionItem, TakesThePlaceOfTheWordSoFar) {
    const Json items = Complete("class A { float width; float F() { return wi@d; } }");
    for (const Json& item : items) {
        EXPECT_EQ(item["textEdit"]["range"], (Json{{"start", {{"line", 0}, {"character", 42}}},
                                                   {"end", {{"line", 0}, {"character", 44}}}}));
    }
    EXPECT_FALSE(items.empty());
}

TEST(CompletionItem, HasKindAndSignatureAndComment) {
    for (const Json& item : Complete("class A {\n    // Of a ring.\n    input float width = 0.5;\n"
                                     "    float F() { return @; } }")) {
        if (item["label"] == "width") {
            EXPECT_EQ(item["kind"], 10);
            EXPECT_EQ(item["detail"], "input float width = 0.5");
            EXPECT_EQ(item["documentation"]["value"],
                      "Input of class A. Default: 0.5.\n\nOf a ring.");
            return;
        }
    }
    ADD_FAILURE() << "no item";
}

TEST(CompletionItem, IsASnippetForClientsThatKnowThem) {
    const std::string marked = "float one() { return 1.0; } float two(float x) { return @; }";
    const Json snippets = {
        {"textDocument", {{"completion", {{"completionItem", {{"snippetSupport", true}}}}}}}};
    for (const bool isKnown : {false, true}) {
        for (const Json& item : Complete(marked, isKnown ? snippets : Json::object())) {
            const std::string text = item["textEdit"]["newText"];
            if (item["label"] == "one") {
                EXPECT_EQ(text, isKnown ? "one()$0" : "one");
            } else if (item["label"] == "two") {
                EXPECT_EQ(text, isKnown ? "two($0)" : "two");
            } else if (item["label"] == "return") {
                EXPECT_EQ(text, "return");
            }
        }
    }
}

TEST(CompletionItem, OfAFileNameIsAFileOrAFolder) {
    const std::string folder = GetTemporary("files");
    std::filesystem::create_directories(folder + "/parts");
    WriteTemporary("files/one.klsl", "class One { }\n");
    WriteTemporary("files/one.txt", "");
    WriteTemporary("files/parts/two.klsl", "class Two { }\n");
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    const auto complete = [&client](const std::string& marked) {
        const MarkedText source(marked);
        client.Open("untitled:a", source.text);
        return client.RequestAt("textDocument/completion", "untitled:a",
                                source.places.front())["items"];
    };
    EXPECT_EQ(LabelsOf(complete("#include \"@\"")), (std::set<std::string>{"one.klsl", "parts"}));
    EXPECT_EQ(LabelsOf(complete("#import \"parts/@")), std::set<std::string>{"two.klsl"});
    EXPECT_EQ(complete("#import \"parts/t@")[0]["textEdit"]["range"]["start"]["character"], 15);
    EXPECT_EQ(LabelsOf(complete("#include \"one.klsl\" @")), std::set<std::string>{});
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace Tolen::Tests

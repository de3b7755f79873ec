#include "language-server/LanguageClient.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

/// All names that mean the same, marked with "@", and other names for them.

namespace Tolen::Tests {
namespace {

struct Case {
    std::string name;
    std::string marked;
};

std::ostream& operator<<(std::ostream& stream, const Case& item) {
    return stream << item.name;
}

class References : public testing::TestWithParam<Case> {};

TEST_P(References, AreFoundFromEachOfThem) {
    const MarkedText source(GetParam().marked);
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", source.text);
    for (const Json& place : source.places) {
        std::vector<Json> found;
        for (const Json& reference : client.Request(
                 "textDocument/references", {{"textDocument", {{"uri", "untitled:a"}}},
                                             {"position", place},
                                             {"context", {{"includeDeclaration", true}}}})) {
            found.push_back(reference["range"]["start"]);
        }
        EXPECT_EQ(found, source.places) << place;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Names, References,
    testing::Values(
        Case{"OfAnInput", "class A { input float @x; float F() { return @x * @x; } } "
                          "class B { input float x; float F() { return x; } }"},
        Case{"OfALocal", "float f() { float @x = 1.0; { float x = 2.0; x = 3.0; } return @x; }"},
        Case{"OfAParameter", "float f(float @x) { return @x; } float g(float x) { return x; }"},
        Case{"OfAFunction", "float @f() { return 1.0; } class A { float G() { return @f(); } float "
                            "H(float f) { return f; } }"},
        Case{"OfAMethodOfAnInterface",
             "interface I { float @At(); } class A : I { float @At() { return 1.0; } } "
             "class B : I { input I part; input A other; float @At() { return part.@At() + "
             "other.@At(); } } "
             "class C { float At() { return 1.0; } float F() { return At(); } }"},
        Case{"OfAMethodOfAClass",
             "interface I { float At(); } class A : I { float @Of() { return 1.0; } "
             "float At() { return @Of(); } } class B : I { float Of() { return 2.0; } }"},
        Case{"OfOverloads", "float @f(float x) { return x; } float @f(vec2 x) { return @f(x.x); } "
                            "float g() { return @f(1.0); }"},
        Case{"OfAnInterface", "interface @I { } class A : @I { input @I part; }"},
        Case{"OfAClass", "class @A { static float F() { return 1.0; } } "
                         "class B { input @A part = @A(); float F() { return @A.F(); } }"},
        Case{"OfADefine", "#define @N 3\n#ifdef @N\nint f() { return @N; }\n#endif\n"}),
    [](const auto& information) { return information.param.name; });

Json Rename(const std::string& marked, const std::string& name) {
    const MarkedText source(marked);
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", source.text);
    return client.Ask("textDocument/rename", {{"textDocument", {{"uri", "untitled:a"}}},
                                              {"position", source.places.front()},
                                              {"newName", name}});
}

TEST(Rename, EditsEveryOccurrence) {
    const Json answer = Rename("class A { float @own; float F() { return own; } }", "inner");
    const Json edits = answer["result"]["changes"]["untitled:a"];
    ASSERT_EQ(edits.size(), 2u) << answer;
    EXPECT_EQ(edits[0]["newText"], "inner");
    EXPECT_EQ(edits[0]["range"], (Json{{"start", {{"line", 0}, {"character", 16}}},
                                       {"end", {{"line", 0}, {"character", 19}}}}));
}

TEST(Rename, RefusesNamesThatAreNoneOrTaken) {
    const std::string text =
        "class A { float @own; float other; float F(float x) { float y; return own; } } "
        "class B { }";
    for (const std::string name :
         {"", "2", "a b", "float", "x.y", "other", "F", "x", "y", "/**/"}) {
        EXPECT_TRUE(Rename(text, name).contains("error")) << name;
    }
    EXPECT_TRUE(Rename(text, "B").contains("result"));
    EXPECT_TRUE(Rename("class @A { } class B { }", "B").contains("error"));
    EXPECT_TRUE(Rename("class A { float z; float F(float @x) { float y; return x; } }", "z")
                    .contains("error"));
    EXPECT_TRUE(
        Rename("class A { float F(float @x) { return x; } float G(float y) { return y; } }", "y")
            .contains("result"));
    EXPECT_TRUE(Rename("float f() { return @dot(vec2(1.0), vec2(1.0)); }", "f").contains("error"));
    EXPECT_TRUE(Rename("class A { } @ ", "f").contains("error"));
}

TEST(Rename, TellsBeforeWhetherANameCanChange) {
    const MarkedText source("class A { floa@t @own; } // @own");
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", source.text);
    const auto prepare = [&](std::size_t place) {
        return client.RequestAt("textDocument/prepareRename", "untitled:a", source.places[place]);
    };
    EXPECT_TRUE(prepare(0).is_null());
    EXPECT_EQ(prepare(1)["start"], source.places[1]);
    EXPECT_TRUE(prepare(2).is_null());
}

TEST(Highlights, AreThoseOfTheDocument) {
    const MarkedText source("interface @I { } class A : @I { }");
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", source.text);
    client.Open("untitled:b", "class B : I { }");
    const Json highlights =
        client.RequestAt("textDocument/documentHighlight", "untitled:a", source.places.front());
    ASSERT_EQ(highlights.size(), 2u);
    EXPECT_EQ(highlights[1]["range"]["start"], source.places[1]);
}

} // namespace
} // namespace Tolen::Tests

#include "language-server/LanguageClient.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

/// Where the language server finds what names mean.

namespace Tolen::Tests {
namespace {

struct Case {
    std::string name;
    std::string text;
};

std::ostream& operator<<(std::ostream& stream, const Case& item) {
    return stream << item.name;
}

/// Asks at "$" for what begins at each "@".
void Expect(const std::string& method, const std::string& text) {
    const std::string uri = "untitled:a";
    std::string marked = text;
    const std::size_t asked = marked.find('$');
    marked.erase(asked, 1);
    const MarkedText source(marked);
    // Marks of answers take no room in the text.
    const std::size_t offset =
        asked - static_cast<std::size_t>(std::count(
                    marked.begin(), marked.begin() + static_cast<std::ptrdiff_t>(asked), '@'));
    const std::string before = source.text.substr(0, offset);
    const auto line = std::count(before.begin(), before.end(), '\n');
    const Json position = {{"line", line}, {"character", offset - (before.rfind('\n') + 1)}};

    LanguageClient client;
    client.Initialize();
    client.Open(uri, source.text);
    std::vector<Json> found;
    for (const Json& place : client.RequestAt(method, uri, position)) {
        EXPECT_EQ(place["uri"], uri);
        found.push_back(place["range"]["start"]);
    }
    EXPECT_EQ(found, source.places);
}

class Definition : public testing::TestWithParam<Case> {};

TEST_P(Definition, IsFound) {
    Expect("textDocument/definition", GetParam().text);
}

// "$" is where a client asks, "@" where answers are.
INSTANTIATE_TEST_SUITE_P(
    Names, Definition,
    testing::Values(
        Case{"Input", "class A { input float @x; float F() { return $x; } }"},
        Case{"BehindItsEnd", "class A { input float @x; float F() { return x$; } }"},
        Case{"Member", "class A { float @x; float F() { return $x; } }"},
        Case{"Coord", "class A { coord vec2 @uv; vec2 F() { return u$v; } }"},
        Case{"Output", "class A { output vec3 @o_n; void F() { accumulate($o_n, vec3(1.0)); } }"},
        Case{"Parameter", "float f(float @x) { return 2.0 * $x; }"},
        Case{"Local", "float f() { float @x = 1.0; return $x; }"},
        Case{"InnerLocal", "float f() { float x = 1.0; { float @x = 2.0; x = $x; } return x; }"},
        Case{"OuterLocalBehindABlock",
             "float f() { float @x = 1.0; { float x = 2.0; } return $x; }"},
        Case{"LoopVariable", "int f() { for (int @i = 0; $i < 3; ++i) { } return 0; }"},
        Case{"InputThatALocalDoesNotHide",
             "class A { input float @x; float F() { float x = 1.0; return $x; } }"},
        Case{"LocalOfAStaticMethod",
             "class A { input float x; static float F() { float @x = 1.0; return $x; } }"},
        Case{"StaticInputInAStaticMethod",
             "class A { static input float @x; static float F() { float x = 1.0; return $x; } }"},
        Case{"TheLocalItself",
             "class A { input float x; float F() { float @$x = 1.0; return x; } }"},
        Case{"LocalOfAnotherFunction", "void g() { float x; } float f() { return $x; }"},
        Case{"InputOfAnotherClass",
             "class B { input float x; } class A { float F() { return $x; } }"},
        Case{"Method", "class A { float @F() { return 1.0; } float G() { return $F(); } }"},
        Case{"MethodByItsArguments",
             "class A { float F(float x) { return x; } float @F(float x, float y) { return y; } "
             "float G() { return $F(1.0, F(2.0)); } }"},
        Case{"MethodsOfOneCount",
             "class A { float @F(float x) { return x; } float @F(vec2 y) { return y.x; } "
             "float G() { return $F(1.0); } }"},
        Case{"MethodBeforeFunction",
             "float F() { return 1.0; } class A { float @F() { return 1.0; } "
             "float G() { return $F(); } }"},
        Case{"Function", "float @f() { return 1.0; } class A { float G() { return $f(); } }"},
        Case{"MethodOfInterface",
             "interface I { float @At(); } class B : I { float At() { return 1.0; } } "
             "class A { input I part = B(); float F() { return part.$At(); } }"},
        Case{"MethodOfInterfaceInAnArray",
             "interface I { float @At(); } class A { input I parts[2]; int n[2]; "
             "float F() { return parts[n[0] + (1)].$At(); } }"},
        Case{"MethodOfClass",
             "interface I { float At(); } class B : I { float @At() { return 1.0; } } "
             "class A { input B part = B(); float F() { return part.$At(); } }"},
        Case{"MethodThatTheInterfaceHasNot",
             "interface I { float At(); } class B : I { float At() { return 1.0; } "
             "float Of() { return 1.0; } } class A { input I part; "
             "float F() { return part.$Of(); } }"},
        Case{"StaticMethod", "class B { static float @At() { return 1.0; } } "
                             "class A { float F() { return B.$At(); } }"},
        Case{"MethodThatIsNotStatic",
             "class B { float At() { return 1.0; } } class A { float F() { return B.$At(); } }"},
        Case{"ClassOfStaticMethod", "class @B { static float At() { return 1.0; } } "
                                    "class A { float F() { return $B.At(); } }"},
        Case{"InterfaceOfClass", "interface @I { } class A : $I { }"},
        Case{"TypeOfInput", "interface @I { } class A { input $I part; }"},
        Case{"Default", "class @B { } class A { input B part = $B(); }"},
        Case{"Define", "#define @SIZE 2.0\nfloat f() { return $SIZE; }"},
        Case{"LastDefineBefore",
             "#define SIZE 1.0\n#define @SIZE 2.0\nfloat f() { return $SIZE; }\n#define SIZE 3.0"},
        Case{"DefineInADirective", "#define @SIZE 2.0\n#ifdef $SIZE\n#endif"},
        Case{"FunctionInADefine", "float @f() { return 1.0; }\n#define SIZE $f()"},
        Case{"Component", "float f() { vec2 x; return x.$x; }"},
        Case{"BuiltIn", "float f() { return $dot(vec2(1.0), vec2(1.0)); }"},
        Case{"Keyword", "$float f() { return 1.0; }"}, Case{"Number", "float f() { return $1.0; }"},
        Case{"Comment", "class B { } class A { /* $B */ }"},
        Case{"LineComment", "class B { } // B$"},
        Case{"HalfWritten",
             "interface I { float @At(); } class A { input I part; void F() { part.$At("},
        Case{"NothingAtTheEnd", "class A { }\n$"}),
    [](const auto& information) { return information.param.name; });

class Implementation : public testing::TestWithParam<Case> {};

TEST_P(Implementation, IsFound) {
    Expect("textDocument/implementation", GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Names, Implementation,
    testing::Values(
        Case{"OfInterface", "interface $I { } class @A : I { } class B { } class @C : I { }"},
        Case{"OfMethod", "interface I { float At(); } class A : I { float @At() { return 1.0; } "
                         "float At(int i) { return 1.0; } } class B { input I part; "
                         "float F() { return part.$At(); } float At() { return 1.0; } }"},
        Case{"OfClass", "class @A { } class B { input A part = $A(); }"}),
    [](const auto& information) { return information.param.name; });

/// A folder with files, for the workspace.
class DefinitionInFiles : public testing::Test {
protected:
    DefinitionInFiles() {
        std::filesystem::create_directories(folder + "/deep");
        WriteTemporary(name + "/b.klsl", "float twice(float x) { return 2.0 * x; }\n"
                                         "interface Pattern { float At(); }\n");
        WriteTemporary(name + "/deep/c.klsl", "float twice(float x) { return x + x; }\n"
                                              "#define GOLD 1.618\n");
    }
    ~DefinitionInFiles() override { std::filesystem::remove_all(folder); }

    /// The file, by its name, and the line of the only definition; otherwise the whole answer.
    std::string Find(LanguageClient& client, const std::string& marked) {
        const MarkedText source(marked);
        const std::string uri = UriOf(folder + "/a.klsl");
        client.Open(uri, source.text);
        const Json places = client.RequestAt("textDocument/definition", uri, source.places.front());
        if (places.size() != 1) {
            return places.dump();
        }
        const std::string found = places[0]["uri"];
        return found.substr(UriOf(folder).size() + 1) + ":" +
               places[0]["range"]["start"]["line"].dump();
    }

    const std::string name = "definitions";
    const std::string folder = GetTemporary(name);
};

TEST_F(DefinitionInFiles, IsThatOfTheFirstLibrary) {
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    EXPECT_EQ(Find(client, "float f() { return @twice(1.0); }"), "b.klsl:0");
}

TEST_F(DefinitionInFiles, IsThatOfTheLibraryItselfWhenItHasOne) {
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    EXPECT_EQ(
        Find(client, "\nfloat twice(float x) { return x; }\nfloat f() { return @twice(1.0); }"),
        "a.klsl:1");
}

TEST_F(DefinitionInFiles, IsThatOfAnIncludedFileBeforeOthers) {
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    const std::string include = "#include \"deep/c.klsl\"\n";
    EXPECT_EQ(Find(client, include + "float f() { return @twice(1.0); }"), "deep/c.klsl:0");
    EXPECT_EQ(Find(client, include + "float f() { return @GOLD; }"), "deep/c.klsl:1");
    EXPECT_EQ(Find(client, "float f() { return @GOLD; }"), "[]");
}

TEST_F(DefinitionInFiles, OfAFileNameIsTheFile) {
    LanguageClient client;
    client.Initialize(Json::object(), folder, {{"searchPaths", {"deep"}}});
    EXPECT_EQ(Find(client, "#include \"@b.klsl\""), "b.klsl:0");
    EXPECT_EQ(Find(client, "#import \"deep/c@.klsl\""), "deep/c.klsl:0");
    EXPECT_EQ(Find(client, "#include \"c.klsl@\""), "deep/c.klsl:0");
    EXPECT_EQ(Find(client, "#include \"@nowhere.klsl\""), "[]");
}

TEST_F(DefinitionInFiles, FollowsWhatIsOpen) {
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    client.Open(UriOf(folder + "/b.klsl"), "\n\nfloat twice(float x) { return 2.0 * x; }");
    EXPECT_EQ(Find(client, "float f() { return @twice(1.0); }"), "b.klsl:2");
    client.Notify("textDocument/didClose",
                  {{"textDocument", {{"uri", UriOf(folder + "/b.klsl")}}}});
    EXPECT_EQ(Find(client, "float f() { return @twice(1.0); }"), "b.klsl:0");
}

TEST_F(DefinitionInFiles, FollowsFilesAndFoldersThatComeAndGo) {
    LanguageClient client;
    client.Initialize();
    const Json folders = {{{"uri", UriOf(folder + "/deep")}, {"name", "deep"}}};
    const auto change = [&](const Json& added, const Json& removed) {
        client.Notify("workspace/didChangeWorkspaceFolders",
                      {{"event", {{"added", added}, {"removed", removed}}}});
    };
    const std::string text = "float f() { return @twice(1.0); }";
    // Files beside an open one belong to it, those in folders below do not.
    EXPECT_EQ(Find(client, text), "b.klsl:0");
    std::filesystem::remove(folder + "/b.klsl");
    client.Notify("workspace/didChangeWatchedFiles", {{"changes", Json::array()}});
    EXPECT_EQ(Find(client, text), "[]");
    change(folders, Json::array());
    EXPECT_EQ(Find(client, text), "deep/c.klsl:0");
    change(Json::array(), folders);
    EXPECT_EQ(Find(client, text), "[]");
}

TEST_F(DefinitionInFiles, IsFoundUnderNamesThatNeedSignsOfPercent) {
    const std::string strange = "a b#\xc3\xa4%.klsl";
    WriteTemporary(name + "/" + strange, "class Far { }");
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    EXPECT_EQ(Find(client, "class A { input @Far part; }"), "a%20b%23%C3%A4%25.klsl:0");
    // Whatever else a client writes with a sign of percent, it is the same file.
    const std::string uri = UriOf(folder + "/a%20b%23%c3%a4%25%2eklsl");
    client.Open(uri, "\nclass Far { }");
    const MarkedText source("class B { input @Far part; }");
    client.Open("untitled:b", source.text);
    const Json places =
        client.RequestAt("textDocument/definition", "untitled:b", source.places.front());
    ASSERT_EQ(places.size(), 1u);
    EXPECT_EQ(places[0]["uri"], uri);
    EXPECT_EQ(places[0]["range"]["start"]["line"], 1);
}

} // namespace
} // namespace Tolen::Tests

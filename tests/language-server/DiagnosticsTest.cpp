#include "language-server/LanguageClient.h"

#include "tools/Process.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

/// What the language server tells about mistakes. The order of its checks is its own, so that tests
/// wait for the list that a version or a file comes to.

namespace Tolen::Tests {
namespace {

const Json kRelated = {{"textDocument", {{"publishDiagnostics", {{"relatedInformation", true}}}}}};

void Change(LanguageClient& client, const std::string& uri, int version, const std::string& text) {
    client.Notify("textDocument/didChange", {{"textDocument", {{"uri", uri}, {"version", version}}},
                                             {"contentChanges", {{{"text", text}}}}});
}

std::vector<std::string> MessagesOf(const Json& diagnostics) {
    std::vector<std::string> messages;
    for (const Json& diagnostic : diagnostics) {
        messages.push_back(diagnostic["message"]);
    }
    return messages;
}

using Messages = std::vector<std::string>;

class Diagnostics : public testing::Test {
protected:
    Diagnostics() { std::filesystem::create_directories(folder); }
    ~Diagnostics() override { std::filesystem::remove_all(folder); }

    std::string Write(const std::string& file, const std::string& text) const {
        return UriOf(WriteTemporary(name + "/" + file, text));
    }

    const std::string name = "diagnostics";
    const std::string folder = GetTemporary(name);
};

TEST_F(Diagnostics, ComeBehindEachChangeWithItsVersion) {
    const std::string good = "class A\n{\n    input vec3 color = vec3(0.5);\n"
                             "    void Shade() { accumulate(o_color, color); }\n}\n";
    const std::string bad = "class A\n{\n    input vec3 color = vec3(0.5);\n"
                            "    void Shade() { accumulate(o_color, colour); }\n}\n";
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", bad);
    const Json diagnostics = client.ReceiveDiagnostics("untitled:a", 1);
    ASSERT_EQ(diagnostics.size(), 1u);
    EXPECT_EQ(diagnostics[0]["severity"], 1);
    EXPECT_EQ(diagnostics[0]["source"], "klsl");
    EXPECT_TRUE(
        diagnostics[0]["message"].get<std::string>().starts_with("'colour' is not declared"));
    EXPECT_EQ(diagnostics[0]["range"]["start"]["line"], 3);
    EXPECT_EQ(diagnostics[0]["range"]["end"]["line"], 3);
    Change(client, "untitled:a", 2, good);
    EXPECT_EQ(client.ReceiveDiagnostics("untitled:a", 2), Json::array());
    Change(client, "untitled:a", 3, "class A {");
    EXPECT_FALSE(client.ReceiveDiagnostics("untitled:a", 3).empty());
    EXPECT_EQ(client.End(), 0);
}

TEST_F(Diagnostics, BringTheNameThatWasMeantAsAQuickFix) {
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", "class A { input vec3 color = vec3(0.5);\n"
                              "void Shade() { accumulate(o_color, colour); } }");
    const Json diagnostics = client.ReceiveDiagnostics("untitled:a");
    const auto ask = [&client](const Json& about) {
        return client.Ask("textDocument/codeAction", {{"textDocument", {{"uri", "untitled:a"}}},
                                                      {"range",
                                                       {{"start", {{"line", 0}, {"character", 0}}},
                                                        {"end", {{"line", 1}, {"character", 0}}}}},
                                                      {"context", {{"diagnostics", about}}}});
    };
    const Json actions = ask(diagnostics)["result"];
    ASSERT_EQ(actions.size(), 1u);
    EXPECT_EQ(actions[0]["title"], "Change to 'color'");
    EXPECT_EQ(actions[0]["edit"]["changes"]["untitled:a"],
              (Json{{{"range",
                      {{"start", {{"line", 1}, {"character", 35}}},
                       {"end", {{"line", 1}, {"character", 41}}}}},
                     {"newText", "color"}}}));
    // Messages of others, and nonsense, have none.
    EXPECT_EQ(ask({{{"message", "odd"}, {"data", 7}}, 8, nullptr})["result"], Json::array());
    EXPECT_EQ(ask(nullptr)["result"], Json::array());
}

TEST_F(Diagnostics, AreThoseOfAllFilesThatAnIncludedFileNeeds) {
    Write("part.klsl", "class Part { input Pattern inner; float At() { return inner.At(); } }\n");
    Write("pattern.klsl", "interface Pattern { float At(); }\n");
    Write("other.klsl", "class Other { }\n");
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    const std::string uri = UriOf(folder + "/a.klsl");
    client.Open(uri, "#include \"part.klsl\"\n");
    // The first check, of what the file needs alone, says as little as the one of all.
    EXPECT_EQ(client.ReceiveDiagnostics(uri), Json::array());
}

TEST_F(Diagnostics, AreCountedInUtf16) {
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", "/* \u00e4\U0001f600 */ class A { float ; }");
    const Json diagnostics = client.ReceiveDiagnostics("untitled:a");
    ASSERT_FALSE(diagnostics.empty());
    EXPECT_EQ(diagnostics[0]["range"], (Json{{"start", {{"line", 0}, {"character", 26}}},
                                             {"end", {{"line", 0}, {"character", 27}}}}));
}

TEST_F(Diagnostics, SeeTheOtherFilesOfTheWorkspace) {
    Write("interfaces.klsl", "interface Pattern { float At(vec2 place); }\n"
                             "class White : Pattern { float At(vec2 place) { return 1.0; } }\n");
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    const std::string uri = UriOf(folder + "/a.klsl");
    const std::string text =
        "class A\n{\n    input Pattern part = White();\n"
        "    void Shade() { accumulate(o_color, vec3(part.At(vec2(0.0)))); }\n}\n";
    client.Open(uri, text);
    EXPECT_EQ(client.ReceiveDiagnostics(uri, 1), Json::array());
    // The other file changes in the editor alone.
    const std::string other = UriOf(folder + "/interfaces.klsl");
    client.Open(other, "interface Pattern { float Of(vec2 place); }\n");
    Json diagnostics;
    do {
        diagnostics = client.ReceiveDiagnostics(uri);
    } while (diagnostics.empty());
    EXPECT_GE(diagnostics.size(), 1u);
    client.Notify("textDocument/didClose", {{"textDocument", {{"uri", other}}}});
    do {
        diagnostics = client.ReceiveDiagnostics(uri);
    } while (!diagnostics.empty());
}

TEST_F(Diagnostics, OfFilesThatAreNotOpenComeAndAreTakenBack) {
    const std::string bad = Write("bad.klsl", "class Bad { input vec3 x = vec3(1.0, 2.0); }\n");
    const std::string good = Write("good.klsl", "class Good { }\n");
    LanguageClient client;
    client.Initialize(Json::object(), folder);
    client.Open("untitled:a", "class A { }");
    EXPECT_EQ(client.ReceiveDiagnostics(bad).size(), 1u);
    Write("bad.klsl", "class Bad { input vec3 x = vec3(1.0); }\n");
    client.Notify("workspace/didChangeWatchedFiles", {{"changes", Json::array()}});
    EXPECT_EQ(client.ReceiveDiagnostics(bad), Json::array());
    client.Notify("textDocument/didClose", {{"textDocument", {{"uri", "untitled:a"}}}});
    client.End();
}

TEST_F(Diagnostics, OfDocumentsThatAreClosedAreTakenBack) {
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", "class A {");
    EXPECT_FALSE(client.ReceiveDiagnostics("untitled:a").empty());
    client.Notify("textDocument/didClose", {{"textDocument", {{"uri", "untitled:a"}}}});
    Json diagnostics;
    do {
        diagnostics = client.ReceiveDiagnostics("untitled:a");
    } while (!diagnostics.empty());
}

TEST_F(Diagnostics, PointToOtherPlacesForClientsThatShowThem) {
    const std::string first = "class A { }\n\nclass A { }\n";
    for (const bool isKnown : {false, true}) {
        LanguageClient client;
        client.Initialize(isKnown ? kRelated : Json::object());
        client.Open("untitled:a", first);
        const Json diagnostics = client.ReceiveDiagnostics("untitled:a");
        ASSERT_EQ(diagnostics.size(), 1u);
        EXPECT_EQ(diagnostics[0]["message"], "Duplicate class definition: \"A\"");
        ASSERT_EQ(diagnostics[0].contains("relatedInformation"), isKnown);
        if (isKnown) {
            const Json location = diagnostics[0]["relatedInformation"][0]["location"];
            EXPECT_EQ(location["uri"], "untitled:a");
            EXPECT_EQ(location["range"]["start"]["line"], 0);
        }
    }
}

TEST_F(Diagnostics, KnowTheVariablesOfTheClient) {
    const std::string text = "class A { void Shade() { accumulate(o_color, tint * time); } }";
    LanguageClient client;
    client.Initialize(Json::object(), {},
                      {{"rayAttributes", {"vec3 tint"}}, {"globals", {"float time"}}});
    client.Open("untitled:a", text);
    EXPECT_EQ(client.ReceiveDiagnostics("untitled:a"), Json::array());
    LanguageClient other;
    EXPECT_TRUE(other
                    .Ask("initialize", {{"capabilities", Json::object()},
                                        {"initializationOptions", {{"globals", {"nonsense"}}}}})
                    .contains("error"));
    other.Initialize();
    other.Open("untitled:a", text);
    EXPECT_EQ(MessagesOf(other.ReceiveDiagnostics("untitled:a")),
              (Messages{"'tint' is not declared", "'time' is not declared"}));
}

TEST_F(Diagnostics, FindIncludedFilesInTheSearchPaths) {
    std::filesystem::create_directories(folder + "/parts");
    Write("parts/part.klsl", "float half(float x) { return 0.5 * x; }\n");
    const std::string text = "#include \"part.klsl\"\nclass A { void Shade() { accumulate(o_color, "
                             "vec3(half(1.0))); } }\n";
    for (const bool isInOptions : {false, true}) {
        LanguageClient client(isInOptions ? std::vector<std::string>{}
                                          : std::vector<std::string>{"-I", folder + "/parts"});
        client.Initialize(Json::object(), {},
                          isInOptions ? Json{{"searchPaths", {folder + "/parts"}}} : Json());
        client.Open("untitled:a", text);
        EXPECT_EQ(client.ReceiveDiagnostics("untitled:a"), Json::array());
    }
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", text);
    EXPECT_EQ(client.ReceiveDiagnostics("untitled:a").size(), 1u);
}

TEST_F(Diagnostics, AreThoseOfTheLastOfManyChanges) {
    LanguageClient client;
    client.Initialize();
    client.Open("untitled:a", "class A { }");
    for (int version = 2; version <= 50; ++version) {
        Change(client, "untitled:a", version,
               "class A { void Shade() { x" + std::to_string(version) + " = 1.0; } }");
    }
    EXPECT_EQ(MessagesOf(client.ReceiveDiagnostics("untitled:a", 50)),
              Messages{"'x50' is not declared"});
}

} // namespace
} // namespace Tolen::Tests

#include "language-server/LanguageClient.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

/// What the language server tells about the symbols of documents.

namespace Tolen::Tests {
namespace {

const std::string kUri = "untitled:wood";

const std::string kText = R"(#define RINGS 8

interface Pattern
{
    float At(vec2 place);
}

class Rings : Pattern
{
    input float width = 0.1;
    float At(vec2 place) { float d = length(place); return fract(d / width); }
}

float square(float x) { return x * x; }
)";

Json Ask(const Json& capabilities) {
    LanguageClient client;
    client.Initialize(capabilities);
    client.Open(kUri, kText);
    return client.Request("textDocument/documentSymbol", {{"textDocument", {{"uri", kUri}}}});
}

std::vector<std::string> NamesOf(const Json& list) {
    std::vector<std::string> names;
    for (const Json& symbol : list) {
        names.push_back(symbol["name"]);
    }
    return names;
}

using Names = std::vector<std::string>;

TEST(Symbols, OfADocumentAreATreeForClientsThatKnowTrees) {
    const Json symbols = Ask(
        {{"textDocument", {{"documentSymbol", {{"hierarchicalDocumentSymbolSupport", true}}}}}});
    ASSERT_EQ(NamesOf(symbols), (Names{"RINGS", "Pattern", "Rings", "square"}));
    EXPECT_EQ(NamesOf(symbols[1]["children"]), Names{"At"});
    EXPECT_EQ(NamesOf(symbols[2]["children"]), (Names{"width", "At"}));
    EXPECT_EQ(symbols[2]["detail"], "class Rings : Pattern");
    EXPECT_EQ(symbols[2]["range"]["start"], (Json{{"line", 7}, {"character", 0}}));
    EXPECT_EQ(symbols[2]["range"]["end"], (Json{{"line", 11}, {"character", 1}}));
    EXPECT_EQ(symbols[2]["selectionRange"]["start"], (Json{{"line", 7}, {"character", 6}}));
    EXPECT_EQ(symbols[2]["children"][0]["kind"], 7);
    EXPECT_TRUE(symbols[3]["children"].empty());
}

TEST(Symbols, OfADocumentAreAListForOthers) {
    const Json symbols = Ask(Json::object());
    ASSERT_EQ(NamesOf(symbols),
              (Names{"RINGS", "Pattern", "At", "Rings", "width", "At", "square"}));
    EXPECT_EQ(symbols[5]["containerName"], "Rings");
    EXPECT_EQ(symbols[5]["location"]["uri"], kUri);
    EXPECT_FALSE(symbols[6].contains("containerName"));
}

TEST(Symbols, OfTheWorkspaceAreFoundByLettersInTheirOrder) {
    LanguageClient client;
    client.Initialize();
    client.Open(kUri, kText);
    client.Open("untitled:other", "class RingLight { }");
    const Json found = client.Request("workspace/symbol", {{"query", "rng"}});
    const std::vector<std::string> names = NamesOf(found);
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()),
              (std::set<std::string>{"RINGS", "Rings", "RingLight"}));
    EXPECT_EQ(client.Request("workspace/symbol", {{"query", "rngz"}}), Json::array());
}

TEST(Symbols, FollowChangesOfTheText) {
    LanguageClient client;
    client.Initialize();
    client.Open(kUri, "class A { }");
    client.Notify("textDocument/didChange", {{"textDocument", {{"uri", kUri}, {"version", 2}}},
                                             {"contentChanges",
                                              {{{"range",
                                                 {{"start", {{"line", 0}, {"character", 6}}},
                                                  {"end", {{"line", 0}, {"character", 7}}}}},
                                                {"text", "Bee"}},
                                               {{"range",
                                                 {{"start", {{"line", 9}, {"character", 9}}},
                                                  {"end", {{"line", 99}, {"character", 0}}}}},
                                                {"text", "\nclass C { }"}}}}});
    const Json request = {{"textDocument", {{"uri", kUri}}}};
    EXPECT_EQ(NamesOf(client.Request("textDocument/documentSymbol", request)), (Names{"Bee", "C"}));
    client.Notify("textDocument/didChange", {{"textDocument", {{"uri", kUri}, {"version", 3}}},
                                             {"contentChanges", {{{"text", "interface I { }"}}}}});
    EXPECT_EQ(NamesOf(client.Request("textDocument/documentSymbol", request)), Names{"I"});
    client.Notify("textDocument/didClose", request);
    EXPECT_TRUE(client.Ask("textDocument/documentSymbol", request).contains("error"));
}

struct Encoded {
    Json offered;
    std::string chosen;
    int column; ///< of the class, behind letters of 1, 2 and 4 bytes
};

TEST(Symbols, AreCountedInUnitsThatClientAndServerAgreeOn) {
    for (const Encoded& encoded : {
             Encoded{Json(), "utf-16", 11},
             Encoded{Json::array({"utf-8", "utf-16"}), "utf-8", 14},
             Encoded{Json::array({"utf-32", "utf-16", "utf-8"}), "utf-16", 11},
             Encoded{Json::array({"utf-32"}), "utf-16", 11},
         }) {
        LanguageClient client;
        const Json capabilities = encoded.offered.is_null()
                                      ? Json::object()
                                      : Json{{"general", {{"positionEncodings", encoded.offered}}}};
        EXPECT_EQ(client.Initialize(capabilities)["capabilities"]["positionEncoding"],
                  encoded.chosen);
        client.Open(kUri, "/* a\u00e4\U0001f600 */ class B { }");
        const Json symbols =
            client.Request("textDocument/documentSymbol", {{"textDocument", {{"uri", kUri}}}});
        ASSERT_EQ(symbols.size(), 1u);
        EXPECT_EQ(symbols[0]["location"]["range"]["start"]["character"], encoded.column);
    }
}

} // namespace
} // namespace Tolen::Tests

#include "language-server/LanguageClient.h"

#include <gtest/gtest.h>

#include <string>

/// Documents that the language server lays out anew.

namespace Tolen::Tests {
namespace {

const std::string kUri = "untitled:a";
const std::string kTidy =
    "class A\n{\n    input float x = 0.5;\n\n    float F() { return x; }\n}\n";

Json Format(const std::string& text) {
    LanguageClient client;
    client.Initialize();
    client.Open(kUri, text);
    return client.Request(
        "textDocument/formatting",
        {{"textDocument", {{"uri", kUri}}}, {"options", {{"tabSize", 4}, {"insertSpaces", true}}}});
}

TEST(Formatting, ChangesNothingInATidyText) {
    EXPECT_EQ(Format(kTidy), Json::array());
    EXPECT_EQ(Format(""), Json::array());
}

TEST(Formatting, IsOneEditOfTheLinesThatChange) {
    const std::string line = "    input float x = 0.5;\n";
    std::string untidy = kTidy;
    untidy.replace(untidy.find(line), line.size(), "  input   float x=0.5 ;\n");
    const Json edits = Format(untidy);
    ASSERT_EQ(edits.size(), 1u);
    EXPECT_EQ(edits[0]["range"], (Json{{"start", {{"line", 2}, {"character", 0}}},
                                       {"end", {{"line", 3}, {"character", 0}}}}));
    EXPECT_EQ(edits[0]["newText"], line);
}

TEST(Formatting, KeepsTextsThatAreWrong) {
    const Json edits = Format("class   A { $ ( }\n");
    for (const Json& edit : edits) {
        EXPECT_NE(edit["newText"].get<std::string>().find("$"), std::string::npos);
    }
}

TEST(Formatting, NeedsADocument) {
    LanguageClient client;
    client.Initialize();
    EXPECT_TRUE(client.Ask("textDocument/formatting", {{"textDocument", {{"uri", "file:///no"}}}})
                    .contains("error"));
}

} // namespace
} // namespace Tolen::Tests

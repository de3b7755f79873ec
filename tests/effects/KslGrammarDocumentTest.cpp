#include "KslGrammar.h"

#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>

namespace Tolen::Effects {
namespace {

/// Rules as "left: right right", with tokens by their spelling.
using Rules = std::set<std::string>;

/// The rules of the last code block of docs/klsl.md. A line that starts with a name and a colon
/// begins a nonterminal, "|" stands between alternatives, and tokens stand in quotes.
Rules _ReadDocument() {
    std::ifstream stream(Tests::SourceFolder() + "/docs/klsl.md");
    std::stringstream text;
    text << stream.rdbuf();
    const std::string document = text.str();
    const std::size_t end = document.rfind("\n```");
    const std::size_t begin = document.rfind("```", end - 1);
    std::istringstream words(document.substr(document.find('\n', begin), end - document.find('\n', begin)));
    Rules rules;
    std::string left;
    std::string rule;
    for (std::string word; words >> word;) {
        if (word.front() != '"' && word.back() == ':') {
            if (!rule.empty()) {
                rules.insert(rule);
            }
            left = word;
            rule = left;
        } else if (word == "|") {
            rules.insert(rule);
            rule = left;
        } else if (word != "empty") {
            rule += " " + (word.front() == '"' ? word.substr(1, word.size() - 2) : word);
        }
    }
    rules.insert(rule);
    return rules;
}

TEST(KslGrammarDocument, ShowsTheRulesOfTheParser) {
    Rules rules;
    for (const KslRule& rule : GetKslRules()) {
        std::istringstream words(rule.text);
        std::string text;
        for (std::string word; words >> word;) {
            // What begins with @ tells how the nesting deepens.
            if (word.front() != '@') {
                text += (text.empty() ? "" : " ") + word;
            }
        }
        rules.insert(text);
    }
    EXPECT_EQ(_ReadDocument(), rules);
}

} // namespace
} // namespace Tolen::Effects

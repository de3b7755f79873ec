#include "language/Builtins.h"
#include "language/Corpus.h"
#include "language/SourceToken.h"
#include "language/TextMateGrammar.h"

#include "docs/Markdown.h"
#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <string>

/// The grammar for editors, against what the language has.

namespace Tolen::Language {
namespace {

using Tests::TextMateGrammar;

nlohmann::json ReadJson(const std::string& name) {
    return nlohmann::json::parse(Tests::ReadText(Tests::SourceFolder() + "/editors/" + name));
}

const TextMateGrammar& GetGrammar() {
    static const TextMateGrammar kGrammar(ReadJson("klsl.tmLanguage.json"));
    return kGrammar;
}

/// The innermost scope of all of the stretch; empty when it is cut or has none.
std::string FindScope(const std::vector<TextMateGrammar::Scope>& scopes, const SourceRange& range) {
    std::string name;
    for (const TextMateGrammar::Scope& scope : scopes) {
        if (scope.begin <= range.begin && range.end <= scope.end && !scope.name.empty()) {
            name = scope.name;
        }
    }
    return name;
}

std::string ColorOf(const std::string& text, const std::string& piece) {
    const std::size_t begin = text.find(piece);
    return FindScope(GetGrammar().Color(text), {begin, begin + piece.size()});
}

TEST(EditorGrammar, NamesTheLanguage) {
    const nlohmann::json grammar = ReadJson("klsl.tmLanguage.json");
    EXPECT_EQ(grammar.at("scopeName"), "source.klsl");
    EXPECT_EQ(grammar.at("fileTypes").at(0), "klsl");
}

TEST(EditorGrammar, HasAUseForAllOfItsRules) {
    const nlohmann::json grammar = ReadJson("klsl.tmLanguage.json");
    for (const auto& [name, rule] : grammar.at("repository").items()) {
        EXPECT_NE(grammar.at("patterns").dump().find("\"#" + name + "\""), std::string::npos)
            << name;
    }
}

TEST(EditorGrammar, ColorsEveryKeywordTypeAndBuiltin) {
    for (const Builtin& builtin : GetBuiltins()) {
        const std::string& name = builtin.name;
        switch (builtin.kind) {
        case Builtin::kKind_Keyword: {
            const std::string scope = ColorOf(" " + name + " ", name);
            EXPECT_TRUE(scope.starts_with("keyword.control") || scope.starts_with("storage.") ||
                        scope.starts_with("constant.language"))
                << name << ": " << scope;
            break;
        }
        case Builtin::kKind_Type:
            EXPECT_EQ(ColorOf(" " + name + " x", name), "support.type.klsl") << name;
            break;
        case Builtin::kKind_Function:
            EXPECT_EQ(ColorOf("x=" + name + " (y)", name), "support.function.klsl") << name;
            break;
        case Builtin::kKind_Variable:
            EXPECT_EQ(ColorOf("x=" + name + ";", name), "support.variable.klsl") << name;
            break;
        }
    }
}

TEST(EditorGrammar, ListsNoOtherWords) {
    const auto words = GetGrammar().ListWords();
    EXPECT_GT(words.size(), 100u);
    for (const auto& [word, scope] : words) {
        EXPECT_NE(FindBuiltin(word), nullptr) << word << " is listed as " << scope;
    }
}

TEST(EditorGrammar, ColorsDeclarationsAndNames) {
    const std::string text = "class Rings : Pattern\n{\n    input vec2 middle;\n"
                             "    float At(vec2 place) { return other.Look(1.0).xy; }\n}\n"
                             "interface Other\n  #define SIZE 4 // c\n#include \"a.klsl\"\n";
    EXPECT_EQ(ColorOf(text, "class"), "storage.type.class.klsl");
    EXPECT_EQ(ColorOf(text, "Rings"), "entity.name.type.class.klsl");
    EXPECT_EQ(ColorOf(text, "Pattern"), "entity.other.inherited-class.klsl");
    EXPECT_EQ(ColorOf(text, "Other"), "entity.name.type.interface.klsl");
    EXPECT_EQ(ColorOf(text, "input"), "storage.modifier.klsl");
    EXPECT_EQ(ColorOf(text, "At"), "entity.name.function.klsl");
    EXPECT_EQ(ColorOf(text, "Look"), "entity.name.function.klsl");
    EXPECT_EQ(ColorOf(text, "xy"), "variable.other.member.klsl");
    EXPECT_EQ(ColorOf(text, "#define"), "keyword.control.directive.klsl");
    EXPECT_EQ(ColorOf(text, "SIZE"), "entity.name.function.preprocessor.klsl");
    EXPECT_EQ(ColorOf(text, "\"a.klsl\""), "string.quoted.double.include.klsl");
    EXPECT_EQ(ColorOf("# define A", "# define"), "");
}

/// What the scopes of a token begin with.
bool IsFit(const SourceToken& token, const std::string& scope) {
    const auto beginsWith = [&](std::initializer_list<const char*> beginnings) {
        for (const char* beginning : beginnings) {
            if (scope.starts_with(beginning)) {
                return true;
            }
        }
        return false;
    };
    switch (token.kind) {
    case SourceToken::kKind_Word:
        return beginsWith({"variable.", "entity.", "support.function", "support.variable"});
    case SourceToken::kKind_Keyword:
        return beginsWith({"keyword.control", "storage.", "support.type", "constant.language"});
    case SourceToken::kKind_Number:
        return beginsWith({"constant.numeric"});
    case SourceToken::kKind_Sign:
        return beginsWith({"keyword.operator", "punctuation."});
    case SourceToken::kKind_LineComment:
        return beginsWith({"comment.line"});
    case SourceToken::kKind_BlockComment:
        return beginsWith({"comment.block"});
    case SourceToken::kKind_Directive:
        return beginsWith({"meta.preprocessor", "keyword.control.directive"});
    case SourceToken::kKind_Unknown:
        return scope.empty();
    }
    return false;
}

TEST(EditorGrammar, ColorsTheTokensOfSources) {
    std::string text = "a=0x1F+052-1.e3*.5f/2f%1f;b<<=c>>d&&e^^f||!g?~h:i;/* j\n\nk */ ++l;m--;\n"
                       "#ifdef A\n  #else \n#endif\nx = y . z;\n// end\n";
    for (const Tests::CorpusText& source : Tests::GetCorpus()) {
        if (source.name.find("docs/klsl.md") != std::string::npos ||
            source.name.ends_with("values.klsl")) {
            text += source.text + "\n";
        }
    }
    const std::vector<TextMateGrammar::Scope> scopes = GetGrammar().Color(text);
    std::size_t first = 0;
    for (const SourceToken& token : Tokenize(text)) {
        while (first < scopes.size() && scopes[first].end <= token.range.begin) {
            ++first;
        }
        const auto begin = scopes.begin() + static_cast<std::ptrdiff_t>(first);
        const auto end = std::min(scopes.end(), begin + 6);
        // Parts of a directive have scopes of their own.
        const std::string scope = FindScope({begin, end}, token.range);
        EXPECT_TRUE(IsFit(token, scope))
            << text.substr(token.range.begin, token.range.GetLength()) << ": " << scope;
    }
}

TEST(EditorConfiguration, KnowsCommentsAndBrackets) {
    const nlohmann::json configuration = ReadJson("klsl.language-configuration.json");
    EXPECT_EQ(configuration.at("comments").at("lineComment"), "//");
    EXPECT_EQ(configuration.at("comments").at("blockComment").dump(), "[\"/*\",\"*/\"]");
    EXPECT_EQ(configuration.at("brackets").size(), 3u);
}

} // namespace
} // namespace Tolen::Language

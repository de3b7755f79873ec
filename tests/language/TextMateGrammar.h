#pragma once

#include <nlohmann/json.hpp>

#include <map>
#include <regex>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// Colours texts by a TextMate grammar, as editors do: line by line, and in a line by the pattern
/// that matches first. Knows rules with "match", those with "begin" and "end" that hold no others,
/// and "include" of the grammar's own repository. Its expressions keep to what they have in common
/// with those of the standard library.
class TextMateGrammar {
public:
    /// Throws when an expression or a reference is wrong.
    explicit TextMateGrammar(const nlohmann::json& grammar);

    /// A stretch of a text in one colour.
    struct Scope {
        std::size_t begin;
        std::size_t end;
        std::string name;
    };

    /// Where stretches lie within each other the inner ones come later.
    std::vector<Scope> Color(const std::string& text) const;

    /// The words of all patterns "\b(?:one|two)\b" with a scope.
    std::map<std::string, std::string> ListWords() const;

private:
    struct Rule {
        std::string name;
        std::string text; ///< of the expression
        std::regex match; ///< or begin
        std::regex end;
        bool isBlock = false;
        std::map<std::size_t, std::string> captures;
    };

    void _Add(const nlohmann::json& grammar, const nlohmann::json& rule);

    std::vector<Rule> _rules;
};

} // namespace Tolen::Tests

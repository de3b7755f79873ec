#include "language/TextMateGrammar.h"

#include <algorithm>
#include <iterator>
#include <sstream>

namespace Tolen::Tests {

namespace {

using Iterator = std::string::const_iterator;

bool Search(const std::string& line, std::size_t from, const std::regex& expression,
            std::smatch& found) {
    const auto flags =
        from == 0 ? std::regex_constants::match_default
                  : std::regex_constants::match_prev_avail | std::regex_constants::match_not_bol;
    return std::regex_search(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(), found,
                             expression, flags);
}

std::size_t OffsetIn(const std::string& line, Iterator place) {
    return static_cast<std::size_t>(place - line.begin());
}

} // namespace

TextMateGrammar::TextMateGrammar(const nlohmann::json& grammar) {
    for (const nlohmann::json& rule : grammar.at("patterns")) {
        _Add(grammar, rule);
    }
}

void TextMateGrammar::_Add(const nlohmann::json& grammar, const nlohmann::json& rule) {
    if (rule.contains("include")) {
        _Add(grammar, grammar.at("repository").at(rule.at("include").get<std::string>().substr(1)));
        return;
    }
    if (rule.contains("patterns")) {
        for (const nlohmann::json& inner : rule.at("patterns")) {
            _Add(grammar, inner);
        }
        return;
    }
    Rule& added = _rules.emplace_back();
    added.name = rule.value("name", "");
    added.isBlock = rule.contains("begin");
    added.text = rule.at(added.isBlock ? "begin" : "match").get<std::string>();
    added.match = std::regex(added.text);
    if (added.isBlock) {
        added.end = std::regex(rule.at("end").get<std::string>());
    }
    if (rule.contains("captures")) {
        for (const auto& [number, capture] : rule.at("captures").items()) {
            added.captures[std::stoul(number)] = capture.at("name").get<std::string>();
        }
    }
}

std::vector<TextMateGrammar::Scope> TextMateGrammar::Color(const std::string& text) const {
    std::vector<Scope> scopes;
    std::istringstream lines(text);
    std::size_t lineBegin = 0;
    const Rule* pOpen = nullptr;
    std::size_t openBegin = 0;
    for (std::string line; std::getline(lines, line); lineBegin += line.size() + 1) {
        for (std::size_t at = 0; at < line.size() || pOpen != nullptr;) {
            std::smatch found;
            if (pOpen != nullptr) {
                if (!Search(line, at, pOpen->end, found)) {
                    break;
                }
                at = OffsetIn(line, found[0].second);
                scopes.push_back({openBegin, lineBegin + at, pOpen->name});
                pOpen = nullptr;
                continue;
            }
            const Rule* pBest = nullptr;
            std::smatch best;
            for (const Rule& rule : _rules) {
                if (Search(line, at, rule.match, found) && found.length() > 0 &&
                    (pBest == nullptr || found[0].first < best[0].first)) {
                    pBest = &rule;
                    best = found;
                }
            }
            if (pBest == nullptr) {
                break;
            }
            const std::size_t begin = OffsetIn(line, best[0].first);
            at = OffsetIn(line, best[0].second);
            if (pBest->isBlock) {
                pOpen = pBest;
                openBegin = lineBegin + begin;
                continue;
            }
            scopes.push_back({lineBegin + begin, lineBegin + at, pBest->name});
            for (const auto& [number, name] : pBest->captures) {
                if (best[number].matched) {
                    scopes.push_back({lineBegin + OffsetIn(line, best[number].first),
                                      lineBegin + OffsetIn(line, best[number].second), name});
                }
            }
        }
    }
    if (pOpen != nullptr) {
        scopes.push_back({openBegin, text.size(), pOpen->name});
    }
    return scopes;
}

std::map<std::string, std::string> TextMateGrammar::ListWords() const {
    std::map<std::string, std::string> words;
    const std::regex list("\\\\b\\(\\?:([A-Za-z0-9_|]+)\\)\\\\b.*");
    for (const Rule& rule : _rules) {
        std::smatch found;
        if (std::regex_match(rule.text, found, list)) {
            std::istringstream parts(found[1]);
            for (std::string word; std::getline(parts, word, '|');) {
                words[word] = rule.name;
            }
        }
    }
    return words;
}

} // namespace Tolen::Tests

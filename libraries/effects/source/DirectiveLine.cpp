#include "DirectiveLine.h"

#include <algorithm>

namespace Tolen::Effects {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";
constexpr std::string_view kBlanks = " \t";

struct Spelling {
    std::string_view text;
    DirectiveLine::Directive directive;
};

constexpr Spelling kSpellings[] = {
    {"#include", DirectiveLine::kDirective_Include}, {"#import", DirectiveLine::kDirective_Import},
    {"#define", DirectiveLine::kDirective_Define},   {"#undef", DirectiveLine::kDirective_Undef},
    {"#ifdef", DirectiveLine::kDirective_Ifdef},     {"#ifndef", DirectiveLine::kDirective_Ifndef},
    {"#else", DirectiveLine::kDirective_Else},       {"#endif", DirectiveLine::kDirective_Endif},
};

/// Takes the first word, and the white space before it, off @p line.
std::string_view TakeWord(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(kWhiteSpace), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(kWhiteSpace));
    line.remove_prefix(word.size());
    return word;
}

/// Takes off leading blanks, then trailing carriage returns, then trailing blanks. A text of blanks
/// alone is a value and stays.
std::string_view Clean(std::string_view rest) {
    const std::size_t first = rest.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return rest;
    }
    rest.remove_prefix(first);
    rest = rest.substr(0, rest.find_last_not_of('\r') + 1);
    rest = rest.substr(0, rest.find_last_not_of(kBlanks) + 1);
    // Carriage returns with blanks behind them say nothing either.
    return rest.find_first_not_of('\r') == std::string_view::npos ? std::string_view() : rest;
}

} // namespace

DirectiveLine DirectiveLine::Parse(std::string_view line) {
    DirectiveLine parsed;
    const std::string_view word = TakeWord(line);
    for (const Spelling& spelling : kSpellings) {
        if (spelling.text == word) {
            parsed.directive = spelling.directive;
            parsed.argument = TakeWord(line);
            parsed.rest = Clean(line);
        }
    }
    return parsed;
}

bool DirectiveLine::GetFileName(std::string& name) const {
    const std::size_t first = argument.find('"');
    if (first == std::string::npos) {
        return false;
    }
    const std::size_t last = argument.rfind('"');
    name =
        first == last ? argument.substr(first + 1) : argument.substr(first + 1, last - first - 1);
    return true;
}

} // namespace Tolen::Effects

#include "Source.h"

#include <algorithm>
#include <cctype>
#include <utility>

namespace Tolen::LanguageServer {

using Language::SourceRange;
using Language::SourceToken;

namespace {

bool IsWordLetter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool CarriesMeaning(const SourceToken& token) {
    return !token.IsComment() && token.kind != SourceToken::kKind_Directive;
}

bool IsInFileName(const Language::Outline& outline, const SourceRange& range) {
    return std::any_of(outline.inclusions.begin(), outline.inclusions.end(),
                       [&range](const Language::Inclusion& inclusion) {
                           return inclusion.range.Contains(range.begin);
                       });
}

} // namespace

Source::Source(std::string itsUri, std::string itsPath, const std::string& itsText)
    : uri(std::move(itsUri)), path(std::move(itsPath)), text(itsText),
      tokens(Language::Tokenize(text.GetText())), outline(Language::MakeOutline(text, tokens)) {}

std::size_t Source::FindTokenAfter(std::size_t offset) const {
    const auto found = std::upper_bound(
        tokens.begin(), tokens.end(), offset,
        [](std::size_t at, const SourceToken& token) { return at < token.range.end; });
    return static_cast<std::size_t>(found - tokens.begin());
}

std::optional<std::size_t> Source::FindPrevious(std::size_t index) const {
    while (index-- > 0) {
        if (CarriesMeaning(tokens[index])) {
            return index;
        }
    }
    return std::nullopt;
}

std::optional<std::size_t> Source::FindNext(std::size_t index) const {
    while (++index < tokens.size()) {
        if (CarriesMeaning(tokens[index])) {
            return index;
        }
    }
    return std::nullopt;
}

bool Source::IsInComment(std::size_t offset) const {
    const std::size_t index = FindTokenAfter(offset);
    if (index < tokens.size() && tokens[index].IsComment() && tokens[index].range.begin < offset) {
        return true;
    }
    if (index == 0 || tokens[index - 1].range.end != offset) {
        return false;
    }
    const SourceToken& before = tokens[index - 1];
    return before.kind == SourceToken::kKind_LineComment ||
           (before.kind == SourceToken::kKind_BlockComment && !GetText(before).ends_with("*/"));
}

std::optional<SourceRange> Source::FindWord(std::size_t offset) const {
    const std::string& letters = text.GetText();
    SourceRange range{std::min(offset, letters.size()), std::min(offset, letters.size())};
    while (range.begin > 0 && IsWordLetter(letters[range.begin - 1])) {
        --range.begin;
    }
    while (range.end < letters.size() && IsWordLetter(letters[range.end])) {
        ++range.end;
    }
    if (range.GetLength() == 0) {
        return std::nullopt;
    }
    const std::size_t index = FindTokenAfter(range.begin);
    if (index == tokens.size() || !tokens[index].range.Contains(range.begin)) {
        return std::nullopt;
    }
    const SourceToken& token = tokens[index];
    const bool isDigit = std::isdigit(static_cast<unsigned char>(letters[range.begin])) != 0;
    switch (token.kind) {
    case SourceToken::kKind_Word:
    case SourceToken::kKind_Keyword:
        return token.range;
    case SourceToken::kKind_Directive:
        return isDigit || IsInFileName(outline, range) ? std::nullopt : std::optional(range);
    default:
        return std::nullopt;
    }
}

} // namespace Tolen::LanguageServer

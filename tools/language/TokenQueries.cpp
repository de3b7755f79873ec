#include "TokenQueries.h"

#include <algorithm>
#include <array>

namespace Tolen::Language {

namespace {

constexpr std::array<std::string_view, 13> kWriting = {
    "=", "*=", "/=", "%=", "+=", "-=", "<<=", ">>=", "&=", "^=", "|=", "++", "--"};

bool IsWriting(std::string_view text) {
    return std::find(kWriting.begin(), kWriting.end(), text) != kWriting.end();
}

bool Opens(std::string_view text) {
    return text == "(" || text == "[" || text == "{";
}

bool Closes(std::string_view text) {
    return text == ")" || text == "]" || text == "}";
}

} // namespace

std::string_view TokenQueries::GetText(std::size_t token) const {
    return token < _source.tokens.size() ? _source.GetText(token) : std::string_view();
}

std::string_view TokenQueries::GetBefore(std::size_t token) const {
    return token == 0 ? std::string_view() : GetText(token - 1);
}

bool TokenQueries::IsDeclared(std::size_t token) const {
    if (token == 0) {
        return false;
    }
    const SourceToken::Kind kind = _source.tokens[token - 1].kind;
    const bool isWord = kind == SourceToken::kKind_Word || kind == SourceToken::kKind_Keyword;
    const std::string_view text = GetBefore(token);
    return isWord && text != "return" && text != "else" && text != "do";
}

bool TokenQueries::IsAssigned(std::size_t token) const {
    if (GetBefore(token) == "++" || GetBefore(token) == "--") {
        return true;
    }
    std::size_t next = token + 1;
    while (GetText(next) == "[" || GetText(next) == ".") {
        next = GetText(next) == "[" ? FindGroupEnd(next) : next + 2;
    }
    return IsWriting(GetText(next));
}

std::size_t TokenQueries::CountArguments(std::size_t token) const {
    const std::size_t end = FindGroupEnd(token + 1);
    std::size_t count = end > token + 3 && GetText(token + 2) != "void" ? 1 : 0;
    for (std::size_t at = token + 2; at + 1 < end;) {
        count += GetText(at) == "," ? 1 : 0;
        at = Opens(GetText(at)) ? FindGroupEnd(at) : at + 1;
    }
    return count;
}

std::size_t TokenQueries::FindGroupEnd(std::size_t token) const {
    std::size_t depth = 0;
    for (; token < _source.tokens.size(); ++token) {
        if (Opens(GetText(token))) {
            ++depth;
        } else if (Closes(GetText(token)) && --depth == 0) {
            return token + 1;
        }
    }
    return token;
}

TokenRegion RegionOf(const IndexedSource& source, const SourceRange& range) {
    return {&source, source.FindToken(range.begin), source.FindToken(range.end)};
}

TokenRegion FindRegion(const IndexedSource& source, int line) {
    const SourceRange bytes = source.pText->GetText().GetLineRange(line);
    TokenRegion region{&source, source.FindToken(bytes.begin), 0};
    region.end = region.begin;
    int depth = 0;
    for (; region.end < source.tokens.size(); ++region.end) {
        const std::string_view text = source.GetText(region.end);
        const bool isBehind = source.tokens[region.end].range.begin >= bytes.end;
        // A statement of this line may go on below.
        if (isBehind && region.end > region.begin) {
            const std::string_view last = source.GetText(region.end - 1);
            if (depth <= 0 && (last == ";" || last == "{" || last == "}")) {
                break;
            }
        } else if (isBehind) {
            break;
        }
        depth += text == "(" || text == "[" ? 1 : text == ")" || text == "]" ? -1 : 0;
    }
    return region;
}

} // namespace Tolen::Language

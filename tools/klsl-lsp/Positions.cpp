#include "Positions.h"

#include <algorithm>

namespace Tolen::LanguageServer {

using Language::SourcePlace;
using Language::SourceRange;
using Language::SourceText;

void Positions::Negotiate(const Json& clientCapabilities) {
    const Json* const offers = FindMember(clientCapabilities, "/general/positionEncodings");
    if (offers == nullptr || !offers->is_array()) {
        return;
    }
    for (const Json& offer : *offers) {
        if (offer == "utf-8" || offer == "utf-16") {
            _encoding = offer == "utf-8" ? kEncoding_Utf8 : kEncoding_Utf16;
            return;
        }
    }
}

Json Positions::MakePosition(const SourceText& text, std::size_t offset) const {
    const SourcePlace place = text.GetPlace(offset);
    // Between the two bytes that end a line there is no position.
    const std::size_t inside = std::min(offset, text.GetLineRange(place.line).end);
    const int column =
        _encoding == kEncoding_Utf8 ? text.GetPlace(inside).column - 1 : text.GetColumn16(inside);
    return {{"line", place.line - 1}, {"character", column}};
}

Json Positions::MakeRange(const SourceText& text, const SourceRange& range) const {
    return {{"start", MakePosition(text, range.begin)}, {"end", MakePosition(text, range.end)}};
}

std::size_t Positions::GetOffset(const SourceText& text, const Json& position) const {
    const int line = GetCount(position, "line");
    const int column = GetCount(position, "character");
    if (line >= text.CountLines()) {
        return text.GetText().size();
    }
    if (_encoding == kEncoding_Utf16) {
        return text.GetOffset16(line + 1, column);
    }
    const SourceRange range = text.GetLineRange(line + 1);
    return range.begin + std::min(static_cast<std::size_t>(column), range.GetLength());
}

SourceRange Positions::GetRange(const SourceText& text, const Json& range) const {
    const std::size_t begin = GetOffset(text, GetMember(range, "start"));
    const std::size_t end = GetOffset(text, GetMember(range, "end"));
    if (end < begin) {
        throw RequestError(ErrorCode::InvalidParams, "a range ends before it starts");
    }
    return {begin, end};
}

} // namespace Tolen::LanguageServer

#include "language/SourceText.h"

#include <algorithm>
#include <utility>

namespace Tolen::Language {

namespace {

/// The length of the UTF-8 sequence at the front of @p text, which isn't empty; 1 for other bytes.
std::size_t SequenceLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead >= 0xf0 && lead < 0xf8   ? 4
                               : lead >= 0xe0 && lead < 0xf0 ? 3
                               : lead >= 0xc0 && lead < 0xe0 ? 2
                                                             : 1;
    if (length > text.size()) {
        return 1;
    }
    const bool isWhole =
        std::all_of(text.begin() + 1, text.begin() + static_cast<std::ptrdiff_t>(length),
                    [](char byte) { return (static_cast<unsigned char>(byte) & 0xc0) == 0x80; });
    return isWhole ? length : 1;
}

} // namespace

SourceText::SourceText(std::string text) : _text(std::move(text)), _lineStarts{0} {
    for (std::size_t at = 0; (at = _text.find('\n', at)) != std::string::npos;) {
        _lineStarts.push_back(++at);
    }
}

std::string_view SourceText::GetText(const SourceRange& range) const {
    const std::size_t begin = std::min(range.begin, _text.size());
    return std::string_view(_text).substr(begin, std::max(range.end, begin) - begin);
}

std::string_view SourceText::GetLine(int line) const {
    return GetText(GetLineRange(line));
}

SourceRange SourceText::GetLineRange(int line) const {
    if (line < 1 || line > CountLines()) {
        return {_text.size(), _text.size()};
    }
    const auto index = static_cast<std::size_t>(line);
    const std::size_t begin = _lineStarts[index - 1];
    std::size_t end = index < _lineStarts.size() ? _lineStarts[index] - 1 : _text.size();
    if (end > begin && _text[end - 1] == '\r') {
        --end;
    }
    return {begin, end};
}

SourcePlace SourceText::GetPlace(std::size_t offset) const {
    const std::size_t inside = std::min(offset, _text.size());
    const auto next = std::upper_bound(_lineStarts.begin(), _lineStarts.end(), inside);
    return {static_cast<int>(next - _lineStarts.begin()),
            static_cast<int>(inside - *std::prev(next)) + 1};
}

std::size_t SourceText::GetOffset(const SourcePlace& place) const {
    if (place.line < 1) {
        return 0;
    }
    const SourceRange line = GetLineRange(place.line);
    return std::min(line.begin + static_cast<std::size_t>(std::max(place.column, 1) - 1), line.end);
}

int SourceText::GetColumn16(std::size_t offset) const {
    const SourceRange line = GetLineRange(GetPlace(offset).line);
    const std::size_t end = std::min(offset, line.end);
    int column = 0;
    for (std::size_t at = line.begin; at < end;) {
        const std::size_t length = SequenceLength(GetText({at, line.end}));
        column += length == 4 ? 2 : 1;
        at += length;
    }
    return column;
}

std::size_t SourceText::GetOffset16(int line, int column16) const {
    if (line < 1) {
        return 0;
    }
    const SourceRange range = GetLineRange(line);
    std::size_t at = range.begin;
    for (int column = 0; column < column16 && at < range.end;) {
        const std::size_t length = SequenceLength(GetText({at, range.end}));
        column += length == 4 ? 2 : 1;
        at += length;
    }
    return at;
}

} // namespace Tolen::Language

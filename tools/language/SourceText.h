#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// A stretch of a text, in bytes: from the first to one past the last.
struct SourceRange {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t GetLength() const { return end - begin; }
    bool Contains(std::size_t offset) const { return begin <= offset && offset < end; }
    bool operator==(const SourceRange&) const = default;
};

/// A place as people count: lines and columns from 1, columns in bytes.
struct SourcePlace {
    int line = 1;
    int column = 1;

    bool operator==(const SourcePlace&) const = default;
};

/// A text that knows where its lines are. Lines end with "\n", "\r\n" or the text. Places beyond
/// the text are taken for the nearest one in it.
class SourceText {
public:
    explicit SourceText(std::string text = {});

    const std::string& GetText() const { return _text; }
    std::string_view GetText(const SourceRange& range) const;

    /// At least 1; a line feed at the end of the text begins one more line, which is empty.
    int CountLines() const { return static_cast<int>(_lineStarts.size()); }
    /// @param line from 1 @return the line without its end; empty when there is none
    std::string_view GetLine(int line) const;
    /// The bytes of a line, without its end.
    SourceRange GetLineRange(int line) const;

    SourcePlace GetPlace(std::size_t offset) const;
    std::size_t GetOffset(const SourcePlace& place) const;

    /// Columns from 0 in units of UTF-16, as editors count them. Bytes that are no UTF-8 count one.
    /// @{
    int GetColumn16(std::size_t offset) const;
    std::size_t GetOffset16(int line, int column16) const;
    /// @}

private:
    std::string _text;
    std::vector<std::size_t> _lineStarts;
};

} // namespace Tolen::Language

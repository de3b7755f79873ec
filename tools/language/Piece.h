#pragma once

#include "language/SourceToken.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// A token on its way into a layout.
struct Piece {
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    SourceToken::Kind kind = SourceToken::kKind_Unknown;
    std::string_view text; ///< that is written; line comments come without blanks at their end
    std::string_view gap;  ///< what is written before it, blanks and line ends

    bool isBroken = false;       ///< whether it begins a line
    bool isAfterEmpty = false;   ///< whether an empty line is above that
    bool hasBlank = false;       ///< whether a blank is before it within a line
    bool isVerbatim = false;     ///< whether it keeps its gap within a line
    bool isStart = false;        ///< whether it begins a statement, or is a brace
    bool isTail = false;         ///< whether it is the `while` behind the block of a `do`
    bool isBinary = false;       ///< whether it is an operator with an operand on either side
    std::int32_t level = 0;      ///< of the line, when the piece begins one and isStart
    std::uint32_t depth = 0;     ///< the brackets around it within its statement
    std::size_t opening = kNone; ///< the innermost of these
    std::size_t statement = 0;   ///< the first piece of its statement
    std::size_t choice = kNone;  ///< of a ":", the "?" that it belongs to or the first of a chain
    std::size_t anchor = kNone;  ///< the first piece of the value that is assigned or returned

    bool Is(std::string_view sign) const { return text == sign; }
    bool IsComment() const {
        return kind == SourceToken::kKind_LineComment || kind == SourceToken::kKind_BlockComment;
    }
    bool IsCode() const { return !IsComment() && kind != SourceToken::kKind_Directive; }
    /// Whether it is on a line of its own as written.
    bool IsWrittenBroken() const { return gap.find('\n') != std::string_view::npos; }
};

constexpr std::size_t kLayoutWidth = 100; ///< columns of a line, if it can be broken
constexpr std::size_t kLayoutIndent = 4;

/// The columns that a text on one line takes: letters of UTF-8 count one.
std::size_t GetWidth(std::string_view text);
/// Decides where lines end by what the source says: between statements and around braces always, in
/// statements where it is written.
/// @param isVerbatim whether all lines keep what they hold, so that their places alone change
std::vector<Piece> MakePieces(std::string_view text, const std::vector<SourceToken>& tokens,
                              bool isVerbatim);

/// Gives lines their indentation and breaks those that are too long.
std::string PrintPieces(std::vector<Piece> pieces, std::string_view lineEnd);

} // namespace Tolen::Language

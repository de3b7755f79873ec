#include "language/Piece.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace Tolen::Language {

namespace {

constexpr std::size_t kTabWidth = 4;
/// Columns beyond which brackets and values no longer tell where lines go on.
constexpr std::size_t kDeepestAlignment = 72;
/// What is nested deeper isn't indented further.
constexpr std::int32_t kDeepestLevel = 50;

/// How much the operators are worth keeping together, from commas on; 0 for others.
int GetTightness(const Piece& piece) {
    static constexpr std::array<std::array<std::string_view, 4>, 11> kOperators = {{
        {","},
        {"?", ":"},
        {"||"},
        {"^^"},
        {"&&"},
        {"|", "^", "&"},
        {"==", "!="},
        {"<", ">", "<=", ">="},
        {"<<", ">>"},
        {"+", "-"},
        {"*", "/", "%"},
    }};
    for (std::size_t i = 0; i < kOperators.size(); ++i) {
        if (std::find(kOperators[i].begin(), kOperators[i].end(), piece.text) !=
            kOperators[i].end()) {
            return static_cast<int>(i) + 1;
        }
    }
    return 0;
}

class PiecePrinter {
public:
    PiecePrinter(std::vector<Piece> pieces, std::string_view lineEnd)
        : _pieces(std::move(pieces)), _places(_pieces.size()), _lineEnd(lineEnd) {}

    std::string Run() {
        for (std::size_t first = 0; first < _pieces.size();) {
            first = _PrintLine(first);
        }
        return std::move(_output);
    }

private:
    /// Where a piece went.
    struct Place {
        std::size_t line = 0;
        std::size_t column = 0;
        std::size_t indent = 0; ///< of the line
    };

    /// @return the first piece of the next line
    std::size_t _PrintLine(std::size_t first) {
        const std::size_t indent = _GetIndent(first);
        _FitLine(first, indent);
        if (_pieces[first].isAfterEmpty) {
            _output += _lineEnd;
        }
        ++_line;
        _output.append(indent, ' ');
        std::size_t column = indent;
        std::size_t index = first;
        do {
            const std::string gap = index == first ? std::string() : _GetGap(index);
            column += GetWidth(gap);
            _places[index] = {_line, column, indent};
            _output += gap;
            _PrintText(index, column);
            column += GetWidth(_pieces[index].text);
            ++index;
        } while (index < _pieces.size() && !_pieces[index].isBroken);
        const Piece& last = _pieces[index - 1];
        const bool isOpen = index == _pieces.size() &&
                            last.kind == SourceToken::kKind_BlockComment &&
                            (last.text.size() < 4 || !last.text.ends_with("*/"));
        _output += isOpen ? std::string_view() : _lineEnd;
        return index;
    }

    std::size_t _GetIndent(std::size_t index) const {
        const Piece& piece = _pieces[index];
        if (piece.kind == SourceToken::kKind_Directive) {
            return 0;
        }
        if (piece.isStart) {
            return static_cast<std::size_t>(std::min(piece.level, kDeepestLevel)) * kLayoutIndent;
        }
        return _GetContinuation(piece);
    }

    /// Where a line begins that goes on with the statement of the one before.
    std::size_t _GetContinuation(const Piece& piece) const {
        const std::size_t base = _places[piece.statement].indent;
        if (piece.choice != Piece::kNone) {
            return _HoldAlignment(_places[piece.choice].column, base);
        }
        const std::size_t more = piece.IsCode() && piece.Is("?") ? kLayoutIndent : 0;
        if (piece.opening != Piece::kNone) {
            const Place& opening = _places[piece.opening];
            const std::size_t behind = piece.opening + 1;
            if (&_pieces[behind] == &piece || _places[behind].line != opening.line) {
                return std::min(opening.indent, kDeepestAlignment) + kLayoutIndent;
            }
            return _HoldAlignment(_places[behind].column + more, base);
        }
        const bool isAligned = piece.anchor != Piece::kNone && &_pieces[piece.anchor] < &piece &&
                               _places[piece.anchor].line == _places[piece.anchor - 1].line;
        return isAligned ? _HoldAlignment(_places[piece.anchor].column + more, base)
                         : base + kLayoutIndent;
    }

    static std::size_t _HoldAlignment(std::size_t column, std::size_t base) {
        return column <= kDeepestAlignment ? column : base + 2 * kLayoutIndent;
    }

    std::string _GetGap(std::size_t index) const {
        const Piece& piece = _pieces[index];
        if (piece.isVerbatim) {
            return std::string(piece.gap);
        }
        const bool isTrailing = index + 1 == _pieces.size() || _pieces[index + 1].isBroken;
        if (piece.IsComment() && isTrailing) {
            return std::string(std::max<std::size_t>(piece.gap.size(), 1), ' ');
        }
        return piece.hasBlank ? " " : "";
    }

    /// Breaks the line once where that is best, if it is too long; the rest of it comes next.
    void _FitLine(std::size_t first, std::size_t indent) {
        std::size_t best = Piece::kNone;
        int bestCost = 0;
        std::size_t column = indent + GetWidth(_pieces[first].text);
        std::size_t comments = 0; // behind that; those at the end may be too long
        for (std::size_t i = first + 1; i < _pieces.size() && !_pieces[i].isBroken; ++i) {
            const int cost = _GetBreakCost(i);
            const bool fits = column <= kLayoutWidth;
            if (cost >= 0 && (best == Piece::kNone || (fits && cost <= bestCost))) {
                best = i;
                bestCost = cost;
            }
            comments += GetWidth(_GetGap(i)) + GetWidth(_pieces[i].text);
            if (_pieces[i].IsComment()) {
                continue;
            }
            column += std::exchange(comments, 0);
            if (column > kLayoutWidth && best != Piece::kNone) {
                _pieces[best].isBroken = true;
                return;
            }
        }
    }

    /// What a break before a piece costs: less outside of brackets than within, and less the weaker
    /// the operator. @return a negative number where there can be none
    int _GetBreakCost(std::size_t index) const {
        constexpr int kLastResort = 1'000'000;
        constexpr int kDepth = 100;
        const Piece& piece = _pieces[index];
        const Piece& before = _pieces[index - 1];
        if (!piece.IsCode() || !before.IsCode() || piece.isVerbatim || before.isVerbatim ||
            piece.Is("{") || piece.Is("}") || before.Is("{") || before.Is("}")) {
            return -1;
        }
        if (piece.isStart) {
            return 0;
        }
        const int depth = static_cast<int>(std::min(piece.depth, 1000u)) * kDepth + kDepth;
        if (piece.Is("?") || (piece.Is(":") && piece.isBinary && !_IsHead(piece))) {
            return depth + GetTightness(piece);
        }
        if (before.Is("?") || before.Is(":")) {
            return -1;
        }
        if (before.Is(",")) {
            return depth + GetTightness(before);
        }
        if (before.Is("(") && !piece.Is(")")) {
            return kLastResort + depth;
        }
        if (!before.isBinary) {
            return -1;
        }
        const int tightness = GetTightness(before);
        return tightness != 0 ? depth + tightness : kLastResort + depth;
    }

    bool _IsHead(const Piece& piece) const { return _pieces[piece.statement].Is("class"); }

    /// The lines of a comment move along with its first one.
    void _PrintText(std::size_t index, std::size_t column) {
        const Piece& piece = _pieces[index];
        const bool moves =
            piece.kind == SourceToken::kKind_BlockComment && piece.isBroken && !piece.isVerbatim;
        std::size_t written = 0;
        for (std::size_t i = piece.gap.rfind('\n') + 1; i < piece.gap.size(); ++i) {
            written += piece.gap[i] == '\t' ? kTabWidth : 1;
        }
        if (!moves || written == column) {
            _output += piece.text;
            return;
        }
        for (std::size_t begin = 0; begin < piece.text.size();) {
            const std::size_t end =
                std::min(piece.text.find('\n', begin), piece.text.size() - 1) + 1;
            const std::string_view line = piece.text.substr(begin, end - begin);
            const std::size_t blanks = std::min(line.find_first_not_of(' '), line.size());
            const bool isEmpty = line.find_first_not_of(" \r\n") == std::string_view::npos;
            if (begin > 0 && !isEmpty) {
                const std::size_t moved = blanks + column;
                _output.append(moved - std::min(moved, written), ' ');
                _output += line.substr(blanks);
            } else {
                _output += line;
            }
            begin = end;
        }
    }

    std::vector<Piece> _pieces;
    std::vector<Place> _places; ///< of the pieces that are printed
    std::string_view _lineEnd;
    std::size_t _line = 0;
    std::string _output;
};

} // namespace

std::size_t GetWidth(std::string_view text) {
    std::size_t width = 0;
    for (const char byte : text) {
        width += (static_cast<unsigned char>(byte) & 0xc0) == 0x80 ? 0 : 1;
    }
    return width;
}

std::string PrintPieces(std::vector<Piece> pieces, std::string_view lineEnd) {
    return PiecePrinter(std::move(pieces), lineEnd).Run();
}

} // namespace Tolen::Language

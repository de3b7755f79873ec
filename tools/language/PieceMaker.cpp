#include "language/Nesting.h"
#include "language/Piece.h"
#include "language/Spacing.h"

#include <algorithm>
#include <map>
#include <utility>

namespace Tolen::Language {

namespace {

bool IsAssignment(std::string_view text) {
    return text.ends_with('=') && text != "==" && text != "!=" && text != "<=" && text != ">=";
}

class PieceMaker {
public:
    PieceMaker(std::string_view text, const std::vector<SourceToken>& tokens, bool isVerbatim)
        : _pieces(tokens.size()) {
        std::size_t end = 0;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            Piece& piece = _pieces[i];
            const SourceRange& range = tokens[i].range;
            piece.kind = tokens[i].kind;
            piece.text = text.substr(range.begin, range.GetLength());
            piece.gap = text.substr(end, range.begin - end);
            piece.isVerbatim = isVerbatim;
            end = range.end;
            if (piece.kind == SourceToken::kKind_LineComment) {
                piece.text = piece.text.substr(0, piece.text.find_last_not_of(" \t") + 1);
            }
        }
        _FindNext();
        _KeepUnknown();
    }

    std::vector<Piece> Run() {
        for (std::size_t i = 0; i < _pieces.size(); ++i) {
            _Place(i);
        }
        for (std::size_t i = 0; i < _pieces.size(); ++i) {
            _Break(i);
        }
        return std::move(_pieces);
    }

private:
    void _FindNext() {
        _next.resize(_pieces.size());
        std::size_t next = _pieces.size();
        for (std::size_t i = _pieces.size(); i-- > 0;) {
            _next[i] = next;
            next = _pieces[i].IsCode() ? i : next;
        }
    }

    /// A line with a character that begins nothing stays as it is: what is around that is no code,
    /// and a "#" may begin a directive in another place.
    void _KeepUnknown() {
        for (std::size_t first = 0; first < _pieces.size();) {
            std::size_t last = first + 1;
            bool hasUnknown = _pieces[first].kind == SourceToken::kKind_Unknown;
            for (; last < _pieces.size() && !_pieces[last].IsWrittenBroken(); ++last) {
                hasUnknown = hasUnknown || _pieces[last].kind == SourceToken::kKind_Unknown;
            }
            for (; first < last; ++first) {
                _pieces[first].isVerbatim = _pieces[first].isVerbatim || hasUnknown;
            }
        }
    }

    std::string_view _GetNextText(std::size_t index) const {
        return _next[index] < _pieces.size() ? _pieces[_next[index]].text : std::string_view();
    }

    /// Finds out where a piece is in the nesting, and the blank before it.
    void _Place(std::size_t index) {
        Piece& piece = _pieces[index];
        if (piece.kind == SourceToken::kKind_Directive) {
            _FollowDirective(piece.text);
            return;
        }
        if (piece.Is("class") || piece.Is("interface")) {
            _nesting.CloseTo(0);
        }
        const bool isBrace =
            piece.kind == SourceToken::kKind_Sign && (piece.Is("{") || piece.Is("}"));
        piece.isStart = isBrace || _nesting.IsAtStart();
        if (piece.IsComment()) {
            piece.level = _nesting.GetLevel(_GetNextText(index) == "{" ? "{" : "");
        } else {
            piece.level = _nesting.GetLevel(piece.text);
            if (piece.isStart) {
                _statement = index;
                _anchor = Piece::kNone;
                _choices.erase(Piece::kNone);
                _spacing.BeginStatement();
            }
        }
        const Nesting::Frame& top = _nesting.GetTop();
        piece.statement = _statement;
        piece.anchor = _anchor;
        piece.opening = top.kind == Nesting::kKind_Group ? top.token : Piece::kNone;
        piece.depth = piece.opening == Piece::kNone ? 0 : _pieces[piece.opening].depth + 1;
        piece.hasBlank = _spacing.Next(piece.kind, piece.text, !piece.gap.empty());
        if (!piece.IsCode()) {
            return;
        }
        piece.isBinary = _spacing.IsBinary();
        _FollowChoice(index);
        piece.isTail = piece.isStart && piece.Is("while") && top.kind == Nesting::kKind_DoTail;
        _nesting.Step(index, piece.text, _GetNextText(index),
                      index == 0 || piece.IsWrittenBroken());
        const bool takesValue = piece.Is("return") || (piece.isBinary && IsAssignment(piece.text));
        if (takesValue && piece.depth == 0 && _anchor == Piece::kNone) {
            _anchor = index + 1;
        }
    }

    /// Pairs "?" and ":". A "?" in the last part of another goes on with a chain.
    void _FollowChoice(std::size_t index) {
        Piece& piece = _pieces[index];
        if (piece.Is("?")) {
            Choices& choices = _choices[piece.opening];
            const bool isChain = choices.open.empty() && choices.chain != Piece::kNone;
            choices.open.push_back(isChain ? choices.chain : index);
        } else if (piece.Is(":") || piece.Is(",")) {
            const auto found = _choices.find(piece.opening);
            if (found == _choices.end()) {
                return;
            }
            Choices& choices = found->second;
            if (piece.Is(",")) {
                choices = Choices();
            } else if (!choices.open.empty()) {
                piece.choice = choices.open.back();
                choices.open.pop_back();
                choices.chain = choices.open.empty() ? piece.choice : Piece::kNone;
            }
        }
    }

    void _FollowDirective(std::string_view line) {
        if (line.starts_with("#if")) {
            _nesting.BeginCondition();
        } else if (line.starts_with("#else")) {
            _nesting.NextBranch();
        } else if (line.starts_with("#endif")) {
            _nesting.EndCondition();
        }
    }

    void _Break(std::size_t index) {
        Piece& piece = _pieces[index];
        if (index == 0) {
            piece.isBroken = true;
            return;
        }
        const Piece& before = _pieces[index - 1];
        piece.isBroken = _IsBroken(index);
        piece.isAfterEmpty =
            piece.isBroken && std::count(piece.gap.begin(), piece.gap.end(), '\n') > 1 &&
            !(before.IsCode() && before.Is("{")) && !(piece.IsCode() && piece.Is("}"));
        if (index < _lineEnd) {
            piece.isBroken = false;
        } else if (piece.IsCode() && piece.Is("{")) {
            _lineEnd = _FindBodyOnOneLine(index);
            piece.isBroken = piece.isBroken && index >= _lineEnd;
        }
    }

    bool _IsBroken(std::size_t index) const {
        const Piece& piece = _pieces[index];
        const Piece& before = _pieces[index - 1];
        const bool isWritten = piece.IsWrittenBroken();
        if (piece.isVerbatim || before.isVerbatim || !piece.IsCode() ||
            before.kind == SourceToken::kKind_Directive ||
            before.kind == SourceToken::kKind_LineComment) {
            return isWritten;
        }
        const bool isBrace = piece.Is("{") || piece.Is("}");
        if (before.IsComment()) {
            return isWritten || isBrace || (piece.isStart && !before.isBroken);
        }
        if (before.Is("}") && (piece.isTail || (piece.Is(";") && !isWritten))) {
            return false;
        }
        if (isBrace || before.Is("{") || before.Is("}") || (piece.isStart && before.Is(";"))) {
            return true;
        }
        const bool isJoined =
            !piece.isStart && (piece.Is(";") || piece.Is(",") || piece.Is(")") || piece.Is("]"));
        return isWritten && !isJoined;
    }

    /// @return one past the brace that ends the body of a function which is written on one line,
    /// with its head, and fits there; the index of its first brace otherwise
    std::size_t _FindBodyOnOneLine(std::size_t opening) const {
        const std::size_t first = _pieces[opening - 1].statement;
        if (!_pieces[opening - 1].Is(")") || _pieces[opening].isVerbatim ||
            _pieces[first].Is("if") || _pieces[first].Is("for") || _pieces[first].Is("while")) {
            return opening;
        }
        std::size_t width = static_cast<std::size_t>(_pieces[first].level) * kLayoutIndent;
        for (std::size_t i = first; i < _pieces.size(); ++i) {
            const Piece& piece = _pieces[i];
            width += GetWidth(piece.text) + (i > first && piece.hasBlank ? 1 : 0);
            if ((i > first && piece.IsWrittenBroken()) || (i > opening && piece.Is("{")) ||
                piece.kind == SourceToken::kKind_LineComment || width > kLayoutWidth ||
                piece.text.find('\n') != std::string_view::npos) {
                return opening;
            }
            if (i > opening && piece.IsCode() && piece.Is("}")) {
                return i + 1;
            }
        }
        return opening;
    }

    /// The "?" of one pair of brackets.
    struct Choices {
        std::vector<std::size_t> open; ///< that wait for a ":"; of chains the first one
        std::size_t chain = Piece::kNone;
    };

    std::vector<Piece> _pieces;
    std::vector<std::size_t> _next; ///< of each, the next piece of code
    Nesting _nesting;
    Spacing _spacing;
    std::size_t _statement = 0;              ///< the first piece of the present one
    std::size_t _anchor = Piece::kNone;      ///< see Piece
    std::map<std::size_t, Choices> _choices; ///< by the opening bracket
    std::size_t _lineEnd = 0;                ///< pieces before it stay on their line
};

} // namespace

std::vector<Piece> MakePieces(std::string_view text, const std::vector<SourceToken>& tokens,
                              bool isVerbatim) {
    return PieceMaker(text, tokens, isVerbatim).Run();
}

} // namespace Tolen::Language

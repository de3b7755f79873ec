#pragma once

#include "language/SourceToken.h"

#include <string>
#include <string_view>

namespace Tolen::Language {

/// Decides where blanks stand within a line, token by token. Blanks never go where that would make
/// other tokens of the same letters.
class Spacing {
public:
    /// @param hadBlank whether there is something between the token and the one before it as
    /// written
    /// @return whether a blank stands before the token
    bool Next(SourceToken::Kind kind, std::string_view text, bool hadBlank);

    /// The next token begins a statement though no line: what was before it is no operand.
    void BeginStatement() { _endsOperand = false; }

    /// Whether the token given last is an operator with an operand on either side.
    bool IsBinary() const { return _isBinary; }

private:
    bool _IsBlankBefore(SourceToken::Kind kind, std::string_view text, bool hadBlank) const;

    SourceToken::Kind _kind = SourceToken::kKind_Unknown;
    std::string_view _text;    ///< of the token before; empty at first
    bool _endsOperand = false; ///< whether that one is, or ends, what an operator can stand behind
    bool _isPrefix = false;    ///< whether it is an operator before its only operand
    bool _isBinary = false;
};

/// Whether a keyword is the name of a type, also `void`.
bool IsTypeKeyword(std::string_view word);

/// The tokens from @p first to before @p last on one line, without comments and directives.
std::string JoinTokens(const SourceText& text, const SourceToken* first, const SourceToken* last);

} // namespace Tolen::Language

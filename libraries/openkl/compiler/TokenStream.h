#pragma once

#include "compiler/Token.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace Tolen::OpenKL {

class Diagnostics;

/// The tokens of a text and the place of the reader among them.
class TokenStream {
public:
    /// @param tokens end with kToken_End
    TokenStream(std::vector<Token> tokens, Diagnostics& diagnostics);

    const Token& Peek(std::size_t ahead = 0) const;
    /// The token before the place of the reader; the first one at the start.
    const Token& GetPrevious() const;
    bool Is(TokenKind kind, std::size_t ahead = 0) const { return Peek(ahead).kind == kind; }
    /// Whether the next token is that identifier.
    bool IsWord(std::string_view word) const;

    const Token& Take();
    /// Takes the next token if it is of that kind.
    bool Accept(TokenKind kind);
    /// Takes the next token, or reports what was expected instead. @param spelling such as ")"
    bool Expect(TokenKind kind, std::string_view spelling);
    /// Takes the ";" that ends something. One that is missing at the end of a line is reported and
    /// then taken as read, since what follows is most likely good.
    bool ExpectSemicolon();

    /// Takes a "{", all up to its "}", and that one. @return false, at the end of the text, when
    /// there is none
    bool SkipBraces();
    /// Goes on behind the next ";", or in front of the next "}", of the same level of braces.
    void SkipStatement();

    std::size_t GetPosition() const { return _at; }
    void SetPosition(std::size_t position) { _at = position; }
    void GoToEnd() { _at = _tokens.size() - 1; }

private:
    std::vector<Token> _tokens;
    Diagnostics& _diagnostics;
    std::size_t _at = 0;
};

} // namespace Tolen::OpenKL

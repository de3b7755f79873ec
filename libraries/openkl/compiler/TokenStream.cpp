#include "compiler/TokenStream.h"

#include "compiler/Diagnostics.h"

#include <algorithm>

namespace Tolen::OpenKL {

TokenStream::TokenStream(std::vector<Token> tokens, Diagnostics& diagnostics)
    : _tokens(std::move(tokens)), _diagnostics(diagnostics) {}

const Token& TokenStream::Peek(std::size_t ahead) const {
    return _tokens[std::min(_at + ahead, _tokens.size() - 1)];
}

const Token& TokenStream::GetPrevious() const {
    return _tokens[_at == 0 ? 0 : _at - 1];
}

bool TokenStream::IsWord(std::string_view word) const {
    return Is(kToken_Identifier) && Peek().text == word;
}

const Token& TokenStream::Take() {
    const Token& token = Peek();
    if (token.kind != kToken_End) {
        ++_at;
    }
    return token;
}

bool TokenStream::Accept(TokenKind kind) {
    if (!Is(kind)) {
        return false;
    }
    Take();
    return true;
}

bool TokenStream::Expect(TokenKind kind, std::string_view spelling) {
    if (Accept(kind)) {
        return true;
    }
    _diagnostics.Error(Peek().line,
                       "expected " + std::string(spelling) + ", found " + Describe(Peek()));
    return false;
}

bool TokenStream::ExpectSemicolon() {
    if (Accept(kToken_Semicolon)) {
        return true;
    }
    const Token& previous = GetPrevious();
    _diagnostics.Error(previous.line,
                       "expected ';' behind " + Describe(previous) + ", found " + Describe(Peek()));
    return Peek().line > previous.line;
}

bool TokenStream::SkipBraces() {
    int depth = 0;
    do {
        if (Is(kToken_End)) {
            return false;
        }
        const TokenKind kind = Take().kind;
        depth += kind == kToken_LeftBrace ? 1 : kind == kToken_RightBrace ? -1 : 0;
    } while (depth > 0);
    return true;
}

void TokenStream::SkipStatement() {
    while (!Is(kToken_End) && !Is(kToken_RightBrace)) {
        if (Is(kToken_LeftBrace)) {
            SkipBraces();
            return;
        }
        if (Take().kind == kToken_Semicolon) {
            return;
        }
    }
}

} // namespace Tolen::OpenKL

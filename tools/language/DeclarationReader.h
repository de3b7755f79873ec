#pragma once

#include "language/Outline.h"
#include "language/SourceText.h"
#include "language/SourceToken.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// What a DeclarationReader has read.
struct Declaration {
    Symbol symbol;
    std::size_t last = 0; ///< one past its last token
    std::size_t end = 0;  ///< the next token of code
    bool hasBody = false; ///< whether a brace is that token
};

/// Reads single declarations from the tokens of a source, as far as they go: a missing semicolon or
/// bracket at the end is taken as there.
class DeclarationReader {
public:
    /// @param text, tokens borrowed
    DeclarationReader(const SourceText& text, const std::vector<SourceToken>& tokens)
        : _text(text), _tokens(tokens) {}

    /// The next token behind @p index that is no comment and no directive; the number of tokens
    /// when there is none.
    std::size_t Next(std::size_t index) const;

    bool BeginsContainer(std::size_t index) const;
    /// Whether a declaration of a class or file begins that can be part of nothing else.
    bool BeginsForSure(std::size_t index) const;

    /// @param index where it begins @return nothing when it can't be read
    /// @{
    std::optional<Declaration> ReadContainer(std::size_t index) const;
    std::optional<Declaration> ReadMember(std::size_t index, bool isInContainer) const;
    std::optional<Declaration> ReadLocal(std::size_t index) const;
    /// @}

private:
    /// A place in the tokens that moves over what fits.
    struct Cursor {
        const DeclarationReader& reader;
        std::size_t at;
        std::size_t last; ///< one past the token that was taken last

        std::string_view GetText() const { return reader._GetText(at); }
        void Take();
        bool Take(std::string_view text);
    };

    std::string_view _GetText(std::size_t index) const;
    bool _IsWord(std::size_t index) const;
    bool _IsType(std::size_t index) const;
    /// Whether the declaration can end here for want of a semicolon.
    bool _CanEnd(const Cursor& cursor) const;
    bool _ReadTypeAndName(Cursor& cursor, Symbol& symbol) const;
    void _ReadBrackets(Cursor& cursor, Symbol& symbol) const;
    void _ReadValue(Cursor& cursor, Symbol& symbol) const;
    void _ReadParameters(Cursor& cursor, Symbol& symbol) const;
    void _ReadParameter(Cursor& cursor, Symbol& symbol) const;
    Declaration _Finish(std::size_t first, const Cursor& cursor, Symbol symbol) const;

    const SourceText& _text;
    const std::vector<SourceToken>& _tokens;
};

} // namespace Tolen::Language

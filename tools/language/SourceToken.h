#pragma once

#include "language/SourceText.h"

#include <cstdint>
#include <string_view>
#include <vector>

namespace Tolen::Language {

/// A piece of a KLSL source as it is written, before directives are followed.
struct SourceToken {
    enum Kind : std::uint8_t {
        kKind_Word,    ///< a name that is no keyword
        kKind_Keyword, ///< also true and false
        kKind_Number,
        kKind_Sign,         ///< an operator, a bracket, a comma, a semicolon
        kKind_LineComment,  ///< without the end of its line
        kKind_BlockComment, ///< to the end of the text when nothing closes it
        kKind_Directive, ///< a whole line that begins with one of the directives, without its end
        kKind_Unknown,   ///< a character that begins nothing
    };

    Kind kind = kKind_Unknown;
    SourceRange range;

    bool IsComment() const { return kind == kKind_LineComment || kind == kKind_BlockComment; }
    bool operator==(const SourceToken&) const = default;
};

/// Cuts a source into its tokens; blanks and line ends lie between them. Where the library's own
/// scanner ends at a character that begins nothing, this one goes on behind it, since an editor has
/// such texts all the time. Otherwise the tokens are those of a file: the same, and comments and
/// directives besides. A directive within a comment is part of that, but can't end it.
std::vector<SourceToken> Tokenize(std::string_view text);

} // namespace Tolen::Language

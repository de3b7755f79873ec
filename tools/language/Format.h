#pragma once

#include <string>
#include <string_view>

namespace Tolen::Language {

/// Lays a KLSL source out anew. Its tokens, comments and directives stay, in their order; only
/// blanks and line ends between them change. Formatting what has been formatted changes nothing.
/// Texts that are wrong are laid out as far as they are understood; nothing is ever lost. Lines
/// keep what they hold where that says more than its tokens: with characters that begin no token,
/// and in texts that define a name which is no word, or a value with the sign of a comment.
std::string Format(std::string_view text);

} // namespace Tolen::Language

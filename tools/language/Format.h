#pragma once

#include <string>
#include <string_view>

namespace Tolen::Language {

/// Lays a KLSL source out anew. Its tokens, comments and directives stay, in their order; only
/// blanks and line ends between them change. Formatting what has been formatted changes nothing.
/// Texts that are wrong are laid out as far as they are understood; nothing is ever lost.
std::string Format(std::string_view text);

} // namespace Tolen::Language

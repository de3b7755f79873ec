#pragma once

namespace Tolen::Effects {

/// Whether @p c can be part of a word of the shading language: a letter, a digit or "_", in ASCII
/// and in any locale.
constexpr bool IsWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

} // namespace Tolen::Effects

#pragma once

#include <cstddef>

/// @file
/// The limits of the library. Input beyond one of them is refused with a message that names the
/// limit, its value and the place in the source; everything up to it works, on a thread with a
/// stack of 1 MiB too.
namespace Tolen::Effects {

/// How deep included and imported files may nest.
inline constexpr int kLimitIncludeDepth = 64;

/// Files that one library may open, each opening counted, those of its imports included.
inline constexpr int kLimitFiles = 4096;

/// Bytes that the directives of one library expand to, those of the libraries it imports included.
inline constexpr std::size_t kLimitExpandedSource = std::size_t{64} << 20;

/// Characters in a name given to "#define".
inline constexpr std::size_t kLimitDefinitionName = 1024;

/// How deep classes may nest that are loaded because the loading of another one refers to them.
inline constexpr int kLimitPrototypeDepth = 128;

/// How deep shaders may nest that are made as defaults of inputs, each inside the making of the one
/// that has the input.
inline constexpr int kLimitDefaultDepth = 64;

/// How deep expressions, statements and blocks may nest in source. A level is a pair of
/// parentheses or brackets, an argument list, a block in a function's body, a branch or a loop, and
/// what an operator applies to; parentheses right behind an operator are one level with it. Neither
/// the left operands of a chain of binary operators (`a + b + c`) nor the members of an `else if`
/// chain nest: those have any length.
inline constexpr int kLimitNesting = 1024;

/// Pieces of code (names, constants, calls, blocks and the like) that one loop over an array of
/// shaders may unroll to. A loop beyond that is not refused but stays a loop.
inline constexpr std::size_t kLimitUnrolledLoop = std::size_t{1} << 20;

/// Bytes of one generated text.
inline constexpr std::size_t kLimitGeneratedText = std::size_t{64} << 20;

} // namespace Tolen::Effects

#pragma once

namespace Tolen::OpenKL {

/// Levels to which parentheses, calls, subscripts, conditionals, prefix operators, blocks and
/// statements may nest in one another.
inline constexpr int kMaxNesting = 1024;

/// Scalars in one variable, such as 16,384 floats or 4,096 vec4.
inline constexpr int kMaxScalarsInVariable = 16384;

/// Messages of one compilation or one link; what would come after is left out.
inline constexpr int kMaxMessages = 20;

/// Bytes of one text.
inline constexpr int kMaxTextBytes = 64 * 1024 * 1024;

} // namespace Tolen::OpenKL

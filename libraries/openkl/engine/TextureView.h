#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

/// What happens to texture coordinates outside 0 to 1.
enum class TextureWrap : std::int32_t { Repeat, Clamp, Mirror };

/// How texels join into a value.
enum class TextureFilter : std::int32_t { Nearest, Linear };

/// One image of a texture, texels of floats row by row from the lowest.
struct TextureLevel {
    const float* pTexels = nullptr;
    std::int32_t width = 0;  ///< texels
    std::int32_t height = 0; ///< texels
};

/// A two-dimensional texture, ready for sampling. Everything is borrowed and must hold still while
/// kernels run. Missing components read as 0, a missing alpha as 1.
struct TextureView {
    const TextureLevel* pLevels = nullptr; ///< the image itself first, each further one half as big
    std::int32_t levelCount = 0;           ///< 0 samples as (0, 0, 0, 1) of size 0
    std::int32_t components = 0;           ///< floats a texel: 1, 3 or 4
    TextureWrap wrap = TextureWrap::Repeat;
    TextureFilter minification = TextureFilter::Linear;
    TextureFilter magnification = TextureFilter::Linear;
};

} // namespace Tolen::OpenKL

#pragma once

#include <optional>

namespace Tolen::Effects {

/// The size of a texture that keeps an array, in texels.
struct TextureGeometry {
    int width;
    int height;

    int GetCount() const { return width * height; }
    bool operator==(const TextureGeometry&) const = default;

    /// The width is the lowest power of two from @p length on, at most 512; the height is the
    /// lowest power of two from the quotient of the two on. A last row that isn't full can fall out
    /// of it.
    /// @param length 0 or above
    /// @return nothing when the texels can't be counted
    static std::optional<TextureGeometry> Of(int length);
};

} // namespace Tolen::Effects

#include "TextureGeometry.h"

#include <limits>

namespace Tolen::Effects {

namespace {

constexpr long long kWidthLimit = 512;

/// The lowest power of two that is not below @p value, and not above @p limit.
long long PowerOfTwo(long long value, long long limit) {
    long long power = 1;
    while (power < value && power < limit) {
        power *= 2;
    }
    return power;
}

} // namespace

std::optional<TextureGeometry> TextureGeometry::Of(int length) {
    constexpr long long kCountLimit = std::numeric_limits<int>::max();
    const long long width = PowerOfTwo(length, kWidthLimit);
    const long long height = PowerOfTwo(length / width, kCountLimit);
    if (width * height > kCountLimit) {
        return std::nullopt;
    }
    return TextureGeometry{static_cast<int>(width), static_cast<int>(height)};
}

} // namespace Tolen::Effects

#include "render/RayCones.h"

#include "render/RayRecord.h"

#include <array>
#include <cmath>
#include <cstddef>

namespace Tolen::OpenKL {

namespace {

float GetDistance(const float* a, const float* b, int count) {
    float squares = 0.0f;
    for (int i = 0; i < count; ++i) {
        squares += (a[i] - b[i]) * (a[i] - b[i]);
    }
    return std::sqrt(squares);
}

} // namespace

void SetCameraCones(RayList& rays) {
    // The first ray of each pixel of the block.
    constexpr std::size_t block = 16;
    std::array<std::size_t, block * block> firsts;
    firsts.fill(rays.GetCount());
    const auto getPlace = [](int x, int y) {
        return static_cast<std::size_t>(y) % block * block + static_cast<std::size_t>(x) % block;
    };
    for (std::size_t i = rays.GetCount(); i-- > 0;) {
        firsts[getPlace(rays.GetRecord(i).pixelX, rays.GetRecord(i).pixelY)] = i;
    }
    for (std::size_t i = 0; i < rays.GetCount(); ++i) {
        RayRecord& ray = rays.GetRecord(i);
        const RayRecord& own = rays.GetRecord(firsts[getPlace(ray.pixelX, ray.pixelY)]);
        // Samples of one pair may lie close together, so the farther one of two pairs is taken.
        float farthest = 0.0f;
        for (const std::size_t place :
             {getPlace(ray.pixelX ^ 1, ray.pixelY), getPlace(ray.pixelX, ray.pixelY ^ 1)}) {
            if (firsts[place] == rays.GetCount()) {
                continue;
            }
            const RayRecord& other = rays.GetRecord(firsts[place]);
            const float pixels = GetDistance(own.pixelCoord, other.pixelCoord, 2);
            if (pixels > farthest) {
                farthest = pixels;
                ray.coneWidth = GetDistance(own.origin, other.origin, 3) / pixels;
                ray.coneSpread = GetDistance(own.direction, other.direction, 3) / pixels;
            }
        }
    }
}

} // namespace Tolen::OpenKL

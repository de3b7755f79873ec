#pragma once

#include "render/RayRecord.h"

#include <embree3/rtcore.h>

#include <cstddef>

namespace Tolen::OpenKL {

class Scene;

/// Finds what rays hit.
///
/// What a ray hits depends on that ray alone, to the last bit: rays are traced one by one, except
/// for camera rays, which go in packets whose members never change.
class RayTracer {
public:
    explicit RayTracer(const Scene& scene);

    /// Traces every ray of @p rays. Fills triangle, u, v and distance of each and sets its
    /// primitive to the number of the geometry, RTC_INVALID_GEOMETRY_ID for none.
    void Trace(RayList& rays) const;
    /// The same in packets of 16 in the order of the rays, which is a part of the result.
    void TraceCoherent(RayList& rays) const;

    /// Whether a ray meets anything. @p direction is of unit length.
    bool IsOccluded(const float* origin, const float* direction, float maxDistance) const;
    /// The distance of the nearest hit, or -1.
    float FindDistance(const float* origin, const float* direction, float maxDistance) const;

private:
    RTCScene _scene;
};

} // namespace Tolen::OpenKL

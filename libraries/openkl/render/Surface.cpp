#include "render/Surface.h"

#include "render/RayRecord.h"
#include "render/RenderPlan.h"
#include "scene/SceneObject.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <functional>

namespace Tolen::OpenKL {

namespace {

float Dot(const float* a, const float* b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

/// Steps a coordinate by representable numbers, or by a fixed length near zero.
float Offset(float coordinate, float normal) {
    constexpr float nearZero = 1.0f / 32.0f;
    constexpr float lengthNearZero = 1.0f / 65536.0f;
    constexpr float steps = 256.0f;
    if (std::fabs(coordinate) < nearZero) {
        return coordinate + lengthNearZero * normal;
    }
    const auto step = static_cast<std::int32_t>(steps * normal);
    const auto bits = std::bit_cast<std::int32_t>(coordinate);
    return std::bit_cast<float>(bits + (coordinate < 0.0f ? -step : step));
}

} // namespace

bool Normalize(float* direction) {
    // In double, so that neither tiny nor huge directions lose their squares.
    const double x = direction[0], y = direction[1], z = direction[2];
    const double length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0.0) || !std::isfinite(length)) {
        return false;
    }
    const double scale = 1.0 / length;
    direction[0] = static_cast<float>(x * scale);
    direction[1] = static_cast<float>(y * scale);
    direction[2] = static_cast<float>(z * scale);
    return true;
}

SurfacePoint FindSurfacePoint(const PlanPrimitive& primitive, const RayRecord& ray) {
    SurfacePoint point{};
    if (ray.triangle == RayRecord::kMissed) {
        for (int i = 0; i < 3; ++i) {
            point.position[i] = ray.origin[i];
            point.normal[i] = -ray.direction[i];
        }
        point.isFront = true;
        return point;
    }

    const SceneObject& object = *primitive.pObject;
    const std::uint32_t* const corners =
        object.GetTriangles().data() + std::size_t{ray.triangle} * 3;
    const float* const positions = object.GetVertices().positions.data();
    const float* const p0 = positions + std::size_t{corners[0]} * 3;
    const float* const p1 = positions + std::size_t{corners[1]} * 3;
    const float* const p2 = positions + std::size_t{corners[2]} * 3;
    float edge1[3];
    float edge2[3];
    for (int i = 0; i < 3; ++i) {
        edge1[i] = p1[i] - p0[i];
        edge2[i] = p2[i] - p0[i];
        point.position[i] = p0[i] * (1.0f - ray.u - ray.v) + p1[i] * ray.u + p2[i] * ray.v;
    }
    for (int i = 0; i < 3; ++i) {
        const int j = (i + 1) % 3;
        const int k = (i + 2) % 3;
        point.normal[i] = edge1[j] * edge2[k] - edge1[k] * edge2[j];
    }
    if (!Normalize(point.normal)) {
        std::transform(ray.direction, ray.direction + 3, point.normal, std::negate<>());
    } else if (object.IsMirrored()) {
        std::transform(point.normal, point.normal + 3, point.normal, std::negate<>());
    }
    point.isFront = Dot(ray.direction, point.normal) < 0.0f;
    return point;
}

void LeaveSurface(const float* position, const float* normal, const float* direction,
                  float* origin) {
    float size = 1.0f / 32.0f;
    float distance = 0.0f;
    for (int i = 0; i < 3; ++i) {
        size = std::max(size, std::fabs(position[i]));
        distance = std::max(distance, std::fabs(origin[i] - position[i]));
    }
    // A few roundings away is still the point itself; farther is where the shader wanted to be.
    if (!(distance <= size * 0x1p-20f)) {
        return;
    }
    const float side = Dot(direction, normal) < 0.0f ? -1.0f : 1.0f;
    for (int i = 0; i < 3; ++i) {
        origin[i] = Offset(origin[i], side * normal[i]);
    }
}

} // namespace Tolen::OpenKL

#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

class SceneObject;
struct PlanPrimitive;
struct RayRecord;

/// Where a ray met a surface.
struct SurfacePoint {
    float position[3];
    float normal[3]; ///< of the triangle, unit, to the side that is the front
    bool isFront;    ///< whether the ray came to the front
};

/// The point of a hit, computed on the triangle itself rather than along the ray, so that it is as
/// close to the surface as floats go. For a ray that missed: where it began, facing it.
SurfacePoint FindSurfacePoint(const PlanPrimitive& primitive, const RayRecord& ray);

/// Moves an origin that lies at @p point off its surface, to the side that @p direction goes to, so
/// that the ray doesn't meet the surface again where it starts. Other origins stay as they are.
///
/// Waechter and Binder, "A Fast and Robust Method for Avoiding Self-Intersection", Ray Tracing
/// Gems (2019).
void LeaveSurface(const float* position, const float* normal, const float* direction,
                  float* origin);

/// Scales a direction to unit length. @return false for one that is not finite or has no length
bool Normalize(float* direction);

} // namespace Tolen::OpenKL

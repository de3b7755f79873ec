#pragma once

namespace Tolen::OpenKL {

class RayList;

/// Gives camera rays, all spawned by one batch of a frame program, cones that are as wide as the
/// distance between neighbouring pixels: each ray is compared with one of a pixel beside its own.
void SetCameraCones(RayList& rays);

} // namespace Tolen::OpenKL

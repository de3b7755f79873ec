#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

/// What a context has done since it was made or since its last ResetStatistics.
struct Statistics {
    // Shading.
    std::int64_t shadersCompiled = 0;
    std::int64_t programsLinked = 0;
    std::int64_t frameInvocations = 0;  ///< one for each sample of each pixel
    std::int64_t prefixInvocations = 0; ///< one for each ray that met a prefix program
    std::int64_t rayInvocations = 0;    ///< on hits and on miss primitives
    std::int64_t vertexInvocations = 0;
    std::int64_t setupInvocations = 0;

    // Rays.
    std::int64_t cameraRays = 0;    ///< spawned by frame programs
    std::int64_t secondaryRays = 0; ///< spawned by prefix and ray programs
    std::int64_t occlusionRays = 0; ///< asked by occluded()
    std::int64_t distanceRays = 0;  ///< asked by traceDistance()
    std::int64_t hits = 0;          ///< spawned rays that reached a primitive
    std::int64_t misses = 0;        ///< spawned rays that reached none

    // What was stopped or replaced.
    std::int64_t raysDroppedByDepth = 0;
    std::int64_t raysDroppedByCount = 0;   ///< more than kl_OutputRayCount for one invocation
    std::int64_t raysDroppedByMemory = 0;  ///< more than Limits::raysInFlight
    std::int64_t raysDroppedAsInvalid = 0; ///< direction or origin that is no number, or no length
    std::int64_t accumulatesDropped = 0;   ///< more than 4,194,304 in one batch of 256
    std::int64_t loopsStopped = 0;         ///< invocations that used up Limits::loopSteps
    std::int64_t valuesReplaced = 0;       ///< accumulated components that were NaN or infinite

    // Time, in seconds.
    double sceneSeconds = 0.0;  ///< vertex programs and ray acceleration structures
    double renderSeconds = 0.0; ///< tiles, from first to last
};

} // namespace Tolen::OpenKL

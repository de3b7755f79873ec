#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

/// What a context has done since it was made or since its last ResetStatistics.
///
/// Counting costs next to nothing, and changes no picture: threads count for themselves, and what
/// happens to single rays is counted by the batch.
struct Statistics {
    /// Invocations that run together at most: those of one program on one primitive.
    static constexpr int kLanesOfBatch = 256;

    // Programs.
    std::int64_t shadersCompiled = 0; ///< those that failed included
    std::int64_t programsLinked = 0;  ///< those that failed included
    std::int64_t uniformWrites = 0;   ///< that were taken; an array or a block counts once

    // Shading.
    std::int64_t frameInvocations = 0;  ///< one for each sample of each pixel
    std::int64_t prefixInvocations = 0; ///< one for each ray that met a prefix program
    std::int64_t rayInvocations = 0;    ///< on hits and on miss primitives
    std::int64_t vertexInvocations = 0; ///< one for each vertex of a primitive that has changed
    std::int64_t setupInvocations = 0;  ///< of `setup`, once for values that have changed

    // Batches. All of them together have kLanesOfBatch lanes each, of which invocations fill some.
    std::int64_t frameBatches = 0;  ///< of frame programs
    std::int64_t prefixBatches = 0; ///< of prefix programs
    std::int64_t rayBatches = 0;    ///< of ray programs
    std::int64_t vertexBatches = 0; ///< of vertex programs

    // Rays.
    std::int64_t cameraRays = 0;    ///< spawned by frame programs
    std::int64_t secondaryRays = 0; ///< spawned by prefix and ray programs
    std::int64_t occlusionRays = 0; ///< asked by occluded()
    std::int64_t distanceRays = 0;  ///< asked by traceDistance()
    std::int64_t hits = 0;          ///< spawned rays that reached a primitive
    std::int64_t misses = 0;        ///< spawned rays that reached none

    // What was stopped or replaced.
    std::int64_t raysDroppedByDepth = 0;   ///< deeper than Limits::depth
    std::int64_t raysDroppedByCount = 0;   ///< more than kl_OutputRayCount for one invocation
    std::int64_t raysDroppedByMemory = 0;  ///< more than Limits::raysInFlight
    std::int64_t raysDroppedAsInvalid = 0; ///< direction or origin that is no number, or no length
    std::int64_t accumulatesDropped = 0;   ///< more than 4,194,304 in one batch of 256
    std::int64_t loopsStopped = 0;         ///< invocations that used up Limits::loopSteps
    std::int64_t valuesReplaced = 0;       ///< accumulated components that were NaN or infinite

    // Time, in seconds.
    double compileSeconds = 0.0; ///< shaders
    double linkSeconds = 0.0;    ///< programs, with the code that is made for them
    double sceneSeconds = 0.0;   ///< vertex programs and ray acceleration structures
    double renderSeconds = 0.0;  ///< tiles, from first to last

    // Time within renderSeconds, in seconds of all threads together. The rest goes into what leads
    // from one to the other: sorting rays, filling batches, adding to framebuffers.
    double intersectSeconds = 0.0; ///< finding what rays meet, those of all four kinds
    double shadeSeconds = 0.0;     ///< running frame, prefix and ray programs
};

/// The part of all lanes of batches that had an invocation, 0 to 1; 0 without any batch.
inline double GetBatchFill(std::int64_t invocations, std::int64_t batches) {
    return batches == 0 ? 0.0
                        : static_cast<double>(invocations) /
                              (static_cast<double>(batches) * Statistics::kLanesOfBatch);
}

} // namespace Tolen::OpenKL

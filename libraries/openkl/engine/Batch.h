#pragma once

#include "engine/TextureView.h"

#include <cstddef>
#include <cstdint>

namespace Tolen::OpenKL {

/// The most invocations of one batch.
inline constexpr int kMaxLanes = 256;

/// The most values, and the most rays, that one batch gives; what comes after is counted alone.
inline constexpr std::size_t kMaxBatchRecords = std::size_t{1} << 22;

/// The values that differ between the invocations of a batch, one row of 32-bit words for each.
/// Booleans are 0 or 1.
enum LaneInput {
    kLaneInput_PixelCoordX, ///< float
    kLaneInput_PixelCoordY,
    kLaneInput_SampleIndex, ///< int; also the position in the random sequences
    kLaneInput_RandomSeed,  ///< HashSeed of the pixel, or SpawnedRay::randomSeed
    kLaneInput_RayOriginX,  ///< float
    kLaneInput_RayOriginY,
    kLaneInput_RayOriginZ,
    kLaneInput_RayDirectionX, ///< float; the direction is of unit length
    kLaneInput_RayDirectionY,
    kLaneInput_RayDirectionZ,
    kLaneInput_RayDepth,     ///< int
    kLaneInput_RayClass,     ///< int, 0 to 7
    kLaneInput_HitDistance,  ///< float
    kLaneInput_HitPositionX, ///< float
    kLaneInput_HitPositionY,
    kLaneInput_HitPositionZ,
    kLaneInput_HitNormalX, ///< float
    kLaneInput_HitNormalY,
    kLaneInput_HitNormalZ,
    kLaneInput_HitFront,        ///< bool
    kLaneInput_HitBarycentricX, ///< float
    kLaneInput_HitBarycentricY,
    kLaneInput_HitPrimitive,     ///< primitive handle
    kLaneInput_Missed,           ///< bool
    kLaneInput_TextureFootprint, ///< float; width of the ray in texture coordinates, picks levels
    kLaneInput_Count
};

/// What is the same for all invocations of a frame or of a primitive.
struct BatchConstants {
    float resolution[2] = {0.0f, 0.0f}; ///< kl_Resolution
    std::int32_t sampleCount = 1;       ///< kl_SampleCount
    float time = 0.0f;                  ///< kl_Time
    /// kl_PrimitiveTransformMatrix, columns first.
    float transform[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
    /// kl_PrimitiveTransformMatrixInverseTranspose, columns first.
    float transformInverseTranspose[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

/// The bytes behind a uniform block.
struct BlockView {
    const void* pData = nullptr; ///< borrowed; null reads as 0
    std::size_t bytes = 0;
};

/// The values of a primitive that a kernel reads. All pointers are borrowed.
struct PrimitiveBinding {
    /// Uniform values at the words that KernelLayout::uniforms tells: floats and integers as they
    /// are, booleans as 0 or 1, matrices columns first, arrays element behind element without
    /// gaps, primitives as their handle, samplers as 1 + the index in pTextures (0: no texture).
    const void* pUniforms = nullptr;
    const BlockView* pBlocks = nullptr; ///< as many as KernelLayout::blocks; null: all empty
    const TextureView* pTextures = nullptr;
    std::int32_t textureCount = 0;
    /// KernelLayout::stateWords words that RunSetup wrote; null where there was no setup yet.
    const void* pState = nullptr;
};

/// Rays of the lanes of a batch that shading code asks about at once.
struct RayQuery {
    int firstLane; ///< lane of the batch that the first of these is
    int laneCount;
    const std::uint32_t* pMask; ///< lanes with 0 ask nothing
    const float* pOrigin[3];
    const float* pDirection[3]; ///< as the code gave them: any length, also 0 or not finite
    const float* pMaxDistance;
};

/// Who answers ray queries. Called on the thread that runs the kernel; must not run kernels with
/// the same KernelScratch.
class IRayQueries {
public:
    virtual ~IRayQueries() = default;

    /// Writes 1 for each asking lane whose ray meets anything, otherwise 0.
    virtual void FindOcclusion(const RayQuery& query, std::uint32_t* pOccluded) = 0;
    /// Writes the distance of the nearest hit of each asking lane, or -1.
    virtual void FindDistance(const RayQuery& query, float* pDistance) = 0;
};

/// Invocations to run together: one program, one primitive. Every row that is given has laneCount
/// words; a null row reads as 0.
struct BatchInput {
    int laneCount = 0;                            ///< 1 to kMaxLanes
    const BatchConstants* pConstants = nullptr;   ///< borrowed, not null
    const PrimitiveBinding* pPrimitive = nullptr; ///< borrowed, not null
    const void* pLanes[kLaneInput_Count] = {};
    /// One row for each word of KernelLayout::varyings (ray) or KernelLayout::attributes (vertex).
    const void* const* pInterpolated = nullptr;
    /// One row for each word of KernelLayout::rayAttributes: the values that each ray carries.
    const void* const* pRayAttributes = nullptr;
    IRayQueries* pRayQueries = nullptr; ///< borrowed; null meets nothing
};

/// A value that an invocation adds to an attachment.
struct AccumulateRecord {
    std::uint16_t lane;
    std::uint8_t attachment; ///< 0 to 15; others are dropped
    std::uint8_t components; ///< 1, 3 or 4
    float value[4];
};

/// A ray that an invocation spawned.
struct SpawnedRay {
    float origin[3];
    float direction[3];         ///< as the code gave it: any length, also 0 or not finite
    float maxDistance;          ///< infinity when not given
    std::int32_t rayClass;      ///< as the code gave it, 0 when not given
    std::int32_t missPrimitive; ///< handle; KL_NO_PRIMITIVE when not given
    std::uint32_t lane;
    std::uint32_t randomSeed; ///< for kLaneInput_RandomSeed of the ray's own invocation
    std::uint32_t attributes; ///< first word of its values in BatchOutput::GetRayAttributes
};

} // namespace Tolen::OpenKL

#pragma once

#include <cstddef>
#include <cstdint>

namespace Tolen::OpenKL {

/// What a context refuses to go beyond. Reaching a limit while rendering stops that ray or call,
/// is counted in the statistics and reported once for each program, primitive and source line.
struct Limits {
    /// Rays of this depth spawn no further ones; rays that a frame program spawns have depth 0.
    /// 0 to 65,536.
    int depth = 64;
    /// Loop steps of one invocation, over all of its loops; above 0.
    std::int64_t loopSteps = 10'000'000;
    /// Rays of one tile that wait at a time; 64 to 16,777,216. A batch of 256 invocations spawns at
    /// most 4,194,304.
    std::int64_t raysInFlight = 4'194'304;
    /// Texels or pixels along one side of an image or framebuffer; above 0.
    int imageSide = 65'536;
    /// Texels or pixels of one image or framebuffer; above 0.
    std::int64_t imagePixels = std::int64_t{256} << 20;
    /// Bytes of all texture images that the context holds a copy of, mip levels included; borrowed
    /// ones count with their levels alone.
    std::int64_t textureBytes = std::int64_t{8} << 30;
};

/// The machine instructions that programs run on. All of them give the same bits.
enum InstructionChoice {
    kInstructions_Best,     ///< the widest that this machine has
    kInstructions_Baseline, ///< what every x86-64 has
    kInstructions_Avx2,     ///< AVX2
    kInstructions_Avx512,   ///< AVX-512 F, BW, DQ and VL
};

/// How a context is made; fixed for its life.
struct ContextOptions {
    /// Threads that render, the calling one included; 0 stands for one on each core, and
    /// 1,024 are the most.
    int threads = 0;
    /// Rays carry differentials, and textures are filtered through mip levels by them.
    bool differentials = false;
    /// Samples are spread by a reconstruction filter of radius 1.5 pixels instead of a box over
    /// their own pixel.
    bool filteredAccumulates = false;
    /// A choice that this machine doesn't have makes the creation of the context fail.
    InstructionChoice instructions = kInstructions_Best;
    /// What the context refuses to go beyond.
    Limits limits;
};

} // namespace Tolen::OpenKL

#pragma once

#include <array>
#include <cstdint>

namespace Tolen::OpenKL {

/// Where the samples of a pixel lie: a scrambled low-discrepancy sequence of its own for each
/// pixel, spread over the pixel or by a reconstruction filter around it.
///
/// Owen scrambling by hashing after Laine and Karras, "Stratified Sampling for Stochastic
/// Transparency" (2011), as refined by Burley, "Practical Hash-based Owen Scrambling" (2020).
class PixelSampler {
public:
    /// @param isFiltered false: a box over the pixel; true: a Blackman-Harris filter of radius 1.5,
    ///                   drawn from so that every sample has the weight 1
    explicit PixelSampler(bool isFiltered);

    /// The position of a sample in pixels, the origin at the lower left of the picture.
    /// @param seed a number of the pixel's own
    std::array<float, 2> GetPosition(int x, int y, std::uint32_t seed, int sample) const;

private:
    float _Warp(float uniform) const;

    static constexpr int kSteps = 1024;
    bool _isFiltered;
    std::array<float, kSteps + 1> _offsets{}; ///< by the share of the filter that lies below
};

} // namespace Tolen::OpenKL

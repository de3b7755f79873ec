#include "render/PixelSampler.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace Tolen::OpenKL {

namespace {

constexpr double kRadius = 1.5;

std::uint32_t ReverseBits(std::uint32_t value) {
    value = (value >> 16) | (value << 16);
    value = ((value & 0xff00ff00u) >> 8) | ((value & 0x00ff00ffu) << 8);
    value = ((value & 0xf0f0f0f0u) >> 4) | ((value & 0x0f0f0f0fu) << 4);
    value = ((value & 0xccccccccu) >> 2) | ((value & 0x33333333u) << 2);
    return ((value & 0xaaaaaaaau) >> 1) | ((value & 0x55555555u) << 1);
}

std::uint32_t Hash(std::uint32_t value) {
    value ^= value >> 16;
    value *= 0x21f0aaadu;
    value ^= value >> 15;
    value *= 0xd35a2d97u;
    return value ^ (value >> 15);
}

/// Permutes a fraction, given with its bits in reverse, so that each bit depends on those above it
/// in the fraction alone.
std::uint32_t Scramble(std::uint32_t reversed, std::uint32_t seed) {
    reversed ^= reversed * 0x3d20adeau;
    reversed += seed;
    reversed *= (seed >> 16) | 1u;
    reversed ^= reversed * 0x05526c56u;
    reversed ^= reversed * 0x53a22864u;
    return ReverseBits(reversed);
}

/// The second dimension of the Sobol sequence with its bits in reverse; the first is the index
/// itself. The product with Pascal's triangle modulo 2.
std::uint32_t SobolReversed(std::uint32_t index) {
    index ^= index >> 16;
    index ^= (index & 0xff00ff00u) >> 8;
    index ^= (index & 0xf0f0f0f0u) >> 4;
    index ^= (index & 0xccccccccu) >> 2;
    return index ^ ((index & 0xaaaaaaaau) >> 1);
}

/// To 0 and below 1.
float ToUnit(std::uint32_t value) {
    return static_cast<float>(value >> 8) * 0x1p-24f;
}

double BlackmanHarris(double x) {
    const double phase = std::numbers::pi * (x / kRadius + 1.0);
    return 0.35875 - 0.48829 * std::cos(phase) + 0.14128 * std::cos(2.0 * phase) -
           0.01168 * std::cos(3.0 * phase);
}

} // namespace

PixelSampler::PixelSampler(bool isFiltered) : _isFiltered(isFiltered) {
    if (!isFiltered) {
        return;
    }
    // Inverts the running integral of the filter.
    constexpr std::size_t fine = 16384;
    const auto position = [](double index) { return kRadius * (2.0 * index / fine - 1.0); };
    std::vector<double> below(fine + 1);
    for (std::size_t i = 0; i < fine; ++i) {
        below[i + 1] = below[i] + BlackmanHarris(position(static_cast<double>(i) + 0.5));
    }
    std::size_t at = 0;
    for (std::size_t step = 0; step <= kSteps; ++step) {
        const double wanted = below.back() * static_cast<double>(step) / kSteps;
        while (at < fine && below[at] < wanted) {
            ++at;
        }
        _offsets[step] = static_cast<float>(position(static_cast<double>(at)));
    }
}

float PixelSampler::_Warp(float uniform) const {
    const float scaled = uniform * kSteps;
    const auto step = static_cast<std::size_t>(scaled);
    const float low = _offsets[step];
    const float high = _offsets[step + 1];
    return 0.5f + low + (high - low) * (scaled - static_cast<float>(step));
}

std::array<float, 2> PixelSampler::GetPosition(int x, int y, std::uint32_t seed, int sample) const {
    // The order of the samples is scrambled too, so that no two pixels go the same way.
    const std::uint32_t index =
        Scramble(ReverseBits(static_cast<std::uint32_t>(sample)), Hash(seed));
    float u = ToUnit(Scramble(index, Hash(seed ^ 0x9e3779b9u)));
    float v = ToUnit(Scramble(SobolReversed(index), Hash(seed ^ 0x85ebca6bu)));
    if (_isFiltered) {
        u = _Warp(u);
        v = _Warp(v);
    }
    return {static_cast<float>(x) + u, static_cast<float>(y) + v};
}

} // namespace Tolen::OpenKL

#pragma once

#include <bit>
#include <cmath>
#include <cstdint>

namespace Tolen::OpenKL {

/// A sum of floats in fixed point, so that additions commute and associate exactly.
///
/// Values are rounded to steps of 2^-56 and held to magnitudes of 2^44; the sum itself holds at
/// 2^70.
class ExactSum {
public:
    /// Adds a value that is a number.
    void Add(float value) { _AddSteps(_ToSteps(value)); }
    void Add(const ExactSum& other) { _AddSteps(other._steps); }

    /// The sum divided by @p count, above 0.
    float GetMean(std::int64_t count) const {
        return static_cast<float>(std::ldexp(static_cast<double>(_steps), -kFractionBits) /
                                  static_cast<double>(count));
    }

    bool operator==(const ExactSum&) const = default;

private:
    __extension__ typedef __int128 Steps;
    static constexpr int kFractionBits = 56;
    static constexpr int kMagnitudeBits = 44;
    static constexpr Steps kBound = (Steps{1} << 126) - 1;

    static Steps _ToSteps(float value) {
        constexpr float most = static_cast<float>(std::int64_t{1} << kMagnitudeBits);
        value = value > most ? most : value < -most ? -most : value;
        const auto bits = std::bit_cast<std::uint32_t>(value);
        // value = fraction * 2^(exponent - 150); denormals are far below half a step.
        const auto exponent = static_cast<int>(bits >> 23 & 0xff);
        const int shift = exponent - 150 + kFractionBits;
        const std::uint32_t fraction = (bits & 0x7fffff) | 0x800000;
        Steps steps = 0;
        if (shift >= 0) {
            steps = Steps{fraction} << shift;
        } else if (shift >= -24) {
            steps = (fraction + (1u << (-shift - 1))) >> -shift;
        }
        return (bits >> 31) != 0 ? -steps : steps;
    }

    void _AddSteps(Steps steps) {
        // Both are below 2^126, so that their sum fits before it is held at the bound.
        const Steps sum = _steps + steps;
        _steps = sum > kBound ? kBound : sum < -kBound ? -kBound : sum;
    }

    Steps _steps = 0;
};

} // namespace Tolen::OpenKL

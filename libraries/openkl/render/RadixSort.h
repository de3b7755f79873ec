#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Tolen::OpenKL {

/// Sorts @p values by a key below @p keyCount, equal keys staying in their order.
/// @param scratch any content; keeps its memory for the next time
/// @param getKey  the key of a value
template <class GetKey>
void RadixSort(std::vector<std::uint32_t>& values, std::vector<std::uint32_t>& scratch,
               std::uint32_t keyCount, GetKey&& getKey) {
    constexpr int digitBits = 11;
    constexpr std::uint32_t digits = 1u << digitBits;
    scratch.resize(values.size());
    for (int shift = 0; shift < 32 && (keyCount - 1) >> shift != 0; shift += digitBits) {
        std::array<std::uint32_t, digits + 1> starts{};
        for (const std::uint32_t value : values) {
            ++starts[(getKey(value) >> shift & (digits - 1)) + 1];
        }
        for (std::size_t digit = 0; digit < digits; ++digit) {
            starts[digit + 1] += starts[digit];
        }
        for (const std::uint32_t value : values) {
            scratch[starts[getKey(value) >> shift & (digits - 1)]++] = value;
        }
        values.swap(scratch);
    }
}

} // namespace Tolen::OpenKL

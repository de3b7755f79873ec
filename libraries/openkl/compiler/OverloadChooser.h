#pragma once

#include "compiler/Symbols.h"

#include <bitset>
#include <cstddef>
#include <span>
#include <vector>

namespace Tolen::OpenKL {

struct Expression;

/// What a call has to know of a parameter.
struct ParameterShape {
    Type type;
    Direction direction = kDirection_In;
};

/// Whether a value of type @p from becomes one of @p to by itself: the same type, or ints of the
/// same shape where floats are wanted.
bool IsConvertible(const Type& from, const Type& to);

/// Finds the function that a call means among those of one name: the one that needs no conversion
/// of an argument which another one spares.
class OverloadChooser {
public:
    static constexpr std::size_t kMaxParameters = 128;
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    /// @param arguments at most kMaxParameters
    explicit OverloadChooser(std::span<const Expression* const> arguments)
        : _arguments(arguments) {}

    /// Offers a function under a number of the caller's choice.
    void Offer(std::size_t candidate, std::span<const ParameterShape> parameters);

    /// @return kNone when no function fits, or when several fit equally well
    std::size_t GetBest() const;
    bool IsAmbiguous() const { return !_fits.empty() && GetBest() == kNone; }

private:
    struct Fit {
        std::size_t candidate;
        std::bitset<kMaxParameters> conversions;
    };

    std::span<const Expression* const> _arguments;
    std::vector<Fit> _fits;
};

} // namespace Tolen::OpenKL

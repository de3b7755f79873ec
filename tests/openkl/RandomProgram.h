#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL::Testing {

/// What an invocation of a random program starts from.
struct RandomProgramInput {
    float distance;     ///< kl_HitDistance
    std::int32_t depth; ///< kl_RayDepth
};

/// A program made by chance, with every kind of statement, calls with inout and out parameters,
/// arrays under computed subscripts and conditions with side effects. It is both a text and a tree
/// that can be run step by step, which tells what the text must do.
class RandomProgram {
public:
    explicit RandomProgram(std::uint32_t seed);
    ~RandomProgram();

    /// The text, a ray shader that accumulates floats to attachment 0.
    std::string GetText() const;

    /// What one invocation accumulates, in order.
    std::vector<float> Run(const RandomProgramInput& input) const;

private:
    struct Parts;
    std::unique_ptr<Parts> _pParts;
};

} // namespace Tolen::OpenKL::Testing

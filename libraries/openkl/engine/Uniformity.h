#pragma once

#include "engine/Ir.h"

#include <vector>

namespace Tolen::OpenKL {

/// What is the same for all lanes of a batch, and where lanes part.
///
/// A scope is a stretch of code that runs under a mask of its own: a branch of an If whose
/// condition varies, a loop that lanes leave at different times, the body of a loop that lanes cut
/// short at different times, or a block that lanes leave at different times. Scope 0 is all code.
struct Uniformity {
    std::vector<bool> varyingValues;
    std::vector<bool> varyingVariables;
    std::vector<bool> varyingArrays;
    std::vector<bool> divergentLoops;     ///< lanes leave at different times
    std::vector<bool> divergentContinues; ///< lanes end the body at different times
    std::vector<bool> divergentBlocks;
    std::vector<std::uint32_t> regionScopes;
    std::vector<std::uint32_t> scopeParents;
    std::vector<std::uint32_t> scopeDepths; ///< scopes around each
    /// The scope outside of which nobody looks at a variable.
    std::vector<std::uint32_t> variableScopes;
    std::vector<std::uint32_t> arrayScopes;

    std::uint32_t GetRegionScope(RegionId region) const { return regionScopes[region]; }
    /// Whether code in scope @p inner runs for lanes of which those in @p outer are a part or all.
    bool IsWithin(std::uint32_t outer, std::uint32_t inner) const;
};

Uniformity AnalyzeUniformity(const IrUnit& unit);

} // namespace Tolen::OpenKL

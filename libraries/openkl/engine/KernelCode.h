#pragma once

#include "engine/Assembler.h"
#include "engine/Kernel.h"

#include <new>

namespace Tolen::OpenKL {

/// Frees words that AllocateRows gave.
struct RowsDelete {
    void operator()(std::uint32_t* pWords) const;
};
using RowMemory = std::unique_ptr<std::uint32_t[], RowsDelete>;

/// Everything behind a Kernel.
class KernelCode {
public:
    KernelLayout layout;
    KernelOptions options;
    KernelUnit setup;
    KernelUnit main;
    bool isFrame = false;
    bool isVertex = false;
    bool isPrefix = false;
    std::vector<std::uint32_t> zeros; ///< what primitives without uniforms or state read
};

struct ScratchMemory {
    InstructionSet instructionSet = InstructionSet::Baseline;
    RowMemory rows;
    std::size_t rowWords = 0;
    std::vector<std::uint32_t> scalars;
    std::vector<std::uint64_t> laneSteps;
    std::uint32_t laneRays[kMaxLanes];

    void Reserve(const KernelUnit& unit);
};

} // namespace Tolen::OpenKL

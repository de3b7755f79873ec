#pragma once

#include "engine/Linear.h"

namespace Tolen::OpenKL {

/// Code that executors run, for one entry of a kernel.
struct KernelUnit {
    std::vector<Instruction> code;
    std::vector<std::uint32_t> constants; ///< the first scalars
    std::uint32_t scalarCount = 0;
    std::uint32_t rowCount = 0;
    std::uint32_t strideWords = 0; ///< lanes of a row
    std::vector<ServiceCall> calls;
    std::vector<CallOperand> callOperands; ///< operands, then results, of each call
    std::vector<std::uint32_t> extra;
    std::vector<std::int32_t> stepTexts;
    std::vector<std::int32_t> stepLines;
};

/// Gives registers their places and turns linear code into instructions.
KernelUnit Assemble(LinearUnit unit);

} // namespace Tolen::OpenKL

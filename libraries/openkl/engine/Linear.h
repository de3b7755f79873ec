#pragma once

#include "engine/Ir.h"
#include "engine/executor/Instruction.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

/// The linear form: registers of two classes, labels and explicit masks. This is where every
/// executor starts.
enum class LinearCode : std::uint16_t {
#define TOLEN_OPENKL_ENUMERATOR(name, forms) name,
    TOLEN_OPENKL_INSTRUCTIONS(TOLEN_OPENKL_ENUMERATOR)
#undef TOLEN_OPENKL_ENUMERATOR
        Operate, ///< an Operation
    Label,
};

/// A register before or after allocation; the top bit tells scalars from rows.
using Register = std::uint32_t;
inline constexpr Register kScalarBit = 0x80000000u;
inline constexpr Register kNoRegister = 0xffffffffu;
inline bool IsScalar(Register r) {
    return (r & kScalarBit) != 0;
}
inline std::uint32_t GetIndex(Register r) {
    return r & ~kScalarBit;
}

struct LinearOp {
    LinearCode code = LinearCode::End;
    Operation operation = Operation::Move;
    Register dst = kNoRegister;
    Register a = kNoRegister;
    Register b = kNoRegister;
    Register c = kNoRegister;
    std::int32_t imm = 0;    ///< as in Instruction; labels before they are placed
    std::uint32_t extra = 0; ///< of LoadTable the word, of LoadBlock its place in `extra`, of
                             ///< array instructions the array
};

/// What a register is for; temporaries are written once.
struct RegisterInfo {
    std::uint32_t loop; ///< the innermost loop around all code that may use it
    bool isTemporary;
};

struct LinearCall {
    Service service;
    std::vector<Register> operands;
    std::vector<Register> results;
    Register mask;
};

/// An array that has rows or scalars of its own throughout.
struct LinearArray {
    std::uint32_t count;
    bool isScalar;
    std::uint32_t first = 0; ///< row or scalar, once allocated
};

struct LinearUnit {
    std::vector<LinearOp> ops;
    std::vector<RegisterInfo> rows;
    std::vector<RegisterInfo> scalars;
    std::vector<std::uint32_t> constants; ///< words that scalars have from the start on
    std::vector<Register> constantRegisters;
    std::vector<LinearCall> calls;
    std::vector<LinearArray> arrays;
    std::vector<std::uint32_t> extra;
    std::vector<std::uint32_t> loopOuter;  ///< for each loop the one around it
    std::vector<std::uint32_t> loopStarts; ///< for each loop its ops
    std::vector<std::uint32_t> loopEnds;
    std::vector<std::int32_t> stepTexts; ///< for each LoopStep, by its extra
    std::vector<std::int32_t> stepLines;
    std::uint32_t labelCount = 0;
};

/// The row that starts out as the mask of all lanes of a batch.
inline constexpr Register kLanesRow = 0;

} // namespace Tolen::OpenKL

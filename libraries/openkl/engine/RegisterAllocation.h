#pragma once

#include "engine/Linear.h"

namespace Tolen::OpenKL {

/// Calls @p visit(Register&, bool isWritten) for every register that an op touches; one that is
/// read and written comes twice, read first.
template <class Unit, class Op, class Visit>
void ForEachRegister(Unit& unit, Op& op, Visit&& visit) {
    for (auto* r : {&op.a, &op.b, &op.c}) {
        if (*r != kNoRegister) {
            visit(*r, false);
        }
    }
    if (op.code == LinearCode::Call) {
        auto& call = unit.calls[static_cast<std::size_t>(op.imm)];
        for (auto& operand : call.operands) {
            visit(operand, false);
        }
        visit(call.mask, false);
        for (auto& result : call.results) {
            if (result != kNoRegister) {
                visit(result, true);
            }
        }
    }
    if (op.dst != kNoRegister) {
        if (op.code == LinearCode::MaskedMove) {
            visit(op.dst, false);
        }
        visit(op.dst, true);
    }
}

/// Where a register must keep its word: from the read or write at `start` to that at `end`. Op i
/// reads at 2 * i and writes at 2 * i + 1.
struct Lifetime {
    std::uint32_t start = 0xffffffffu;
    std::uint32_t end = 0;

    bool IsEmpty() const { return start > end; }
};

struct Lifetimes {
    std::vector<Lifetime> rows;
    std::vector<Lifetime> scalars;
};

/// A register that outlives a round of a loop lives throughout that loop.
Lifetimes FindLifetimes(const LinearUnit& unit);

/// How many places of each class the registers of a unit need.
struct RegisterCounts {
    std::uint32_t rows;
    std::uint32_t scalars;
};

/// Replaces the registers of @p unit by places, as few as a linear scan finds (M. Poletto and
/// V. Sarkar, 1999). Constants take the first scalars, in their order, and arrays the last places.
RegisterCounts AllocateRegisters(LinearUnit& unit);

} // namespace Tolen::OpenKL

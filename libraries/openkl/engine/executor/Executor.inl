// The executor: runs linear code on rows of lanes. One source for all instruction sets; the unit
// that includes it defines TOLEN_EXECUTOR_NAME and TOLEN_EXECUTOR_BYTES, the width of its vectors.
//
// Such units are compiled with flags that other code does not have. They must not instantiate or
// inline anything that other units also could, because the linker keeps one copy for all: hence no
// standard containers, everything in an unnamed namespace, and C casts between vectors.

#include "engine/executor/Instruction.h"

#include <immintrin.h>

namespace Tolen::OpenKL {

namespace {

#include "engine/executor/Lanes.inl"

#include "engine/executor/VectorMath.inl"

#include "engine/executor/Operations.inl"

using Wide = Lanes<TOLEN_EXECUTOR_BYTES>;
using Narrow = Lanes<16>;
using Row = Wide::I;

Row LoadRow(const unsigned char* pBytes) {
    Row row;
    __builtin_memcpy(&row, __builtin_assume_aligned(pBytes, sizeof(Row)), sizeof row);
    return row;
}

void StoreRow(unsigned char* pBytes, Row row) {
    __builtin_memcpy(__builtin_assume_aligned(pBytes, sizeof(Row)), &row, sizeof row);
}

std::uint32_t* WordsOf(const ExecutionState& state, std::uint32_t offset) {
    return (std::uint32_t*)(void*)(state.pRows + offset);
}

std::uint32_t RowLanes(const ExecutionState& state) { return state.rowBytes / 4u; }

/// An operand of an operation: a row, read piece by piece, or a scalar, held in a vector.
template <bool IsScalar>
struct Operand {
    const unsigned char* pRow;
    Operand(const ExecutionState& state, std::uint32_t offset) : pRow(state.pRows + offset) {}
    Row Load(std::uint32_t byte) const { return LoadRow(pRow + byte); }
};

template <>
struct Operand<true> {
    Row value;
    Operand(const ExecutionState& state, std::uint32_t index)
        : value(Wide::Splat((std::int32_t)state.pScalars[index])) {}
    Row Load(std::uint32_t) const { return value; }
};

Narrow::I NarrowScalar(const ExecutionState& state, std::uint32_t index) {
    return Narrow::Splat((std::int32_t)state.pScalars[index]);
}

std::uint32_t FirstWord(Narrow::I value) { return (std::uint32_t)value[0]; }

// Operations. F tells by bits which operands are scalars.

template <class Function, unsigned F>
const Instruction* Unary(ExecutionState& state, const Instruction* ip) {
    if constexpr (F == 1) {
        state.pScalars[ip->dst] = FirstWord(Function::template Do<Narrow>(
            NarrowScalar(state, ip->a)));
    } else {
        Operand<false> a(state, ip->a);
        unsigned char* pResult = state.pRows + ip->dst;
        for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
            StoreRow(pResult + byte, Function::template Do<Wide>(a.Load(byte)));
        }
    }
    return ip + 1;
}

template <class Function, unsigned F>
const Instruction* Binary(ExecutionState& state, const Instruction* ip) {
    if constexpr (F == 3) {
        state.pScalars[ip->dst] = FirstWord(Function::template Do<Narrow>(
            NarrowScalar(state, ip->a), NarrowScalar(state, ip->b)));
    } else {
        Operand<(F & 1) != 0> a(state, ip->a);
        Operand<(F & 2) != 0> b(state, ip->b);
        unsigned char* pResult = state.pRows + ip->dst;
        for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
            StoreRow(pResult + byte, Function::template Do<Wide>(a.Load(byte), b.Load(byte)));
        }
    }
    return ip + 1;
}

template <class Function, unsigned F>
const Instruction* Ternary(ExecutionState& state, const Instruction* ip) {
    if constexpr (F == 7) {
        state.pScalars[ip->dst] = FirstWord(Function::template Do<Narrow>(
            NarrowScalar(state, ip->a), NarrowScalar(state, ip->b), NarrowScalar(state, ip->c)));
    } else {
        Operand<(F & 1) != 0> a(state, ip->a);
        Operand<(F & 2) != 0> b(state, ip->b);
        Operand<(F & 4) != 0> c(state, ip->c);
        unsigned char* pResult = state.pRows + ip->dst;
        for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
            StoreRow(pResult + byte,
                     Function::template Do<Wide>(a.Load(byte), b.Load(byte), c.Load(byte)));
        }
    }
    return ip + 1;
}

#define TOLEN_FUNCTION(name, arity, commutes)                                                      \
    struct Function##name {                                                                        \
        template <class L, class... V>                                                             \
        static typename L::I Do(V... values) {                                                     \
            return Words<L>::name(values...);                                                      \
        }                                                                                          \
    };
TOLEN_OPENKL_OPERATIONS(TOLEN_FUNCTION)
#undef TOLEN_FUNCTION

// Loads.

template <unsigned F>
const Instruction* LoadTable(ExecutionState& state, const Instruction* ip) {
    const std::uint32_t* pTable = state.pTables[ip->imm] + ip->a;
    if constexpr (F == 1) {
        state.pScalars[ip->dst] = pTable[state.pScalars[ip->b]];
    } else {
        const std::uint32_t* pIndices = WordsOf(state, ip->b);
        std::uint32_t* pResult = WordsOf(state, ip->dst);
        for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
            pResult[lane] = pTable[pIndices[lane]];
        }
    }
    return ip + 1;
}

/// A word of a block; 0 for one that is not wholly inside the buffer.
std::uint32_t ReadBlock(const BlockView* pBlock, std::int32_t index, const std::uint32_t* pExtra) {
    std::uint32_t word = 0;
    if (pBlock != nullptr && pBlock->pData != nullptr && index >= 0) {
        std::uint64_t element = (std::uint64_t)index * pExtra[0];
        if ((element + pExtra[0]) * 4u <= pBlock->bytes) {
            __builtin_memcpy(&word, (const unsigned char*)pBlock->pData +
                                        (element + pExtra[1]) * 4u, 4);
        }
    }
    return word;
}

template <unsigned F>
const Instruction* LoadBlock(ExecutionState& state, const Instruction* ip) {
    const BlockView* pBlocks = state.pInput->pPrimitive->pBlocks;
    const BlockView* pBlock = pBlocks == nullptr ? nullptr : pBlocks + ip->imm;
    const std::uint32_t* pExtra = state.pExtra + ip->a;
    if constexpr (F == 1) {
        state.pScalars[ip->dst] = ReadBlock(pBlock, (std::int32_t)state.pScalars[ip->b], pExtra);
    } else {
        const std::uint32_t* pIndices = WordsOf(state, ip->b);
        std::uint32_t* pResult = WordsOf(state, ip->dst);
        for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
            pResult[lane] = ReadBlock(pBlock, (std::int32_t)pIndices[lane], pExtra);
        }
    }
    return ip + 1;
}

const Instruction* LoadConstant(ExecutionState& state, const Instruction* ip) {
    const unsigned char* pConstants = (const unsigned char*)state.pInput->pConstants;
    __builtin_memcpy(&state.pScalars[ip->dst], pConstants + ip->imm * 4, 4);
    return ip + 1;
}

/// Copies the lanes of an input row; a missing row reads as 0.
void CopyInput(ExecutionState& state, std::uint32_t dst, const void* pInputRow) {
    unsigned char* pResult = state.pRows + dst;
    std::uint32_t bytes = (std::uint32_t)state.laneCount * 4u;
    if (pInputRow == nullptr) {
        __builtin_memset(pResult, 0, state.rowBytes);
        return;
    }
    __builtin_memcpy(pResult, (const unsigned char*)pInputRow + state.firstLane * 4, bytes);
    __builtin_memset(pResult + bytes, 0, state.rowBytes - bytes);
}

const Instruction* LoadLane(ExecutionState& state, const Instruction* ip) {
    CopyInput(state, ip->dst, state.pInput->pLanes[ip->imm]);
    return ip + 1;
}

const Instruction* LoadInterpolated(ExecutionState& state, const Instruction* ip) {
    const void* const* pRows = state.pInput->pInterpolated;
    CopyInput(state, ip->dst, pRows == nullptr ? nullptr : pRows[ip->imm]);
    return ip + 1;
}

const Instruction* LoadRayAttribute(ExecutionState& state, const Instruction* ip) {
    const void* const* pRows = state.pInput->pRayAttributes;
    CopyInput(state, ip->dst, pRows == nullptr ? nullptr : pRows[ip->imm]);
    return ip + 1;
}

// Arrays.

template <unsigned F>
const Instruction* LoadArray(ExecutionState& state, const Instruction* ip) {
    std::uint32_t* pResult = WordsOf(state, ip->dst);
    if constexpr (F == 2) {
        std::uint32_t row = ip->a + state.pScalars[ip->b] * state.strideWords * 4u;
        __builtin_memcpy(pResult, WordsOf(state, row), state.rowBytes);
    } else {
        const std::uint32_t* pIndices = WordsOf(state, ip->b);
        const std::uint32_t* pArray = WordsOf(state, ip->a);
        for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
            pResult[lane] = pArray[pIndices[lane] * state.strideWords + lane];
        }
    }
    return ip + 1;
}

template <unsigned F>
const Instruction* StoreArray(ExecutionState& state, const Instruction* ip) {
    Operand<(F & 2) != 0> value(state, ip->b);
    if constexpr ((F & 1) != 0) {
        std::uint32_t row = ip->dst + state.pScalars[ip->a] * state.strideWords * 4u;
        const unsigned char* pMask = state.pRows + ip->c;
        unsigned char* pResult = state.pRows + row;
        for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
            Row mask = LoadRow(pMask + byte);
            StoreRow(pResult + byte,
                     (value.Load(byte) & mask) | (LoadRow(pResult + byte) & ~mask));
        }
    } else {
        const std::uint32_t* pIndices = WordsOf(state, ip->a);
        const std::uint32_t* pMask = WordsOf(state, ip->c);
        std::uint32_t* pArray = WordsOf(state, ip->dst);
        for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
            if (pMask[lane] != 0) {
                std::uint32_t word;
                if constexpr ((F & 2) != 0) {
                    word = state.pScalars[ip->b];
                } else {
                    word = WordsOf(state, ip->b)[lane];
                }
                pArray[pIndices[lane] * state.strideWords + lane] = word;
            }
        }
    }
    return ip + 1;
}

template <unsigned F>
const Instruction* FillArray(ExecutionState& state, const Instruction* ip) {
    Operand<F == 1> value(state, ip->a);
    unsigned char* pResult = state.pRows + ip->dst;
    for (std::int32_t i = 0; i < ip->imm; ++i) {
        for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
            StoreRow(pResult + byte, value.Load(byte));
        }
        pResult += state.strideWords * 4u;
    }
    return ip + 1;
}

template <unsigned F>
const Instruction* LoadScalarArray(ExecutionState& state, const Instruction* ip) {
    const std::uint32_t* pArray = state.pScalars + ip->a;
    if constexpr (F == 1) {
        state.pScalars[ip->dst] = pArray[state.pScalars[ip->b]];
    } else {
        const std::uint32_t* pIndices = WordsOf(state, ip->b);
        std::uint32_t* pResult = WordsOf(state, ip->dst);
        for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
            pResult[lane] = pArray[pIndices[lane]];
        }
    }
    return ip + 1;
}

const Instruction* StoreScalarArray(ExecutionState& state, const Instruction* ip) {
    state.pScalars[ip->dst + state.pScalars[ip->a]] = state.pScalars[ip->b];
    return ip + 1;
}

const Instruction* FillScalarArray(ExecutionState& state, const Instruction* ip) {
    for (std::int32_t i = 0; i < ip->imm; ++i) {
        state.pScalars[ip->dst + (std::uint32_t)i] = state.pScalars[ip->a];
    }
    return ip + 1;
}

// Masks and control flow.

template <unsigned F>
const Instruction* MaskedMove(ExecutionState& state, const Instruction* ip) {
    Operand<F == 1> value(state, ip->a);
    const unsigned char* pMask = state.pRows + ip->b;
    unsigned char* pResult = state.pRows + ip->dst;
    for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
        Row mask = LoadRow(pMask + byte);
        StoreRow(pResult + byte, (value.Load(byte) & mask) | (LoadRow(pResult + byte) & ~mask));
    }
    return ip + 1;
}

const Instruction* Jump(ExecutionState& state, const Instruction* ip) {
    return state.pCode + ip->imm;
}

const Instruction* JumpIfNone(ExecutionState& state, const Instruction* ip) {
    const unsigned char* pMask = state.pRows + ip->a;
    Row any = LoadRow(pMask);
    for (std::uint32_t byte = sizeof(Row); byte < state.rowBytes; byte += sizeof(Row)) {
        any |= LoadRow(pMask + byte);
    }
    return VectorMath<Wide>::Any(any) ? ip + 1 : state.pCode + ip->imm;
}

const Instruction* JumpIfFalse(ExecutionState& state, const Instruction* ip) {
    return state.pScalars[ip->a] != 0 ? ip + 1 : state.pCode + ip->imm;
}

const Instruction* JumpIfTrue(ExecutionState& state, const Instruction* ip) {
    return state.pScalars[ip->a] != 0 ? state.pCode + ip->imm : ip + 1;
}

/// A fast run counts the steps of all lanes together, which are no fewer than those of any lane.
const Instruction* LoopStep(ExecutionState& state, const Instruction* ip) {
    if (state.pLaneSteps == nullptr) {
        if (++state.steps <= state.stepLimit) {
            return state.pCode + ip->imm;
        }
        state.mustCountLanes = true;
        return nullptr;
    }
    const std::uint32_t* pMask = WordsOf(state, ip->a);
    std::uint32_t* pStopped = WordsOf(state, ip->dst);
    std::uint32_t any = 0;
    for (std::uint32_t lane = 0; lane < RowLanes(state); ++lane) {
        pStopped[lane] = 0;
        if (pMask[lane] != 0 && ++state.pLaneSteps[lane] > state.stepLimit) {
            pStopped[lane] = 0xffffffffu;
            any = 1;
            if (state.stoppedLanes++ == 0) {
                state.stoppedStep = ip->b;
            }
        }
    }
    return any != 0 ? ip + 1 : state.pCode + ip->imm;
}

const Instruction* CallThrough(ExecutionState& state, const Instruction* ip) {
    state.callService(state, *ip);
    return ip + 1;
}

// Results.

template <unsigned F>
const Instruction* StoreState(ExecutionState& state, const Instruction* ip) {
    state.pState[ip->imm] = F == 1 ? state.pScalars[ip->a] : *WordsOf(state, ip->a);
    return ip + 1;
}

template <unsigned F>
const Instruction* StoreOutput(ExecutionState& state, const Instruction* ip) {
    Operand<F == 1> value(state, ip->a);
    unsigned char* pResult = state.pOutputRows + (std::size_t)ip->imm * kMaxLanes * 4u +
                             (std::size_t)state.firstLane * 4u;
    for (std::uint32_t byte = 0; byte < state.rowBytes; byte += sizeof(Row)) {
        Row row = value.Load(byte);
        __builtin_memcpy(pResult + byte, &row, sizeof row);
    }
    return ip + 1;
}

const Instruction* End(ExecutionState&, const Instruction*) { return nullptr; }

using Handler = const Instruction* (*)(ExecutionState&, const Instruction*);

#define TOLEN_FORMS_1(function) Unary<function, 0>, Unary<function, 1>,
#define TOLEN_FORMS_2(function)                                                                    \
    Binary<function, 0>, Binary<function, 1>, Binary<function, 2>, Binary<function, 3>,
#define TOLEN_FORMS_3(function)                                                                    \
    Ternary<function, 0>, Ternary<function, 1>, Ternary<function, 2>, Ternary<function, 3>,        \
        Ternary<function, 4>, Ternary<function, 5>, Ternary<function, 6>, Ternary<function, 7>,
#define TOLEN_FORMS(name, arity, commutes) TOLEN_FORMS_##arity(Function##name)

/// In the order that HandlerIndex tells.
const Handler kHandlers[] = {
    TOLEN_OPENKL_OPERATIONS(TOLEN_FORMS)
    LoadTable<0>, LoadTable<1>,
    LoadBlock<0>, LoadBlock<1>,
    LoadConstant,
    LoadLane,
    LoadInterpolated,
    LoadRayAttribute,
    LoadArray<0>, LoadArray<2>,
    StoreArray<0>, StoreArray<1>, StoreArray<2>, StoreArray<3>,
    FillArray<0>, FillArray<1>,
    LoadScalarArray<0>, LoadScalarArray<1>,
    StoreScalarArray,
    FillScalarArray,
    MaskedMove<0>, MaskedMove<1>,
    Jump,
    JumpIfNone,
    JumpIfFalse,
    JumpIfTrue,
    LoopStep,
    CallThrough,
    StoreState<0>, StoreState<1>,
    StoreOutput<0>, StoreOutput<1>,
    End,
};

#undef TOLEN_FORMS
#undef TOLEN_FORMS_1
#undef TOLEN_FORMS_2
#undef TOLEN_FORMS_3

} // namespace

void TOLEN_EXECUTOR_NAME(ExecutionState& state) {
    const Instruction* ip = state.pCode;
    while (ip != nullptr) {
        ip = kHandlers[ip->handler](state, ip);
    }
}

} // namespace Tolen::OpenKL

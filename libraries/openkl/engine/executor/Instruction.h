#pragma once

#include "engine/Batch.h"
#include "engine/Operation.h"

#include <cstddef>
#include <cstdint>

/// What the linear code and the executors share. The executors are compiled for several instruction
/// sets, so nothing here may be an inline function: the linker would keep one copy for all.
namespace Tolen::OpenKL {

class BatchOutput;

/// Instructions beyond Operation; X takes the name and the number of forms. Letters name the fields
/// of Instruction; rows are varying registers, scalars uniform ones. Bit k of a form tells that the
/// k-th operand listed is a scalar.
#define TOLEN_OPENKL_INSTRUCTIONS(X)                                                               \
    X(LoadTable, 2)         /* dst = table imm, word a + index b; forms: row, scalar index */      \
    X(LoadBlock, 2)         /* dst = block imm; index b as above, extra a: element words, word */  \
    X(LoadConstant, 1)      /* scalar dst = word imm of BatchConstants */                          \
    X(LoadLane, 1)          /* row dst = lane input imm */                                         \
    X(LoadInterpolated, 1)  /* row dst = word imm */                                               \
    X(LoadRayAttribute, 1)  /* row dst = word imm */                                               \
    X(LoadArray, 2)         /* row dst = of rows from a on that at index b; forms: index */        \
    X(StoreArray, 4)        /* of rows from dst on that at index a = b where mask c; forms: a, b */\
    X(FillArray, 2)         /* imm rows from dst on = a; forms: a */                               \
    X(LoadScalarArray, 2)   /* dst = of scalars from a on that at index b; forms: index */         \
    X(StoreScalarArray, 1)  /* of scalars from dst on that at scalar index a = scalar b */         \
    X(FillScalarArray, 1)   /* imm scalars from dst on = scalar a */                               \
    X(MaskedMove, 2)        /* row dst = a where mask b; forms: a */                               \
    X(Jump, 1)              /* to imm */                                                           \
    X(JumpIfNone, 1)        /* to imm when row a is all 0 */                                       \
    X(JumpIfFalse, 1)       /* to imm when scalar a is 0 */                                        \
    X(JumpIfTrue, 1)        /* to imm when scalar a is not 0 */                                    \
    X(LoopStep, 1)          /* counts for mask a; row dst = lanes at the limit; to imm when none */\
    X(Call, 1)              /* a service by the call imm */                                        \
    X(StoreState, 2)        /* word imm of the state = first lane of a; forms: a */                \
    X(StoreOutput, 2)       /* vertex row imm = a; forms: a */                                     \
    X(End, 1)

/// Where an instruction's handler stands in the table: operations first, each with a form for each
/// combination of scalar and row operands, then the instructions.
using HandlerIndex = std::uint16_t;

struct Instruction {
    HandlerIndex handler = 0;
    std::uint32_t dst = 0; ///< offset in bytes of a row, or index of a scalar
    std::uint32_t a = 0;
    std::uint32_t b = 0;
    std::uint32_t c = 0;
    std::int32_t imm = 0;
};

/// An operand of a service: the value of a lane is pWords[lane * step].
struct LaneOperand {
    const std::uint32_t* pWords;
    std::uint32_t step; ///< 0 for scalars, otherwise 1
};

/// Work that is done lane by lane, outside of the executors.
enum class Service : std::int32_t {
    SampleTexture, ///< sampler, u, v, bias, footprint -> 4 rows
    TextureSize,   ///< sampler, level -> 2 rows
    Occluded,      ///< origin, direction, maxDistance -> mask row
    TraceDistance, ///< as Occluded -> row
    Spawn,         ///< origin, direction, maxDistance, class, miss, incoming class, ray attributes
    Accumulate,    ///< attachment, 1, 3 or 4 values
    Discard,       ///< marks the lanes
};

/// The most operands of a service whose number is not bound to a program.
inline constexpr int kMaxFixedOperands = 16;

/// An operand or result of a service in the code: a row or a scalar.
struct CallOperand {
    std::uint32_t offset;
    bool isScalar;
};

/// A result of a service that nobody reads.
inline constexpr std::uint32_t kNoOperand = 0xffffffffu;

/// A call of a service; operands and results stand in KernelUnit::callOperands.
struct ServiceCall {
    Service service;
    std::uint32_t firstOperand;
    std::uint32_t operandCount;
    std::uint32_t firstResult;
    std::uint32_t resultCount;
    std::uint32_t mask;
};

/// Tables of words that LoadTable reads.
enum TableKind : std::int32_t { kTable_Uniforms, kTable_State };

struct ExecutionState;

/// What a run of code works on.
struct ExecutionState {
    const Instruction* pCode;
    unsigned char* pRows;    ///< 64-byte aligned
    std::uint32_t* pScalars; ///< constants first
    std::uint32_t rowBytes;  ///< of the lanes in use, rounded up to 64
    std::uint32_t strideWords;
    std::int32_t laneCount;
    std::int32_t firstLane; ///< of the input and output rows
    const BatchInput* pInput;
    BatchOutput* pOutput;
    std::uint32_t* pState; ///< StoreState writes here
    unsigned char* pOutputRows; ///< StoreOutput writes here, kMaxLanes words a row
    const std::uint32_t* pTables[2];
    const std::uint32_t* pExtra; ///< further immediate values of instructions
    const ServiceCall* pCalls;
    const CallOperand* pCallOperands;
    void (*callService)(ExecutionState& state, const Instruction& instruction);

    std::uint64_t steps;     ///< loop steps of all lanes together, in fast runs
    std::uint64_t stepLimit; ///< of one lane
    std::uint64_t* pLaneSteps; ///< counted for each lane; null in fast runs
    std::uint32_t* pLaneRays;  ///< rays that each lane has spawned
    const std::int32_t* pRayLimits; ///< by class of the incoming ray
    bool mustCountLanes; ///< set when a fast run ends because lanes may have reached the limit
    std::uint32_t stoppedLanes; ///< lanes that reached it
    std::uint32_t stoppedStep;  ///< b of the LoopStep where the first of them did
};

/// Runs the code of @p state to its end.
using Executor = void (*)(ExecutionState& state);
void ExecuteBaseline(ExecutionState& state);
void ExecuteAvx2(ExecutionState& state);
void ExecuteAvx512(ExecutionState& state);

/// One operation on scalars, as every executor does it.
std::uint32_t EvaluateBaseline(Operation operation, std::uint32_t a, std::uint32_t b,
                               std::uint32_t c);

} // namespace Tolen::OpenKL

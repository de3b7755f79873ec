#pragma once

#include <cstdint>

namespace Tolen::OpenKL {

/// Operations on words of 32 bits without effects; X takes the name, the number of operands and
/// whether the first two may change places.
///
/// Words hold floats (F...), signed integers (I...) or masks, which are 0 for false and all ones
/// for true. None of them traps: integers wrap, division by zero and shifts by less than 0 or more
/// than 31 give 0.
#define TOLEN_OPENKL_OPERATIONS(X)                                                                 \
    X(Move, 1, false)                                                                              \
    X(FNeg, 1, false)                                                                              \
    X(FAbs, 1, false)                                                                              \
    X(FSign, 1, false)                                                                             \
    X(FFloor, 1, false)                                                                            \
    X(FCeil, 1, false)                                                                             \
    X(FTrunc, 1, false)                                                                            \
    X(FRoundEven, 1, false)                                                                        \
    X(FFract, 1, false)                                                                            \
    X(FSqrt, 1, false)                                                                             \
    X(FInverseSqrt, 1, false)                                                                      \
    X(FSin, 1, false)                                                                              \
    X(FCos, 1, false)                                                                              \
    X(FTan, 1, false)                                                                              \
    X(FAsin, 1, false)                                                                             \
    X(FAcos, 1, false)                                                                             \
    X(FAtan, 1, false)                                                                             \
    X(FSinh, 1, false)                                                                             \
    X(FCosh, 1, false)                                                                             \
    X(FTanh, 1, false)                                                                             \
    X(FAsinh, 1, false)                                                                            \
    X(FAcosh, 1, false)                                                                            \
    X(FAtanh, 1, false)                                                                            \
    X(FExp, 1, false)                                                                              \
    X(FExp2, 1, false)                                                                             \
    X(FLog, 1, false)                                                                              \
    X(FLog2, 1, false)                                                                             \
    X(FIsNan, 1, false)                                                                            \
    X(FIsInf, 1, false)                                                                            \
    X(FToI, 1, false) /* towards zero; saturates, 0 for NaN */                                     \
    X(IToF, 1, false)                                                                              \
    X(MaskToF, 1, false) /* 0 or 1 */                                                              \
    X(MaskToI, 1, false)                                                                           \
    X(INeg, 1, false)                                                                              \
    X(INot, 1, false)                                                                              \
    X(IAbs, 1, false)                                                                              \
    X(ISign, 1, false)                                                                             \
    X(FAdd, 2, true)                                                                               \
    X(FSub, 2, false)                                                                              \
    X(FMul, 2, true)                                                                               \
    X(FDiv, 2, false)                                                                              \
    X(FMod, 2, false) /* a - b * floor(a / b) */                                                   \
    X(FMin, 2, false) /* b < a ? b : a */                                                          \
    X(FMax, 2, false) /* a < b ? b : a */                                                          \
    X(FPow, 2, false)                                                                              \
    X(FAtan2, 2, false)                                                                            \
    X(FEqual, 2, true)                                                                             \
    X(FNotEqual, 2, true)                                                                          \
    X(FLess, 2, false)                                                                             \
    X(FLessEqual, 2, false)                                                                        \
    X(IAdd, 2, true)                                                                               \
    X(ISub, 2, false)                                                                              \
    X(IMul, 2, true)                                                                               \
    X(IDiv, 2, false)                                                                              \
    X(IMod, 2, false) /* the sign of the dividend */                                               \
    X(IMin, 2, true)                                                                               \
    X(IMax, 2, true)                                                                               \
    X(IAnd, 2, true)                                                                               \
    X(IOr, 2, true)                                                                                \
    X(IXor, 2, true)                                                                               \
    X(IAndNot, 2, false) /* a & ~b */                                                              \
    X(IShiftLeft, 2, false)                                                                        \
    X(IShiftRight, 2, false)                                                                       \
    X(IEqual, 2, true)                                                                             \
    X(INotEqual, 2, true)                                                                          \
    X(ILess, 2, false)                                                                             \
    X(ILessEqual, 2, false)                                                                        \
    X(FMulAdd, 3, true)      /* a * b + c, rounded twice */                                        \
    X(FMulSub, 3, true)      /* a * b - c, rounded twice */                                        \
    X(FNegMulAdd, 3, true)   /* c - a * b, rounded twice */                                        \
    X(FClamp, 3, false)      /* FMin(FMax(a, b), c) */                                             \
    X(Select, 3, false)      /* a ? b : c, a mask */                                               \
    X(Random, 3, false)      /* float; of seed, sample and call */                                 \
    X(RandomPairX, 3, false) /* the components of one point */                                     \
    X(RandomPairY, 3, false)

enum class Operation : std::uint16_t {
#define TOLEN_OPENKL_ENUMERATOR(name, arity, commutes) name,
    TOLEN_OPENKL_OPERATIONS(TOLEN_OPENKL_ENUMERATOR)
#undef TOLEN_OPENKL_ENUMERATOR
        Count
};

struct OperationInfo {
    const char* pName;
    std::uint8_t arity;
    bool commutes;
};

const OperationInfo& GetInfo(Operation operation);

} // namespace Tolen::OpenKL

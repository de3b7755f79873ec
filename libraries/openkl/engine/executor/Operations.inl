// Every Operation as a function of words, for any vector width. Included once by each executor,
// inside its namespace.

template <class L>
struct Words {
    using F = typename L::F;
    using I = typename L::I;
    using U = typename L::U;
    using M = VectorMath<L>;

#define TOLEN_UNARY(name, expression)                                                              \
    static I name(I ai) {                                                                          \
        [[maybe_unused]] F a = (F)ai;                                                              \
        return (I)(expression);                                                                    \
    }
#define TOLEN_BINARY(name, expression)                                                             \
    static I name(I ai, I bi) {                                                                    \
        [[maybe_unused]] F a = (F)ai;                                                              \
        [[maybe_unused]] F b = (F)bi;                                                              \
        return (I)(expression);                                                                    \
    }
#define TOLEN_TERNARY(name, expression)                                                            \
    static I name(I ai, I bi, I ci) {                                                              \
        [[maybe_unused]] F a = (F)ai;                                                              \
        [[maybe_unused]] F b = (F)bi;                                                              \
        [[maybe_unused]] F c = (F)ci;                                                              \
        return (I)(expression);                                                                    \
    }

    static I One() { return M::N(1); }
    static I Zero() { return M::N(0); }
    static F FOne() { return M::S(1.0f); }
    static F FZero() { return M::S(0.0f); }

    TOLEN_UNARY(Move, ai)
    TOLEN_UNARY(FNeg, ai ^ M::N((std::int32_t)0x80000000u))
    TOLEN_UNARY(FAbs, M::Abs(a))
    TOLEN_UNARY(FSign, M::Choose((I)(a > FZero()), FOne(),
                                 M::Choose((I)(a < FZero()), -FOne(), FZero())))
    TOLEN_UNARY(FFloor, M::Floor(a))
    TOLEN_UNARY(FCeil, M::Ceil(a))
    TOLEN_UNARY(FTrunc, M::Trunc(a))
    TOLEN_UNARY(FRoundEven, M::RoundEven(a))
    TOLEN_UNARY(FFract, a - M::Floor(a))
    TOLEN_UNARY(FSqrt, L::Sqrt(a))
    TOLEN_UNARY(FInverseSqrt, FOne() / L::Sqrt(a))
    TOLEN_UNARY(FSin, M::Sin(a))
    TOLEN_UNARY(FCos, M::Cos(a))
    TOLEN_UNARY(FTan, M::Tan(a))
    TOLEN_UNARY(FAsin, M::Asin(a))
    TOLEN_UNARY(FAcos, M::Acos(a))
    TOLEN_UNARY(FAtan, M::Atan(a))
    TOLEN_UNARY(FSinh, M::Sinh(a))
    TOLEN_UNARY(FCosh, M::Cosh(a))
    TOLEN_UNARY(FTanh, M::Tanh(a))
    TOLEN_UNARY(FAsinh, M::Asinh(a))
    TOLEN_UNARY(FAcosh, M::Acosh(a))
    TOLEN_UNARY(FAtanh, M::Atanh(a))
    TOLEN_UNARY(FExp, M::Exp(a))
    TOLEN_UNARY(FExp2, M::Exp2(a))
    TOLEN_UNARY(FLog, M::Log(a))
    TOLEN_UNARY(FLog2, M::Log2(a))
    TOLEN_UNARY(FIsNan, a != a)
    TOLEN_UNARY(FIsInf, (ai & 0x7fffffff) == 0x7f800000)
    TOLEN_UNARY(FToI, M::FloatToInt(a))
    TOLEN_UNARY(IToF, L::ToFloat(ai))
    TOLEN_UNARY(MaskToF, ai & (I)FOne())
    TOLEN_UNARY(MaskToI, ai & One())
    TOLEN_UNARY(INeg, -(U)ai)
    TOLEN_UNARY(INot, ~ai)
    TOLEN_UNARY(IAbs, ((U)ai ^ (U)(ai >> 31)) - (U)(ai >> 31))
    TOLEN_UNARY(ISign, (ai >> 31) | ((ai > Zero()) & One()))

    TOLEN_BINARY(FAdd, a + b)
    TOLEN_BINARY(FSub, a - b)
    TOLEN_BINARY(FMul, a * b)
    TOLEN_BINARY(FDiv, a / b)
    TOLEN_BINARY(FMod, a - b * M::Floor(a / b))
    TOLEN_BINARY(FMin, M::Choose((I)(b < a), b, a))
    TOLEN_BINARY(FMax, M::Choose((I)(a < b), b, a))
    TOLEN_BINARY(FPow, M::Pow(a, b))
    TOLEN_BINARY(FAtan2, M::Atan2(a, b))
    TOLEN_BINARY(FEqual, a == b)
    TOLEN_BINARY(FNotEqual, a != b)
    TOLEN_BINARY(FLess, a < b)
    TOLEN_BINARY(FLessEqual, a <= b)
    TOLEN_BINARY(IAdd, (U)ai + (U)bi)
    TOLEN_BINARY(ISub, (U)ai - (U)bi)
    TOLEN_BINARY(IMul, (U)ai * (U)bi)
    TOLEN_BINARY(IMin, M::Choose((I)(bi < ai), bi, ai))
    TOLEN_BINARY(IMax, M::Choose((I)(ai < bi), bi, ai))
    TOLEN_BINARY(IAnd, ai & bi)
    TOLEN_BINARY(IOr, ai | bi)
    TOLEN_BINARY(IXor, ai ^ bi)
    TOLEN_BINARY(IAndNot, ai & ~bi)
    TOLEN_BINARY(IShiftLeft, ((U)ai << ((U)bi & 31u)) & (U)((U)bi < 32u))
    TOLEN_BINARY(IShiftRight, (ai >> (bi & 31)) & (I)((U)bi < 32u))
    TOLEN_BINARY(IEqual, ai == bi)
    TOLEN_BINARY(INotEqual, ai != bi)
    TOLEN_BINARY(ILess, ai < bi)
    TOLEN_BINARY(ILessEqual, ai <= bi)

    /// Division by 1 in place of what would trap.
    static I SafeDivisor(I a, I b) {
        I overflows = (a == (std::int32_t)0x80000000u) & (b == -1);
        return M::Choose((b == 0) | overflows, One(), b);
    }
    static I IDiv(I a, I b) { return M::Choose(b == 0, Zero(), a / SafeDivisor(a, b)); }
    static I IMod(I a, I b) { return a % SafeDivisor(a, b); }

    TOLEN_TERNARY(FMulAdd, a* b + c)
    TOLEN_TERNARY(FMulSub, a* b - c)
    TOLEN_TERNARY(FNegMulAdd, c - a * b)
    TOLEN_TERNARY(FClamp, FMin(FMax(ai, bi), ci))
    TOLEN_TERNARY(Select, M::Choose(ai, bi, ci))
    TOLEN_TERNARY(Random, M::RandomX((U)ai, (U)bi, (U)ci))
    TOLEN_TERNARY(RandomPairX, M::RandomX((U)ai, (U)bi, (U)ci))
    TOLEN_TERNARY(RandomPairY, M::RandomY((U)ai, (U)bi, (U)ci))

#undef TOLEN_UNARY
#undef TOLEN_BINARY
#undef TOLEN_TERNARY
};

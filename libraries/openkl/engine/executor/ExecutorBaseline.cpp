#define TOLEN_EXECUTOR_NAME ExecuteBaseline
#define TOLEN_EXECUTOR_BYTES 16
#include "engine/executor/Executor.inl"

namespace Tolen::OpenKL {

namespace {

template <class Function, int Arity>
std::uint32_t Evaluate(Narrow::I a, Narrow::I b, Narrow::I c) {
    if constexpr (Arity == 1) {
        return FirstWord(Function::template Do<Narrow>(a));
    } else if constexpr (Arity == 2) {
        return FirstWord(Function::template Do<Narrow>(a, b));
    } else {
        return FirstWord(Function::template Do<Narrow>(a, b, c));
    }
}

} // namespace

std::uint32_t EvaluateBaseline(Operation operation, std::uint32_t a, std::uint32_t b,
                               std::uint32_t c) {
    Narrow::I wideA = Narrow::Splat((std::int32_t)a);
    Narrow::I wideB = Narrow::Splat((std::int32_t)b);
    Narrow::I wideC = Narrow::Splat((std::int32_t)c);
    switch (operation) {
#define TOLEN_CASE(name, arity, commutes)                                                          \
    case Operation::name:                                                                          \
        return Evaluate<Function##name, arity>(wideA, wideB, wideC);
        TOLEN_OPENKL_OPERATIONS(TOLEN_CASE)
#undef TOLEN_CASE
    case Operation::Count:
        break;
    }
    return 0;
}

} // namespace Tolen::OpenKL

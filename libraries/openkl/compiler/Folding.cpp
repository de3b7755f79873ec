#include "compiler/Folding.h"

#include <cmath>
#include <cstdint>

namespace Tolen::OpenKL {

namespace {

bool IsTrusted(float value) {
    return value == 0.0f || std::isnormal(value);
}

std::int32_t Wrap(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

std::optional<ScalarValue> MakeFloat(float value) {
    if (!IsTrusted(value)) {
        return std::nullopt;
    }
    return ScalarValue{.f = value};
}

std::optional<ScalarValue> MakeInt(std::int32_t value) {
    ScalarValue scalar;
    scalar.i = value;
    return scalar;
}

/// @return nothing for what is no comparison
template <class T>
std::optional<ScalarValue> Compare(BinaryOperator operation, T a, T b) {
    switch (operation) {
    case kBinary_Less:
        return MakeInt(a < b);
    case kBinary_LessEqual:
        return MakeInt(a <= b);
    case kBinary_Greater:
        return MakeInt(a > b);
    case kBinary_GreaterEqual:
        return MakeInt(a >= b);
    case kBinary_Equal:
        return MakeInt(a == b);
    case kBinary_NotEqual:
        return MakeInt(a != b);
    default:
        return std::nullopt;
    }
}

std::optional<ScalarValue> FoldFloats(BinaryOperator operation, float a, float b) {
    switch (operation) {
    case kBinary_Add:
        return MakeFloat(a + b);
    case kBinary_Subtract:
        return MakeFloat(a - b);
    case kBinary_Multiply:
        return MakeFloat(a * b);
    case kBinary_Divide:
        return b == 0.0f ? std::nullopt : MakeFloat(a / b);
    default:
        return Compare(operation, a, b);
    }
}

/// Division by zero and shifts by less than 0 or more than 31 give 0; sums and products wrap.
std::optional<ScalarValue> FoldInts(BinaryOperator operation, std::int32_t a, std::int32_t b) {
    const auto ua = static_cast<std::uint32_t>(a);
    const auto ub = static_cast<std::uint32_t>(b);
    // The one quotient that does not fit wraps.
    const bool overflows = a == INT32_MIN && b == -1;
    switch (operation) {
    case kBinary_Add:
        return MakeInt(Wrap(ua + ub));
    case kBinary_Subtract:
        return MakeInt(Wrap(ua - ub));
    case kBinary_Multiply:
        return MakeInt(Wrap(ua * ub));
    case kBinary_Divide:
        return MakeInt(b == 0 ? 0 : overflows ? a : a / b);
    case kBinary_Modulo:
        return MakeInt(b == 0 || overflows ? 0 : a % b);
    case kBinary_ShiftLeft:
        return MakeInt(ub > 31 ? 0 : Wrap(ua << ub));
    case kBinary_ShiftRight:
        return MakeInt(ub > 31 ? 0 : a >> b);
    case kBinary_BitAnd:
        return MakeInt(a & b);
    case kBinary_BitXor:
    case kBinary_LogicalXor:
        return MakeInt(a ^ b);
    case kBinary_BitOr:
        return MakeInt(a | b);
    case kBinary_LogicalAnd:
        return MakeInt(a != 0 && b != 0);
    case kBinary_LogicalOr:
        return MakeInt(a != 0 || b != 0);
    default:
        return Compare(operation, a, b);
    }
}

std::optional<ScalarValue> FoldScalars(BaseType base, BinaryOperator operation, ScalarValue a,
                                       ScalarValue b) {
    return base == kBase_Float ? FoldFloats(operation, a.f, b.f) : FoldInts(operation, a.i, b.i);
}

std::optional<ScalarValue> ConvertScalar(BaseType from, BaseType to, ScalarValue value) {
    if (to == kBase_Bool) {
        return MakeInt(from == kBase_Float ? value.f != 0.0f : value.i != 0);
    }
    if (to == kBase_Float) {
        return MakeFloat(static_cast<float>(value.i));
    }
    if (from == kBase_Bool) {
        return value;
    }
    // 2^31 is the first float that does not fit.
    if (!(value.f > -2147483648.0f && value.f < 2147483648.0f)) {
        return std::nullopt;
    }
    return MakeInt(static_cast<std::int32_t>(value.f));
}

} // namespace

std::optional<FoldedValues> FoldUnary(UnaryOperator operation, const LiteralExpression& operand) {
    FoldedValues result{};
    for (std::size_t i = 0; i < operand.values.size(); ++i) {
        const ScalarValue value = operand.values[i];
        switch (operation) {
        case kUnary_Negate:
            if (operand.type.base == kBase_Float) {
                result[i].f = -value.f;
            } else {
                result[i].i = Wrap(0u - static_cast<std::uint32_t>(value.i));
            }
            break;
        case kUnary_LogicalNot:
            result[i].i = value.i == 0;
            break;
        case kUnary_BitNot:
            result[i].i = ~value.i;
            break;
        }
    }
    return result;
}

std::optional<FoldedValues> FoldBinary(BinaryOperator operation, const Type& resultType,
                                       const LiteralExpression& left,
                                       const LiteralExpression& right) {
    if (operation >= kBinary_MatrixTimesMatrix && operation <= kBinary_VectorTimesMatrix) {
        return std::nullopt;
    }
    const BaseType base = left.type.base;
    const bool isEquality = operation == kBinary_Equal || operation == kBinary_NotEqual;
    const std::size_t count =
        isEquality ? left.values.size() : static_cast<std::size_t>(resultType.CountScalars());
    FoldedValues result{};
    bool areEqual = true;
    for (std::size_t i = 0; i < count; ++i) {
        const ScalarValue a = left.values[left.values.size() == 1 ? 0 : i];
        const ScalarValue b = right.values[right.values.size() == 1 ? 0 : i];
        const auto value = FoldScalars(base, isEquality ? kBinary_Equal : operation, a, b);
        if (!value) {
            return std::nullopt;
        }
        result[i] = *value;
        areEqual = areEqual && value->i != 0;
    }
    if (isEquality) {
        result[0].i = areEqual == (operation == kBinary_Equal);
    }
    return result;
}

std::optional<FoldedValues> FoldConvert(BaseType to, const LiteralExpression& operand) {
    FoldedValues result{};
    for (std::size_t i = 0; i < operand.values.size(); ++i) {
        const auto value = ConvertScalar(operand.type.base, to, operand.values[i]);
        if (!value) {
            return std::nullopt;
        }
        result[i] = *value;
    }
    return result;
}

std::optional<FoldedValues> FoldConstruct(const Type& resultType, ConstructForm form,
                                          std::span<const Expression* const> arguments) {
    const std::size_t rows = resultType.rows;
    const std::size_t count = rows * resultType.columns;
    const auto& first = arguments[0]->As<LiteralExpression>();
    FoldedValues result{};
    switch (form) {
    case kConstruct_Splat:
        for (std::size_t i = 0; i < count; ++i) {
            result[i] = first.values[0];
        }
        return result;
    case kConstruct_Diagonal:
    case kConstruct_Resize: {
        const std::size_t sourceRows = form == kConstruct_Resize ? first.type.rows : 0;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t column = i / rows;
            const std::size_t row = i % rows;
            if (column < sourceRows && row < sourceRows) {
                result[i] = first.values[column * sourceRows + row];
            } else if (form == kConstruct_Diagonal && column == row) {
                result[i] = first.values[0];
            } else {
                result[i].f = column == row ? 1.0f : 0.0f;
            }
        }
        return result;
    }
    case kConstruct_Components: {
        std::size_t filled = 0;
        for (const Expression* argument : arguments) {
            for (const ScalarValue value : argument->As<LiteralExpression>().values) {
                if (filled < count) {
                    result[filled++] = value;
                }
            }
        }
        return filled == count ? std::optional(result) : std::nullopt;
    }
    case kConstruct_Members:
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace Tolen::OpenKL

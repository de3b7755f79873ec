#pragma once

#include "compiler/Expressions.h"

#include <array>
#include <optional>

/// What operations on constants give, wherever that is beyond doubt: a result is left to run time
/// when it is not finite or denormal, or when a conversion is out of range.
namespace Tolen::OpenKL {

/// The scalars of a result, as many as its type has.
using FoldedValues = std::array<ScalarValue, 16>;

std::optional<FoldedValues> FoldUnary(UnaryOperator operation, const LiteralExpression& operand);

/// @param resultType the type that the operation gives
std::optional<FoldedValues> FoldBinary(BinaryOperator operation, const Type& resultType,
                                       const LiteralExpression& left,
                                       const LiteralExpression& right);

std::optional<FoldedValues> FoldConvert(BaseType to, const LiteralExpression& operand);

/// @param arguments every one of them a literal
std::optional<FoldedValues> FoldConstruct(const Type& resultType, ConstructForm form,
                                          std::span<const Expression* const> arguments);

} // namespace Tolen::OpenKL

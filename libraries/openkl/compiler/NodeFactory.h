#pragma once

#include "compiler/Arena.h"
#include "compiler/Expressions.h"
#include "compiler/Folding.h"

#include <span>

namespace Tolen::OpenKL {

class Diagnostics;

/// Makes the expressions of one text from operands that fit: measures their height, holds it to the
/// limit and gives literals where all operands are constant.
///
/// Every operation answers null when the limit of nesting is passed, which it reports once.
class NodeFactory {
public:
    NodeFactory(Arena& arena, Diagnostics& diagnostics)
        : _arena(arena), _diagnostics(diagnostics) {}

    const Expression* MakeInt(int line, std::int32_t value);
    const Expression* MakeFloat(int line, float value);
    const Expression* MakeBool(int line, bool value);
    /// The value of an operand that was left out.
    const Expression* MakeNothing(int line);
    /// The value of a const variable at another place.
    const Expression* CopyLiteral(int line, const LiteralExpression& literal);

    const Expression* MakeVariable(int line, Variable* variable);
    /// @param components as many as @p type has rows; a swizzle of a swizzle becomes one
    const Expression* MakeSwizzle(const Type& type, int line, const Expression* object,
                                  std::array<std::uint8_t, 4> components);
    const Expression* MakeIndex(int line, const Expression* object, const Expression* index);
    const Expression* MakeField(int line, const Expression* object, int field);
    const Expression* MakeBlockElement(int line, Variable* block, const Expression* index);
    const Expression* MakeUnary(int line, UnaryOperator operation, const Expression* operand);
    const Expression* MakeBinary(const Type& type, int line, BinaryOperator operation,
                                 const Expression* left, const Expression* right);
    const Expression* MakeAssign(int line, const Expression* target, const Expression* value);
    const Expression* MakeCompoundAssign(int line, const Expression* target,
                                         BinaryOperator operation, const Expression* value);
    const Expression* MakeIncrement(int line, const Expression* target, bool isDecrement,
                                    bool isPrefix);
    const Expression* MakeConditional(int line, const Expression* condition,
                                      const Expression* whenTrue, const Expression* whenFalse);
    const Expression* MakeComma(int line, const Expression* left, const Expression* right);
    const Expression* MakeCall(int line, Function* function,
                               std::span<const Expression* const> arguments);
    const Expression* MakeBuiltinCall(const Type& type, int line, BuiltinFunction function,
                                      std::span<const Expression* const> arguments);
    /// A conversion that the language makes by itself; @p operand itself when it has that base type
    /// already. Chains go through it without growing higher, which they can do only once, from int
    /// to float.
    const Expression* MakeImplicitConvert(const Expression* operand, BaseType to);
    /// A conversion that a constructor makes.
    const Expression* MakeConvert(const Expression* operand, BaseType to);
    /// The value of a scalar, vector or matrix, as something that cannot be assigned to.
    const Expression* MakeValue(const Expression* operand);
    const Expression* MakeConstruct(const Type& type, int line, ConstructForm form,
                                    std::span<const Expression* const> arguments);

private:
    /// Gives a new node its height. @return null past the limit
    const Expression* _Finish(Expression* node, int height);
    const Expression* _MakeConvert(const Expression* operand, BaseType to, int height);
    const Expression* _MakeLiteral(const Type& type, int line, const FoldedValues& values);
    const Expression* _MakeLiteral(const Type& type, int line, ScalarValue value);

    Arena& _arena;
    Diagnostics& _diagnostics;
    bool _wasLimitReported = false;
};

} // namespace Tolen::OpenKL

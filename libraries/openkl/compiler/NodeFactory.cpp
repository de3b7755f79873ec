#include "compiler/NodeFactory.h"

#include "compiler/Diagnostics.h"
#include "compiler/Limits.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// The literal that an expression is, or null.
const LiteralExpression* AsLiteral(const Expression* expression) {
    return expression->kind == kExpression_Literal && !expression->type.IsVoid()
               ? &expression->As<LiteralExpression>()
               : nullptr;
}

int GetHeight(std::span<const Expression* const> expressions) {
    int height = 0;
    for (const Expression* expression : expressions) {
        height = std::max<int>(height, expression->height);
    }
    return height;
}

/// Chains grow to the left without growing higher.
int GetChainHeight(const Expression* left, const Expression* right) {
    return std::max<int>(left->height, right->height + 1);
}

/// Whether an expression names a variable or a part of one, rather than a value.
bool IsPlace(const Expression* expression) {
    return expression->kind == kExpression_Variable || expression->kind == kExpression_Swizzle ||
           expression->kind == kExpression_Index || expression->kind == kExpression_Field;
}

/// Whether a node can be the left operand of a chain, which readers follow in a loop.
bool IsLink(const Expression* expression) {
    return expression->kind == kExpression_Binary || expression->kind == kExpression_Comma;
}

} // namespace

const Expression* NodeFactory::_Finish(Expression* node, int height) {
    if (height > kMaxNesting) {
        if (!_wasLimitReported) {
            _wasLimitReported = true;
            _diagnostics.Error(node->line, "expression nests deeper than the limit of " +
                                               std::to_string(kMaxNesting) + " levels");
        }
        return nullptr;
    }
    node->height = static_cast<std::uint16_t>(height);
    return node;
}

const Expression* NodeFactory::_MakeLiteral(const Type& type, int line,
                                            const FoldedValues& values) {
    const auto count = static_cast<std::size_t>(type.CountScalars());
    return _arena.New<LiteralExpression>(
        type, line, _arena.Copy(std::span<const ScalarValue>(values.data(), count)));
}

const Expression* NodeFactory::_MakeLiteral(const Type& type, int line, ScalarValue value) {
    return _arena.New<LiteralExpression>(type, line,
                                         _arena.Copy(std::span<const ScalarValue>(&value, 1)));
}

const Expression* NodeFactory::MakeInt(int line, std::int32_t value) {
    ScalarValue scalar;
    scalar.i = value;
    return _MakeLiteral(kInt, line, scalar);
}

const Expression* NodeFactory::MakeFloat(int line, float value) {
    return _MakeLiteral(kFloat, line, ScalarValue{.f = value});
}

const Expression* NodeFactory::MakeBool(int line, bool value) {
    ScalarValue scalar;
    scalar.i = value;
    return _MakeLiteral(kBool, line, scalar);
}

const Expression* NodeFactory::MakeNothing(int line) {
    return _arena.New<LiteralExpression>(kVoid, line, std::span<const ScalarValue>());
}

const Expression* NodeFactory::CopyLiteral(int line, const LiteralExpression& literal) {
    return _arena.New<LiteralExpression>(literal.type, line, literal.values);
}

const Expression* NodeFactory::MakeVariable(int line, Variable* variable) {
    return _arena.New<VariableExpression>(line, variable);
}

const Expression* NodeFactory::MakeSwizzle(const Type& type, int line, const Expression* object,
                                           std::array<std::uint8_t, 4> components) {
    if (object->kind == kExpression_Swizzle) {
        const auto& inner = object->As<SwizzleExpression>();
        for (std::uint8_t& component : components) {
            component = inner.components[component];
        }
        object = inner.object;
    }
    if (const LiteralExpression* literal = AsLiteral(object)) {
        FoldedValues values{};
        for (std::size_t i = 0; i < type.rows; ++i) {
            values[i] = literal->values[components[i]];
        }
        return _MakeLiteral(type, line, values);
    }
    return _Finish(_arena.New<SwizzleExpression>(type, line, object, components),
                   object->height + 1);
}

const Expression* NodeFactory::MakeIndex(int line, const Expression* object,
                                         const Expression* index) {
    const Type type = object->type.GetElement();
    const LiteralExpression* literal = AsLiteral(object);
    const LiteralExpression* literalIndex = AsLiteral(index);
    if (literal != nullptr && literalIndex != nullptr) {
        const auto count = static_cast<std::size_t>(type.CountScalars());
        const std::size_t first = static_cast<std::size_t>(literalIndex->values[0].i) * count;
        return _arena.New<LiteralExpression>(type, line, literal->values.subspan(first, count));
    }
    return _Finish(_arena.New<IndexExpression>(type, line, object, index),
                   std::max(object->height, index->height) + 1);
}

const Expression* NodeFactory::MakeField(int line, const Expression* object, int field) {
    const Type& type = object->type.structure->fields[static_cast<std::size_t>(field)].type;
    return _Finish(_arena.New<FieldExpression>(type, line, object, field), object->height + 1);
}

const Expression* NodeFactory::MakeBlockElement(int line, Variable* block,
                                                const Expression* index) {
    return _Finish(_arena.New<BlockElementExpression>(line, block, index), index->height + 1);
}

const Expression* NodeFactory::MakeUnary(int line, UnaryOperator operation,
                                         const Expression* operand) {
    if (const LiteralExpression* literal = AsLiteral(operand)) {
        if (const auto values = FoldUnary(operation, *literal)) {
            return _MakeLiteral(operand->type, line, *values);
        }
    }
    return _Finish(_arena.New<UnaryExpression>(line, operation, operand), operand->height + 1);
}

const Expression* NodeFactory::MakeBinary(const Type& type, int line, BinaryOperator operation,
                                          const Expression* left, const Expression* right) {
    const LiteralExpression* literalLeft = AsLiteral(left);
    const LiteralExpression* literalRight = AsLiteral(right);
    if (literalLeft != nullptr && literalRight != nullptr) {
        if (const auto values = FoldBinary(operation, type, *literalLeft, *literalRight)) {
            return _MakeLiteral(type, line, *values);
        }
    }
    return _Finish(_arena.New<BinaryExpression>(type, line, operation, left, right),
                   GetChainHeight(left, right));
}

const Expression* NodeFactory::MakeAssign(int line, const Expression* target,
                                          const Expression* value) {
    return _Finish(_arena.New<AssignExpression>(line, target, value),
                   std::max(target->height, value->height) + 1);
}

const Expression* NodeFactory::MakeCompoundAssign(int line, const Expression* target,
                                                  BinaryOperator operation,
                                                  const Expression* value) {
    return _Finish(_arena.New<AssignExpression>(line, target, operation, value),
                   std::max(target->height, value->height) + 1);
}

const Expression* NodeFactory::MakeIncrement(int line, const Expression* target, bool isDecrement,
                                             bool isPrefix) {
    return _Finish(_arena.New<IncrementExpression>(line, target, isDecrement, isPrefix),
                   target->height + 1);
}

const Expression* NodeFactory::MakeConditional(int line, const Expression* condition,
                                               const Expression* whenTrue,
                                               const Expression* whenFalse) {
    if (const LiteralExpression* literal = AsLiteral(condition)) {
        const Expression* chosen = literal->values[0].i != 0 ? whenTrue : whenFalse;
        if (!IsPlace(chosen)) {
            return chosen;
        }
    }
    const Expression* const parts[] = {condition, whenTrue, whenFalse};
    return _Finish(_arena.New<ConditionalExpression>(line, condition, whenTrue, whenFalse),
                   GetHeight(parts) + 1);
}

const Expression* NodeFactory::MakeComma(int line, const Expression* left,
                                         const Expression* right) {
    return _Finish(_arena.New<CommaExpression>(line, left, right), GetChainHeight(left, right));
}

const Expression* NodeFactory::MakeCall(int line, Function* function,
                                        std::span<const Expression* const> arguments) {
    return _Finish(_arena.New<CallExpression>(line, function, _arena.Copy(arguments)),
                   GetHeight(arguments) + 1);
}

const Expression* NodeFactory::MakeBuiltinCall(const Type& type, int line, BuiltinFunction function,
                                               std::span<const Expression* const> arguments) {
    return _Finish(_arena.New<BuiltinCallExpression>(type, line, function, _arena.Copy(arguments)),
                   GetHeight(arguments) + 1);
}

const Expression* NodeFactory::MakeImplicitConvert(const Expression* operand, BaseType to) {
    return _MakeConvert(operand, to, IsLink(operand) ? operand->height : operand->height + 1);
}

const Expression* NodeFactory::MakeConvert(const Expression* operand, BaseType to) {
    return _MakeConvert(operand, to, operand->height + 1);
}

const Expression* NodeFactory::_MakeConvert(const Expression* operand, BaseType to, int height) {
    if (operand->type.base == to) {
        return operand;
    }
    Type type = operand->type;
    type.base = to;
    if (const LiteralExpression* literal = AsLiteral(operand)) {
        if (const auto values = FoldConvert(to, *literal)) {
            return _MakeLiteral(type, operand->line, *values);
        }
    }
    return _Finish(_arena.New<ConvertExpression>(type, operand), height);
}

const Expression* NodeFactory::MakeValue(const Expression* operand) {
    return IsPlace(operand) ? MakeConstruct(operand->type, operand->line, kConstruct_Components,
                                            std::span<const Expression* const>(&operand, 1))
                            : operand;
}

const Expression* NodeFactory::MakeConstruct(const Type& type, int line, ConstructForm form,
                                             std::span<const Expression* const> arguments) {
    const bool isConstant =
        std::all_of(arguments.begin(), arguments.end(),
                    [](const Expression* e) { return AsLiteral(e) != nullptr; });
    if (isConstant && form != kConstruct_Members) {
        if (const auto values = FoldConstruct(type, form, arguments)) {
            return _MakeLiteral(type, line, *values);
        }
    }
    return _Finish(_arena.New<ConstructExpression>(type, line, form, _arena.Copy(arguments)),
                   GetHeight(arguments) + 1);
}

} // namespace Tolen::OpenKL

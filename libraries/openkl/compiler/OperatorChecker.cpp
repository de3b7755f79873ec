#include "compiler/OperatorChecker.h"

#include "compiler/CheckContext.h"
#include "compiler/OverloadChooser.h"

namespace Tolen::OpenKL {

namespace {

/// What a binary operator does with operands of certain types.
struct Rule {
    BinaryOperator operation;
    Type result;
    BaseType operands; ///< to which both sides are converted
};

bool IsNumeric(const Type& type) {
    return type.IsNumericOrBool() && type.base != kBase_Bool;
}
bool IsInteger(const Type& type) {
    return IsNumeric(type) && type.base == kBase_Int;
}
bool HaveSameShape(const Type& a, const Type& b) {
    return a.columns == b.columns && a.rows == b.rows;
}

/// The shape of the side that is no scalar, or of both; nothing when they don't go together.
std::optional<Type> JoinShapes(const Type& left, const Type& right, BaseType base) {
    if (!HaveSameShape(left, right) && !left.IsScalar() && !right.IsScalar()) {
        return std::nullopt;
    }
    Type joined = left.IsScalar() ? right : left;
    joined.base = base;
    return joined;
}

BaseType JoinBases(const Type& left, const Type& right) {
    return left.base == kBase_Int && right.base == kBase_Int ? kBase_Int : kBase_Float;
}

std::optional<Rule> MultiplyRule(const Type& left, const Type& right) {
    if (left.IsMatrix() && right.IsMatrix() && left.rows == right.rows) {
        return Rule{kBinary_MatrixTimesMatrix, left, kBase_Float};
    }
    if (left.IsMatrix() && right.IsVector() && left.rows == right.rows) {
        return Rule{kBinary_MatrixTimesVector, MakeVector(kBase_Float, left.rows), kBase_Float};
    }
    if (left.IsVector() && right.IsMatrix() && left.rows == right.rows) {
        return Rule{kBinary_VectorTimesMatrix, MakeVector(kBase_Float, left.rows), kBase_Float};
    }
    const BaseType base = JoinBases(left, right);
    if (const auto shape = JoinShapes(left, right, base)) {
        return Rule{kBinary_Multiply, *shape, base};
    }
    return std::nullopt;
}

std::optional<Rule> ArithmeticRule(BinaryOperator operation, const Type& left, const Type& right) {
    if (!IsNumeric(left) || !IsNumeric(right)) {
        return std::nullopt;
    }
    if (operation == kBinary_Multiply) {
        return MultiplyRule(left, right);
    }
    const BaseType base = JoinBases(left, right);
    if (const auto shape = JoinShapes(left, right, base)) {
        return Rule{operation, *shape, base};
    }
    return std::nullopt;
}

std::optional<Rule> IntegerRule(BinaryOperator operation, const Type& left, const Type& right) {
    if (!IsInteger(left) || !IsInteger(right)) {
        return std::nullopt;
    }
    const bool isShift = operation == kBinary_ShiftLeft || operation == kBinary_ShiftRight;
    if (isShift && left.IsScalar() && !right.IsScalar()) {
        return std::nullopt;
    }
    if (const auto shape = JoinShapes(left, right, kBase_Int)) {
        return Rule{operation, *shape, kBase_Int};
    }
    return std::nullopt;
}

std::optional<Rule> EqualityRule(BinaryOperator operation, const Type& left, const Type& right) {
    if (left.base == kBase_Void || left.IsSampler()) {
        return std::nullopt;
    }
    if (IsConvertible(left, right)) {
        return Rule{operation, kBool, right.base};
    }
    if (IsConvertible(right, left)) {
        return Rule{operation, kBool, left.base};
    }
    return std::nullopt;
}

std::optional<Rule> FindRule(BinaryOperator operation, const Type& left, const Type& right) {
    switch (operation) {
    case kBinary_Add:
    case kBinary_Subtract:
    case kBinary_Multiply:
    case kBinary_Divide:
        return ArithmeticRule(operation, left, right);
    case kBinary_Modulo:
    case kBinary_ShiftLeft:
    case kBinary_ShiftRight:
    case kBinary_BitAnd:
    case kBinary_BitXor:
    case kBinary_BitOr:
        return IntegerRule(operation, left, right);
    case kBinary_Less:
    case kBinary_LessEqual:
    case kBinary_Greater:
    case kBinary_GreaterEqual:
        if (!IsNumeric(left) || !IsNumeric(right) || !left.IsScalar() || !right.IsScalar()) {
            return std::nullopt;
        }
        return Rule{operation, kBool, JoinBases(left, right)};
    case kBinary_Equal:
    case kBinary_NotEqual:
        return EqualityRule(operation, left, right);
    case kBinary_LogicalAnd:
    case kBinary_LogicalXor:
    case kBinary_LogicalOr:
        if (left != kBool || right != kBool) {
            return std::nullopt;
        }
        return Rule{operation, kBool, kBase_Bool};
    case kBinary_MatrixTimesMatrix:
    case kBinary_MatrixTimesVector:
    case kBinary_VectorTimesMatrix:
        break;
    }
    return std::nullopt;
}

/// What to do instead, for mistakes that are common in this language.
std::string_view FindHint(BinaryOperator operation, const Type& left, const Type& right) {
    const bool areNumbers = IsNumeric(left) && IsNumeric(right);
    if (operation == kBinary_Modulo && areNumbers) {
        return "; mod() works on floats";
    }
    if (operation >= kBinary_Less && operation <= kBinary_GreaterEqual && areNumbers) {
        return "; lessThan() and its kin compare vectors";
    }
    return {};
}

} // namespace

const Expression* OperatorChecker::Unary(UnaryOperator operation, std::string_view text, int line,
                                         const Expression* operand) {
    if (operand == nullptr) {
        return nullptr;
    }
    const Type& type = operand->type;
    const bool fits = operation == kUnary_Negate       ? IsNumeric(type)
                      : operation == kUnary_LogicalNot ? type == kBool
                                                       : IsInteger(type);
    if (!fits) {
        _context.diagnostics.Error(line,
                                   "operator " + Quote(text) + " cannot take " + type.ToString());
        return nullptr;
    }
    return _context.nodes.MakeUnary(line, operation, operand);
}

const Expression* OperatorChecker::Plus(int line, const Expression* operand) {
    if (operand == nullptr) {
        return nullptr;
    }
    if (!IsNumeric(operand->type)) {
        _context.diagnostics.Error(line, "operator '+' cannot take " + operand->type.ToString());
        return nullptr;
    }
    return _context.nodes.MakeValue(operand);
}

const Expression* OperatorChecker::Increment(int line, const Expression* target, bool isDecrement,
                                             bool isPrefix) {
    if (target == nullptr) {
        return nullptr;
    }
    const std::string text = isDecrement ? "'--'" : "'++'";
    if (!IsNumeric(target->type)) {
        _context.diagnostics.Error(line,
                                   "operator " + text + " cannot take " + target->type.ToString());
        return nullptr;
    }
    if (!_access.Write(target, true, "apply " + text + " to")) {
        return nullptr;
    }
    return _context.nodes.MakeIncrement(line, target, isDecrement, isPrefix);
}

const Expression* OperatorChecker::Binary(BinaryOperator operation, std::string_view text, int line,
                                          const Expression* left, const Expression* right) {
    if (left == nullptr || right == nullptr) {
        return nullptr;
    }
    const auto rule = FindRule(operation, left->type, right->type);
    if (!rule) {
        _context.diagnostics.Error(line,
                                   "operator " + Quote(text) + " cannot take " +
                                       left->type.ToString() + " and " + right->type.ToString() +
                                       std::string(FindHint(operation, left->type, right->type)));
        return nullptr;
    }
    left = _context.nodes.MakeImplicitConvert(left, rule->operands);
    right = _context.nodes.MakeImplicitConvert(right, rule->operands);
    if (left == nullptr || right == nullptr) {
        return nullptr;
    }
    return _context.nodes.MakeBinary(rule->result, line, rule->operation, left, right);
}

const Expression* OperatorChecker::Assign(int line, const Expression* target,
                                          const Expression* value) {
    if (target == nullptr || value == nullptr) {
        return nullptr;
    }
    if (!_access.Write(target, false, "assign to")) {
        return nullptr;
    }
    if (target->type.IsVoid() || !IsConvertible(value->type, target->type)) {
        _context.diagnostics.Error(line, "cannot assign " + value->type.ToString() + " to " +
                                             target->type.ToString());
        return nullptr;
    }
    value = _access.Convert(value, target->type);
    return value == nullptr ? nullptr : _context.nodes.MakeAssign(line, target, value);
}

const Expression* OperatorChecker::CompoundAssign(BinaryOperator operation, std::string_view text,
                                                  int line, const Expression* target,
                                                  const Expression* value) {
    if (target == nullptr || value == nullptr) {
        return nullptr;
    }
    if (!_access.Write(target, true, "assign to")) {
        return nullptr;
    }
    const auto rule = FindRule(operation, target->type, value->type);
    if (!rule || rule->result != target->type) {
        _context.diagnostics.Error(line, "operator " + Quote(text) + " cannot change " +
                                             target->type.ToString() + " by " +
                                             value->type.ToString());
        return nullptr;
    }
    value = _context.nodes.MakeImplicitConvert(value, rule->operands);
    return value == nullptr
               ? nullptr
               : _context.nodes.MakeCompoundAssign(line, target, rule->operation, value);
}

const Expression* OperatorChecker::Conditional(int line, const Expression* condition,
                                               const Expression* whenTrue,
                                               const Expression* whenFalse) {
    if (condition == nullptr || whenTrue == nullptr || whenFalse == nullptr) {
        return nullptr;
    }
    if (!_access.RequireBool(condition, "what stands before '?'")) {
        return nullptr;
    }
    if (!IsConvertible(whenTrue->type, whenFalse->type) &&
        !IsConvertible(whenFalse->type, whenTrue->type)) {
        _context.diagnostics.Error(line,
                                   "the two sides of ':' differ: " + whenTrue->type.ToString() +
                                       " and " + whenFalse->type.ToString());
        return nullptr;
    }
    const BaseType base = whenTrue->type.base == kBase_Float ? kBase_Float : whenFalse->type.base;
    whenTrue = _context.nodes.MakeImplicitConvert(whenTrue, base);
    whenFalse = _context.nodes.MakeImplicitConvert(whenFalse, base);
    if (whenTrue == nullptr || whenFalse == nullptr) {
        return nullptr;
    }
    return _context.nodes.MakeConditional(line, condition, whenTrue, whenFalse);
}

const Expression* OperatorChecker::Comma(int line, const Expression* left,
                                         const Expression* right) {
    if (left == nullptr || right == nullptr) {
        return nullptr;
    }
    return _context.nodes.MakeComma(line, left, right);
}

} // namespace Tolen::OpenKL

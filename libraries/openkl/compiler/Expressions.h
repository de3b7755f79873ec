#pragma once

#include "compiler/Builtins.h"
#include "compiler/Symbols.h"
#include "compiler/Type.h"

#include <array>
#include <cstdint>
#include <span>

/// The typed expressions of a checked text. Every name is resolved, every conversion is a node of
/// its own, every operation has operands of types that it works on.
///
/// Depth: `left` of BinaryExpression and of CommaExpression form chains as long as the text has
/// operators, which are to be followed in a loop; a ConvertExpression may stand between two links.
/// Along every other edge an expression nests at most kMaxNesting (Limits.h) levels, so that
/// recursion is safe there. `height` tells how many.
namespace Tolen::OpenKL {

enum ExpressionKind : std::uint8_t {
    kExpression_Literal,
    kExpression_Variable,
    kExpression_Swizzle,
    kExpression_Index,
    kExpression_Field,
    kExpression_BlockElement,
    kExpression_Unary,
    kExpression_Binary,
    kExpression_Assign,
    kExpression_Increment,
    kExpression_Conditional,
    kExpression_Comma,
    kExpression_Call,
    kExpression_BuiltinCall,
    kExpression_Convert,
    kExpression_Construct,
};

/// Base of all expressions.
struct Expression {
    ExpressionKind kind;
    std::uint16_t height = 1; ///< levels of nesting below and with this node, chains not counted
    Type type;
    int line;

    /// This node as the T that its kind says it is.
    template <class T>
    const T& As() const {
        return static_cast<const T&>(*this);
    }

protected:
    Expression(ExpressionKind expressionKind, const Type& expressionType, int expressionLine)
        : kind(expressionKind), type(expressionType), line(expressionLine) {}
};

/// One component of a constant.
union ScalarValue {
    float f;
    std::int32_t i; ///< also of bools, as 0 or 1
};

/// A constant scalar, vector or matrix. One of type void is an operand that was left out, as in
/// `(, b)`: it does nothing.
struct LiteralExpression : Expression {
    std::span<const ScalarValue> values; ///< in memory order, as many as the type has scalars

    LiteralExpression(const Type& literalType, int literalLine,
                      std::span<const ScalarValue> literalValues)
        : Expression(kExpression_Literal, literalType, literalLine), values(literalValues) {}
};

struct VariableExpression : Expression {
    Variable* variable;

    VariableExpression(int useLine, Variable* used)
        : Expression(kExpression_Variable, used->type, useLine), variable(used) {}
};

/// Components of a vector by name. The object is no swizzle itself. As the target of an assignment
/// it names no component twice.
struct SwizzleExpression : Expression {
    const Expression* object;
    std::array<std::uint8_t, 4> components; ///< as many as the type has rows

    SwizzleExpression(const Type& swizzleType, int swizzleLine, const Expression* swizzled,
                      const std::array<std::uint8_t, 4>& names)
        : Expression(kExpression_Swizzle, swizzleType, swizzleLine), object(swizzled),
          components(names) {}
};

/// An element of an array, a column of a matrix or a component of a vector. A literal index is in
/// range; any other may not be.
struct IndexExpression : Expression {
    const Expression* object;
    const Expression* index; ///< int

    IndexExpression(const Type& elementType, int indexLine, const Expression* indexed,
                    const Expression* indexExpression)
        : Expression(kExpression_Index, elementType, indexLine), object(indexed),
          index(indexExpression) {}
};

/// A field of a struct.
struct FieldExpression : Expression {
    const Expression* object;
    int field; ///< index into the struct's fields

    FieldExpression(const Type& fieldType, int fieldLine, const Expression* structure,
                    int fieldIndex)
        : Expression(kExpression_Field, fieldType, fieldLine), object(structure),
          field(fieldIndex) {}
};

/// `B.a[i]`: an element of the buffer behind a uniform block. Any index is legal; one outside the
/// buffer gives 0.
struct BlockElementExpression : Expression {
    Variable* block;
    const Expression* index; ///< int

    BlockElementExpression(int elementLine, Variable* uniformBlock,
                           const Expression* indexExpression)
        : Expression(kExpression_BlockElement, uniformBlock->type, elementLine),
          block(uniformBlock), index(indexExpression) {}
};

enum UnaryOperator : std::uint8_t {
    kUnary_Negate,     ///< float or int scalar, vector, matrix
    kUnary_LogicalNot, ///< bool
    kUnary_BitNot,     ///< int, ivec
};

struct UnaryExpression : Expression {
    UnaryOperator operation;
    const Expression* operand;

    UnaryExpression(int operatorLine, UnaryOperator unaryOperator, const Expression* argument)
        : Expression(kExpression_Unary, argument->type, operatorLine), operation(unaryOperator),
          operand(argument) {}
};

/// Operators between two operands. Component-wise ones take two operands of one shape, or a scalar
/// on either side that counts for every component; both have one base type.
enum BinaryOperator : std::uint8_t {
    kBinary_Add,
    kBinary_Subtract,
    kBinary_Multiply, ///< component by component
    kBinary_Divide,
    kBinary_Modulo, ///< ints
    kBinary_MatrixTimesMatrix,
    kBinary_MatrixTimesVector,
    kBinary_VectorTimesMatrix,
    kBinary_ShiftLeft, ///< ints, and so to BitOr
    kBinary_ShiftRight,
    kBinary_BitAnd,
    kBinary_BitXor,
    kBinary_BitOr,
    kBinary_Less, ///< scalars, giving bool, and so to GreaterEqual
    kBinary_LessEqual,
    kBinary_Greater,
    kBinary_GreaterEqual,
    kBinary_Equal, ///< two whole values of one type, arrays and structs as well, giving bool
    kBinary_NotEqual,
    kBinary_LogicalAnd, ///< bools; the right side runs only when the left is true
    kBinary_LogicalXor,
    kBinary_LogicalOr, ///< bools; the right side runs only when the left is false
};

struct BinaryExpression : Expression {
    BinaryOperator operation;
    const Expression* left;
    const Expression* right;

    BinaryExpression(const Type& resultType, int operatorLine, BinaryOperator binaryOperator,
                     const Expression* leftOperand, const Expression* rightOperand)
        : Expression(kExpression_Binary, resultType, operatorLine), operation(binaryOperator),
          left(leftOperand), right(rightOperand) {}
};

/// An assignment; its value is the new value of the target. The target is built of
/// VariableExpression, SwizzleExpression, IndexExpression and FieldExpression. Of a compound
/// assignment each index in the target is evaluated once.
struct AssignExpression : Expression {
    bool isCompound; ///< target = target operation value
    BinaryOperator operation;
    const Expression* target;
    const Expression* value;

    AssignExpression(int operatorLine, const Expression* assignedTarget,
                     const Expression* assignedValue)
        : Expression(kExpression_Assign, assignedTarget->type, operatorLine), isCompound(false),
          operation(kBinary_Add), target(assignedTarget), value(assignedValue) {}
    AssignExpression(int operatorLine, const Expression* assignedTarget,
                     BinaryOperator compoundOperator, const Expression* assignedValue)
        : Expression(kExpression_Assign, assignedTarget->type, operatorLine), isCompound(true),
          operation(compoundOperator), target(assignedTarget), value(assignedValue) {}
};

/// `++` and `--` on numbers, vectors and matrices.
struct IncrementExpression : Expression {
    bool isDecrement;
    bool isPrefix; ///< the value is the new one; otherwise the old one
    const Expression* target;

    IncrementExpression(int operatorLine, const Expression* changedTarget, bool decrement,
                        bool prefix)
        : Expression(kExpression_Increment, changedTarget->type, operatorLine),
          isDecrement(decrement), isPrefix(prefix), target(changedTarget) {}
};

/// `condition ? whenTrue : whenFalse`; only the chosen side runs.
struct ConditionalExpression : Expression {
    const Expression* condition; ///< bool
    const Expression* whenTrue;
    const Expression* whenFalse;

    ConditionalExpression(int operatorLine, const Expression* test, const Expression* trueValue,
                          const Expression* falseValue)
        : Expression(kExpression_Conditional, trueValue->type, operatorLine), condition(test),
          whenTrue(trueValue), whenFalse(falseValue) {}
};

/// `left, right`; the value is the right one's. Either may be void.
struct CommaExpression : Expression {
    const Expression* left;
    const Expression* right;

    CommaExpression(int operatorLine, const Expression* first, const Expression* second)
        : Expression(kExpression_Comma, second->type, operatorLine), left(first), right(second) {}
};

/// A call of a function of the program. Arguments of `out` and `inout` parameters are targets as
/// in AssignExpression and of the parameter's type exactly; the others are converted.
struct CallExpression : Expression {
    Function* function; ///< of this text; LinkedProgram knows its definition
    std::span<const Expression* const> arguments;

    CallExpression(int callLine, Function* called, std::span<const Expression* const> values)
        : Expression(kExpression_Call, called->returnType, callLine), function(called),
          arguments(values) {}
};

/// A call of a function of the language.
struct BuiltinCallExpression : Expression {
    BuiltinFunction function;
    std::span<const Expression* const> arguments;

    BuiltinCallExpression(const Type& resultType, int callLine, BuiltinFunction called,
                          std::span<const Expression* const> values)
        : Expression(kExpression_BuiltinCall, resultType, callLine), function(called),
          arguments(values) {}
};

/// A change of the base type between float, int and bool, component by component.
struct ConvertExpression : Expression {
    const Expression* operand; ///< same shape, other base type

    ConvertExpression(const Type& resultType, const Expression* converted)
        : Expression(kExpression_Convert, resultType, converted->line), operand(converted) {}
};

/// What a constructor does with its arguments, whose base type is already that of the result.
enum ConstructForm : std::uint8_t {
    kConstruct_Splat,      ///< a vector, every component the one scalar
    kConstruct_Diagonal,   ///< a matrix, the one scalar on its diagonal, 0 elsewhere
    kConstruct_Resize,     ///< a matrix from one of another size, identity where that ends
    kConstruct_Components, ///< scalar, vector or matrix; the arguments' components in order, those
                           ///< behind the last one needed dropped
    kConstruct_Members,    ///< a struct field by field, or an array element by element
};

struct ConstructExpression : Expression {
    ConstructForm form;
    std::span<const Expression* const> arguments;

    ConstructExpression(const Type& resultType, int callLine, ConstructForm constructForm,
                        std::span<const Expression* const> values)
        : Expression(kExpression_Construct, resultType, callLine), form(constructForm),
          arguments(values) {}
};

} // namespace Tolen::OpenKL

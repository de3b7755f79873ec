#pragma once

/// @file
/// The enumerations of the shading language. Their numbers are fixed: they are stored, compared by
/// size and used as table indices all over the library.

#include "TolenCore/Export.h"

#include <cstdint>

namespace Tolen::Effects {

/// X(enumerator, value, text) for every kind of syntax node. Expression, Statement,
/// IterationStatement, Type and Declaration are base classes; the struct field kinds and the
/// declaration list have no node class and only hold their numbers.
#define TOLEN_SYNTAX_CLASSES(X)                                                                    \
    X(kClass_Expression, 0, "Expression")                                                          \
    X(kClass_Assignment, 1, "Assignment")                                                          \
    X(kClass_BoolConstant, 2, "Bool Constant")                                                     \
    X(kClass_IntConstant, 3, "Int Constant")                                                       \
    X(kClass_FloatConstant, 4, "Float Constant")                                                   \
    X(kClass_UnaryOperator, 5, "Unary Operator")                                                   \
    X(kClass_PostOperator, 6, "Post Operator")                                                     \
    X(kClass_BinaryOperator, 7, "Binary Operator")                                                 \
    X(kClass_Conditional, 8, "Conditional")                                                        \
    X(kClass_Variable, 9, "Variable")                                                              \
    X(kClass_FieldSelection, 10, "Field Selection")                                                \
    X(kClass_FunctionSelection, 11, "Function Selection")                                          \
    X(kClass_Subscript, 12, "Subscript")                                                           \
    X(kClass_FunctionCall, 13, "Function Call")                                                    \
    X(kClass_Condition, 14, "Condition")                                                           \
    X(kClass_Statement, 15, "Statement")                                                           \
    X(kClass_EmptyStatement, 16, "Empty Statement")                                                \
    X(kClass_DeclarationStatement, 17, "Declaration Statement")                                    \
    X(kClass_ExpressionStatement, 18, "Expression Statement")                                      \
    X(kClass_CompoundStatement, 19, "Compound Statement")                                          \
    X(kClass_SelectionStatement, 20, "Selection Statement")                                        \
    X(kClass_IterationStatement, 21, "Iteration Statement")                                        \
    X(kClass_WhileStatement, 22, "While Statement")                                                \
    X(kClass_DoWhileStatement, 23, "Do While Statement")                                           \
    X(kClass_ForStatement, 24, "For Statement")                                                    \
    X(kClass_JumpStatement, 25, "Jump Statement")                                                  \
    X(kClass_Type, 26, "Type")                                                                     \
    X(kClass_UserType, 27, "User Type")                                                            \
    X(kClass_StructField, 28, "Struct Field")                                                      \
    X(kClass_StructVariableField, 29, "Struct Variable Field")                                     \
    X(kClass_StructArrayField, 30, "Struct Array Field")                                           \
    X(kClass_StructFieldDeclaration, 31, "Struct Field Declaration")                               \
    X(kClass_Declaration, 32, "Declaration")                                                       \
    X(kClass_VariableDeclaration, 33, "Variable Declaration")                                      \
    X(kClass_DeclarationList, 34, "Declaration List")                                              \
    X(kClass_FunctionParameter, 35, "Function Parameter")                                          \
    X(kClass_FunctionDefinition, 36, "Function Definition")                                        \
    X(kClass_FunctionPrototype, 37, "Function Prototype")                                          \
    X(kClass_StructDefinition, 38, "Struct Definition")                                            \
    X(kClass_ClassDefinition, 39, "Class Definition")                                              \
    X(kClass_InterfaceDefinition, 40, "Interface Definition")                                      \
    X(kClass_Module, 41, "Module")

/// X(enumerator, value, keyword, channels, bytes) for every type. The zero sizes of the bvec types
/// and of mat2 are the answers clients rely on: no value of these types is kept in host memory.
#define TOLEN_TYPE_SPECIFIERS(X)                                                                   \
    X(kType_Void, 0, "void", 0, 0)                                                                 \
    X(kType_Float, 1, "float", 1, 4)                                                               \
    X(kType_Int, 2, "int", 1, 4)                                                                   \
    X(kType_Bool, 3, "bool", 1, 4)                                                                 \
    X(kType_Vec2, 4, "vec2", 2, 8)                                                                 \
    X(kType_Vec3, 5, "vec3", 3, 12)                                                                \
    X(kType_Vec4, 6, "vec4", 4, 16)                                                                \
    X(kType_BVec2, 7, "bvec2", 2, 0)                                                               \
    X(kType_BVec3, 8, "bvec3", 3, 0)                                                               \
    X(kType_BVec4, 9, "bvec4", 4, 0)                                                               \
    X(kType_IVec2, 10, "ivec2", 2, 8)                                                              \
    X(kType_IVec3, 11, "ivec3", 3, 12)                                                             \
    X(kType_IVec4, 12, "ivec4", 4, 16)                                                             \
    X(kType_Mat2, 13, "mat2", 2, 0)                                                                \
    X(kType_Mat3, 14, "mat3", 3, 36)                                                               \
    X(kType_Mat4, 15, "mat4", 4, 64)                                                               \
    X(kType_Sampler2D, 16, "sampler2D", 1, 8)                                                      \
    X(kType_Sampler3D, 17, "sampler3D", 1, 8)                                                      \
    X(kType_SamplerCube, 18, "samplerCube", 1, 8)                                                  \
    X(kType_Primitive, 19, "primitive", 1, 4)                                                      \
    X(kType_UserDefined, 20, "USERDEFINED", 0, 0)

/// X(enumerator, value, text) for every operator.
#define TOLEN_OPERATORS(X)                                                                         \
    X(kOperator_Equal, 0, "==")                                                                    \
    X(kOperator_NotEqual, 1, "!=")                                                                 \
    X(kOperator_Multiply, 2, "*")                                                                  \
    X(kOperator_Divide, 3, "/")                                                                    \
    X(kOperator_Modulo, 4, "%")                                                                    \
    X(kOperator_Add, 5, "+")                                                                       \
    X(kOperator_Subtract, 6, "-")                                                                  \
    X(kOperator_ShiftLeft, 7, "<<")                                                                \
    X(kOperator_ShiftRight, 8, ">>")                                                               \
    X(kOperator_And, 9, "&")                                                                       \
    X(kOperator_Xor, 10, "^")                                                                      \
    X(kOperator_Or, 11, "|")                                                                       \
    X(kOperator_Increment, 12, "++")                                                               \
    X(kOperator_Decrement, 13, "--")                                                               \
    X(kOperator_LogicalNot, 14, "!")                                                               \
    X(kOperator_BitNot, 15, "~")                                                                   \
    X(kOperator_LogicalAnd, 16, "&&")                                                              \
    X(kOperator_LogicalXor, 17, "^^")                                                              \
    X(kOperator_LogicalOr, 18, "||")                                                               \
    X(kOperator_Less, 19, "<")                                                                     \
    X(kOperator_Greater, 20, ">")                                                                  \
    X(kOperator_LessEqual, 21, "<=")                                                               \
    X(kOperator_GreaterEqual, 22, ">=")                                                            \
    X(kOperator_Comma, 23, ",")

/// X(enumerator, value, text) for every storage qualifier. Two values have no text of their own.
#define TOLEN_STORAGE_QUALIFIERS(X)                                                                \
    X(kStorageQualifier_None, 0, "")                                                               \
    X(kStorageQualifier_Attribute, 1, "attribute")                                                 \
    X(kStorageQualifier_Varying, 2, "varying")                                                     \
    X(kStorageQualifier_Unused, 3, "Unknown")                                                      \
    X(kStorageQualifier_TransformedVarying, 4, "transformed varying")                              \
    X(kStorageQualifier_TransformedInvariantVarying, 5, "transformed invariant varying")           \
    X(kStorageQualifier_TransformedNormalizedVarying, 6, "transformed normalized varying")         \
    X(kStorageQualifier_NormalizedVarying, 7, "normalized varying")                                \
    X(kStorageQualifier_Uniform, 8, "uniform")                                                     \
    X(kStorageQualifier_MutableUniform, 9, "mutable uniform")                                      \
    X(kStorageQualifier_RayAttribute, 10, "rayattribute")                                          \
    X(kStorageQualifier_Input, 11, "input")                                                        \
    X(kStorageQualifier_Coord, 12, "Unknown")

/// Makes enumerators of the lists above.
#define TOLEN_ENUMERATOR(name, value, text) /** `text` */ name = value,
/// Makes enumerators of types.
#define TOLEN_TYPE_ENUMERATOR(name, value, keyword, channels, bytes) /** `keyword` */ name = value,

/// The kind of a syntax node, told by Syntax::GetClass, with its name for a person.
enum Class : std::int32_t { TOLEN_SYNTAX_CLASSES(TOLEN_ENUMERATOR) };

/// The type of a value, with its keyword.
enum TypeSpecifier : std::int32_t { TOLEN_TYPE_SPECIFIERS(TOLEN_TYPE_ENUMERATOR) };

/// The operator of an assignment, a binary, a unary or a postfix node. Value 0 is the comparison
/// and, in an Assignment, the plain "="; the other assignments bear the value of their arithmetic
/// operator, so that kOperator_Add stands for "+=" there.
enum Operator : std::int32_t {
    TOLEN_OPERATORS(TOLEN_ENUMERATOR) kOperator_Assign = kOperator_Equal ///< the plain `=`
};

/// What stands before the type of a declaration, with its text, if it has one. The parser sets only
/// None, Input and Coord; the others are set by the compile stage.
enum StorageQualifier : std::int32_t { TOLEN_STORAGE_QUALIFIERS(TOLEN_ENUMERATOR) };

#undef TOLEN_TYPE_ENUMERATOR
#undef TOLEN_ENUMERATOR

/// The direction of a function parameter; In also when nothing is written.
enum ParameterQualifier : std::int32_t {
    kParameterQualifier_In = 1,    ///< copied in
    kParameterQualifier_Out = 2,   ///< copied out
    kParameterQualifier_InOut = 3, ///< copied in and out
};

/// What stands before a function.
enum FunctionQualifier : std::int32_t {
    kFunctionQualifier_None = 0,   ///< a method of each shader, or a free function
    kFunctionQualifier_Static = 1, ///< a method of the class
};

/// Where a jump goes.
enum JumpType : std::int32_t {
    kJumpType_Continue = 0, ///< to the next round of the loop
    kJumpType_Break = 1,    ///< behind the loop
    kJumpType_Return = 2,   ///< back to the caller
};

/// How the vertex stage moves a coordinate member to world space.
enum TransformationCoord : std::int32_t {
    kTransformationCoord_Coord = 0,   ///< not at all
    kTransformationCoord_Normal = 1,  ///< by the inverse transpose of the primitive's upper 3x3
    kTransformationCoord_Tangent = 2, ///< by the primitive's upper 3x3, to unit length
};

/// The precision that is printed before a type. The parser never sets it.
enum PrecisionQualifier : std::int32_t {
    kPrecisionQualifier_None = 0,   ///< nothing is printed
    kPrecisionQualifier_High = 1,   ///< "highp"
    kPrecisionQualifier_Medium = 2, ///< "mediump"
    kPrecisionQualifier_Low = 3,    ///< "lowp"
};

/// The mark of the dead code pass on functions and calls: what the printer leaves out, and why.
enum Optimization : std::int32_t {
    OptimizationNone = 0,        ///< print as usual
    OptimizationEmpty = 1,       ///< the function has an empty body; calls to it are dropped
    OptimizationNeverCalled = 2, ///< nothing calls the function
};

/// The name of a node kind for a person; "Unknown" for any other number.
TOLEN_EXPORT const char* ClassToString(Class value);

/// The keyword of a type; "USERDEFINED" for a user type, "UNKNOWN" for any other number.
TOLEN_EXPORT const char* TypeSpecifierToString(TypeSpecifier value);

/// Components of a vector, columns of a matrix, 1 for single values; 0 for void, user types and any
/// other number.
TOLEN_EXPORT int TypeSpecifierToCountChannels(TypeSpecifier value);

/// Bytes of one element in host memory; 0 for types that are never kept there and any other number.
TOLEN_EXPORT int TypeSpecifierToSizeInBytes(TypeSpecifier value);

/// The spelling of an operator as a binary, unary or postfix one; "Unknown" for any other number.
TOLEN_EXPORT const char* OperatorToString(Operator value);

/// The text of a qualifier; empty for None, "Unknown" for those without a text and any other
/// number.
TOLEN_EXPORT const char* StorageQualifierToString(StorageQualifier value);

} // namespace Tolen::Effects

#pragma once

#include "KslReduction.h"

/// Actions of the grammar: expressions, constants and types.

namespace Tolen::Effects::KslActions {

/// Whether a new node gets the range of its source text or keeps its cleared one.
enum class Range { Cleared, Token };

// ---- values that are passed on

template <int index>
void PassOn(KslReduction& reduction) {
    reduction.SetValueOf(index);
}

inline void Nothing(KslReduction& reduction) { reduction.SetNothing(); }

/// An enumerator, with the range of the keyword or operator that stands for it.
template <auto value>
void Constant(KslReduction& reduction) {
    reduction.SetEnumerator(static_cast<std::int32_t>(value));
}

inline void SetRangedNode(KslReduction& reduction, Syntax* node, Range range, int index) {
    if (range == Range::Token) {
        node->SetRange(reduction.GetRange(index));
    }
    reduction.SetNode(node);
}

// ---- constants

template <Range range>
void IntValue(KslReduction& reduction) {
    IntConstant* const node = reduction.GetParser().CreateIntConstant(reduction.GetInteger(0));
    SetRangedNode(reduction, node, range, 0);
}

/// - number
template <Range range>
void IntValueNegated(KslReduction& reduction) {
    // The lowest number is its own negation.
    const std::uint32_t value = static_cast<std::uint32_t>(reduction.GetInteger(1));
    const std::int32_t negated = static_cast<std::int32_t>(0u - value);
    SetRangedNode(reduction, reduction.GetParser().CreateIntConstant(negated), range, 1);
}

template <Range range>
void FloatValue(KslReduction& reduction) {
    FloatConstant* const node = reduction.GetParser().CreateFloatConstant(reduction.GetString(0));
    SetRangedNode(reduction, node, range, 0);
}

/// - number
template <Range range>
void FloatValueNegated(KslReduction& reduction) {
    String* const spelling = reduction.GetString(1);
    spelling->AddPrefix("-");
    SetRangedNode(reduction, reduction.GetParser().CreateFloatConstant(spelling), range, 1);
}

template <Range range>
void BoolValue(KslReduction& reduction) {
    BoolConstant* const node = reduction.GetParser().CreateBoolConstant(reduction.GetBool(0));
    SetRangedNode(reduction, node, range, 0);
}

// ---- types

template <Range range>
void BuiltinType(KslReduction& reduction) {
    const TypeSpecifier specifier = reduction.GetEnumerator<TypeSpecifier>(0);
    SetRangedNode(reduction, reduction.GetParser().CreateType(specifier), range, 0);
}

template <Range range>
void NamedType(KslReduction& reduction) {
    SetRangedNode(reduction, reduction.GetParser().CreateUserType(reduction.GetString(0)), range,
                  0);
}

/// Makes @p type an array. @param length null where the size is left out
inline void MakeArray(Type* type, Expression* length) {
    type->SetArray(true);
    type->SetLength(length);
}

// ---- operands

inline void VariableName(KslReduction& reduction) {
    Variable* const node = reduction.GetParser().CreateVariable(reduction.GetString(0));
    SetRangedNode(reduction, node, Range::Token, 0);
}

/// array [ index ]
inline void ElementOfArray(KslReduction& reduction) {
    Subscript* const node = reduction.GetParser().CreateSubscript(
        reduction.GetNode<Expression>(0), reduction.GetNode<Expression>(2));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(2));
    reduction.SetNode(node);
}

/// expression . field
inline void Field(KslReduction& reduction) {
    FieldSelection* const node = reduction.GetParser().CreateFieldSelection(
        reduction.GetNode<Expression>(0), reduction.GetString(2));
    SetRangedNode(reduction, node, Range::Token, 2);
}

/// expression . call
inline void Method(KslReduction& reduction) {
    FunctionSelection* const node = reduction.GetParser().CreateFunctionSelection(
        reduction.GetNode<Expression>(0), reduction.GetNode<FunctionCall>(2));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(2));
    reduction.SetNode(node);
}

// ---- calls

inline void NamedCall(KslReduction& reduction) {
    FunctionCall* const call = reduction.GetParser().CreateFunctionCall(reduction.GetString(0));
    SetRangedNode(reduction, call, Range::Token, 0);
}

/// The constructor of a type whose specifier has been read.
inline void ConstructorCall(KslReduction& reduction) {
    KslParser& parser = reduction.GetParser();
    Type* const type = parser.CreateType(reduction.GetEnumerator<TypeSpecifier>(0));
    SetRangedNode(reduction, parser.CreateFunctionCall(type), Range::Token, 0);
}

/// type (
template <Range range>
void InitializerCall(KslReduction& reduction) {
    Type* const type = reduction.GetNode<Type>(0);
    SetRangedNode(reduction, reduction.GetParser().CreateFunctionCall(type), range, 0);
}

/// type [ size ] (
template <Range range>
void InitializerArrayCall(KslReduction& reduction) {
    MakeArray(reduction.GetNode<Type>(0), reduction.GetNode<Expression>(2));
    InitializerCall<range>(reduction);
}

/// call argument, or call , argument
template <int index, Range range>
void AddArgument(KslReduction& reduction) {
    FunctionCall* const call = reduction.GetNode<FunctionCall>(0);
    Expression* const argument = reduction.GetNode<Expression>(index);
    call->AddParameter(argument);
    if (range == Range::Token) {
        call->ExpandRange(argument);
    }
    reduction.SetNode(call);
}

// ---- operators

/// expression op
template <Operator op>
void Postfix(KslReduction& reduction) {
    PostOperator* const node =
        reduction.GetParser().CreatePostOperator(op, reduction.GetNode<Expression>(0));
    SetRangedNode(reduction, node, Range::Token, 0);
}

/// op expression
inline void Prefix(KslReduction& reduction) {
    UnaryOperator* const node = reduction.GetParser().CreateUnaryOperator(
        reduction.GetEnumerator<Operator>(0), reduction.GetNode<Expression>(1));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(1));
    reduction.SetNode(node);
}

inline void MakeBinary(KslReduction& reduction, Operator op) {
    BinaryOperator* const node = reduction.GetParser().CreateBinaryOperator(
        op, reduction.GetNode<Expression>(0), reduction.GetNode<Expression>(2));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(2));
    reduction.SetNode(node);
}

/// left op right, with the operator as a value
inline void Binary(KslReduction& reduction) {
    MakeBinary(reduction, reduction.GetEnumerator<Operator>(1));
}

/// left op right, with the operator as a token
template <Operator op>
void BinaryOf(KslReduction& reduction) {
    MakeBinary(reduction, op);
}

/// condition ? true : false
inline void Choice(KslReduction& reduction) {
    Conditional* const node = reduction.GetParser().CreateConditional(
        reduction.GetNode<Expression>(0), reduction.GetNode<Expression>(2),
        reduction.GetNode<Expression>(4));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(4));
    reduction.SetNode(node);
}

/// left op right
inline void Assign(KslReduction& reduction) {
    Assignment* const node = reduction.GetParser().CreateAssignment(
        reduction.GetEnumerator<Operator>(1), reduction.GetNode<Expression>(0),
        reduction.GetNode<Expression>(2));
    node->SetRange(reduction.GetRange(0), reduction.GetRange(2));
    reduction.SetNode(node);
}

} // namespace Tolen::Effects::KslActions

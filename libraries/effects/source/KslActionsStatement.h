#pragma once

#include "KslActionsExpression.h"
#include "KslReduction.h"

/// Actions of the grammar: statements.

namespace Tolen::Effects::KslActions {

/// Gives @p node the range from the symbol at @p first to the one at @p last, and makes it the
/// result.
inline void SetSpannedNode(KslReduction& reduction, Syntax* node, int first, int last) {
    node->SetRange(reduction.GetRange(first), reduction.GetRange(last));
    reduction.SetNode(node);
}

/// @p tail where an expression stands there, otherwise the symbol at @p name.
inline int EndOfDeclaration(const KslReduction& reduction, int tail, int name) {
    return reduction.GetNode<Expression>(tail) != nullptr ? tail : name;
}

// ---- blocks

inline void BeginBlock(KslReduction& reduction) {
    reduction.SetNode(reduction.GetParser().CreateCompoundStatement());
}

/// block statement
inline void AddToBlock(KslReduction& reduction) {
    CompoundStatement* const block = reduction.GetNode<CompoundStatement>(0);
    Statement* const statement = reduction.GetNode<Statement>(1);
    block->AddStatement(statement);
    block->ExpandRange(statement);
    reduction.SetNode(block);
}

/// { block }
inline void Block(KslReduction& reduction) {
    CompoundStatement* const block = reduction.GetNode<CompoundStatement>(1);
    block->SetRange(reduction.GetRange(0), reduction.GetRange(2));
    reduction.SetNode(block);
}

// ---- simple statements

inline void Empty(KslReduction& reduction) {
    SetRangedNode(reduction, reduction.GetParser().CreateEmptyStatement(), Range::Token, 0);
}

inline void Evaluation(KslReduction& reduction) {
    Statement* const statement =
        reduction.GetParser().CreateExpressionStatement(reduction.GetNode<Expression>(0));
    SetRangedNode(reduction, statement, Range::Token, 0);
}

template <JumpType type>
void Jump(KslReduction& reduction) {
    Statement* const statement = reduction.GetParser().CreateJumpStatement(type, nullptr);
    SetRangedNode(reduction, statement, Range::Token, 0);
}

/// return expression ;
inline void ReturnValue(KslReduction& reduction) {
    Statement* const statement = reduction.GetParser().CreateJumpStatement(
        kJumpType_Return, reduction.GetNode<Expression>(1));
    SetRangedNode(reduction, statement, Range::Token, 1);
}

/// Makes the statement that declares a local of @p type. The name is at 1, the initializer, which
/// may be null, at @p tail.
inline void DeclareLocal(KslReduction& reduction, Type* type, int tail) {
    KslParser& parser = reduction.GetParser();
    VariableDeclaration* const declaration = parser.CreateVariableDeclaration(
        type, reduction.GetString(1), reduction.GetNode<Expression>(tail));
    SetSpannedNode(reduction, parser.CreateDeclarationStatement(declaration), 0,
                   EndOfDeclaration(reduction, tail, 1));
}

/// type name tail
inline void Local(KslReduction& reduction) {
    DeclareLocal(reduction, reduction.GetNode<Type>(0), 2);
}

/// type name [ size ] tail
inline void LocalArray(KslReduction& reduction) {
    Type* const type = reduction.GetNode<Type>(0);
    MakeArray(type, reduction.GetNode<Expression>(3));
    DeclareLocal(reduction, type, 5);
}

/// name name tail
inline void LocalOfUserType(KslReduction& reduction) {
    DeclareLocal(reduction, reduction.GetParser().CreateUserType(reduction.GetString(0)), 2);
}

/// name name [ size ] tail
inline void LocalArrayOfUserType(KslReduction& reduction) {
    Type* const type = reduction.GetParser().CreateUserType(reduction.GetString(0));
    MakeArray(type, reduction.GetNode<Expression>(3));
    DeclareLocal(reduction, type, 5);
}

// ---- selection

inline void Then(KslReduction& reduction) {
    SelectionStatement* const selection = reduction.GetParser().CreateSelectionStatement();
    selection->SetThen(reduction.GetNode<Statement>(0));
    SetRangedNode(reduction, selection, Range::Token, 0);
}

/// statement else statement
inline void ThenElse(KslReduction& reduction) {
    SelectionStatement* const selection = reduction.GetParser().CreateSelectionStatement();
    selection->SetThen(reduction.GetNode<Statement>(0));
    selection->SetElse(reduction.GetNode<Statement>(2));
    SetSpannedNode(reduction, selection, 0, 2);
}

/// if ( expression ) selection
inline void Selection(KslReduction& reduction) {
    SelectionStatement* const selection = reduction.GetNode<SelectionStatement>(4);
    selection->SetCondition(reduction.GetNode<Expression>(2));
    SetSpannedNode(reduction, selection, 2, 4);
}

// ---- loops

inline void ConditionOfExpression(KslReduction& reduction) {
    Condition* const condition =
        reduction.GetParser().CreateCondition(reduction.GetNode<Expression>(0));
    SetRangedNode(reduction, condition, Range::Token, 0);
}

/// type name = initializer
inline void ConditionOfDeclaration(KslReduction& reduction) {
    KslParser& parser = reduction.GetParser();
    Declaration* const declaration = parser.CreateVariableDeclaration(
        reduction.GetNode<Type>(0), reduction.GetString(1), reduction.GetNode<Expression>(3));
    SetSpannedNode(reduction, parser.CreateCondition(declaration), 0, 3);
}

/// while ( condition ) statement
inline void While(KslReduction& reduction) {
    Statement* const loop = reduction.GetParser().CreateWhileStatement(
        reduction.GetNode<Condition>(2), reduction.GetNode<Statement>(4));
    SetSpannedNode(reduction, loop, 2, 4);
}

/// do statement while ( expression ) ;
inline void DoWhile(KslReduction& reduction) {
    Statement* const loop = reduction.GetParser().CreateDoWhileStatement(
        reduction.GetNode<Statement>(1), reduction.GetNode<Expression>(4));
    SetSpannedNode(reduction, loop, 1, 4);
}

/// for ( initialization loop ) statement
inline void For(KslReduction& reduction) {
    ForStatement* const loop = reduction.GetNode<ForStatement>(3);
    loop->SetInitialization(reduction.GetNode<Statement>(2));
    loop->SetStatement(reduction.GetNode<Statement>(5));
    SetSpannedNode(reduction, loop, 2, 5);
}

/// condition ;
inline void ForCondition(KslReduction& reduction) {
    ForStatement* const loop = reduction.GetParser().CreateForStatement(nullptr);
    Condition* const condition = reduction.GetNode<Condition>(0);
    loop->SetCondition(condition);
    SetRangedNode(reduction, loop, Range::Token, condition != nullptr ? 0 : 1);
}

/// condition ; expression
inline void ForConditionAndIteration(KslReduction& reduction) {
    ForStatement* const loop =
        reduction.GetParser().CreateForStatement(reduction.GetNode<Expression>(2));
    Condition* const condition = reduction.GetNode<Condition>(0);
    loop->SetCondition(condition);
    SetSpannedNode(reduction, loop, condition != nullptr ? 0 : 2, 2);
}

} // namespace Tolen::Effects::KslActions

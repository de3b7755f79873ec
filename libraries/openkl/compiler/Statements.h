#pragma once

#include "compiler/Expressions.h"

#include <cstdint>
#include <span>

/// The statements of a checked text. They nest at most kMaxNesting (Limits.h) levels.
namespace Tolen::OpenKL {

enum StatementKind : std::uint8_t {
    kStatement_Block,
    kStatement_Declaration,
    kStatement_Expression,
    kStatement_If,
    kStatement_Loop,
    kStatement_Return,
    kStatement_Break,
    kStatement_Continue,
};

/// Base of all statements; `break` and `continue` are no more than this.
struct Statement {
    StatementKind kind;
    int line;

    Statement(StatementKind statementKind, int statementLine)
        : kind(statementKind), line(statementLine) {}

    /// This node as the T that its kind says it is.
    template <class T>
    const T& As() const {
        return static_cast<const T&>(*this);
    }
};

/// Statements in order; an empty statement is an empty block. Scopes have no meaning any more,
/// since every use knows its variable.
struct BlockStatement : Statement {
    std::span<const Statement* const> statements;

    BlockStatement(int blockLine, std::span<const Statement* const> children)
        : Statement(kStatement_Block, blockLine), statements(children) {}
};

/// A local variable comes to life: with its initialiser's value, otherwise 0 in every component,
/// also when a loop comes here again.
struct DeclarationStatement : Statement {
    Variable* variable;
    const Expression* initializer; ///< of the variable's type, or null

    DeclarationStatement(int declarationLine, Variable* declared, const Expression* value)
        : Statement(kStatement_Declaration, declarationLine), variable(declared),
          initializer(value) {}
};

struct ExpressionStatement : Statement {
    const Expression* expression;

    ExpressionStatement(int statementLine, const Expression* value)
        : Statement(kStatement_Expression, statementLine), expression(value) {}
};

/// One condition of an if statement with what runs when it is the first to hold.
struct IfBranch {
    const Expression* condition = nullptr; ///< bool
    const Statement* body = nullptr;
};

/// `if`, with all of its `else if` branches in a row.
struct IfStatement : Statement {
    std::span<const IfBranch> branches; ///< at least one
    const Statement* otherwise;         ///< null when there is no last `else`

    IfStatement(int ifLine, std::span<const IfBranch> conditions, const Statement* last)
        : Statement(kStatement_If, ifLine), branches(conditions), otherwise(last) {}
};

/// `for`, `while` and `do`.
struct LoopStatement : Statement {
    const Statement* init;       ///< runs once, first; null when there is none
    const Expression* condition; ///< bool; null for always
    const Expression* increment; ///< runs behind the body and on continue; null when there is none
    const Statement* body;
    bool testsFirst; ///< false for `do`, whose body runs ahead of the first test

    LoopStatement(int loopLine, const Statement* initStatement, const Expression* test,
                  const Expression* step, const Statement* loopBody, bool testBeforeBody)
        : Statement(kStatement_Loop, loopLine), init(initStatement), condition(test),
          increment(step), body(loopBody), testsFirst(testBeforeBody) {}
};

struct ReturnStatement : Statement {
    const Expression* value; ///< of the function's return type; null in a void function

    ReturnStatement(int returnLine, const Expression* returned)
        : Statement(kStatement_Return, returnLine), value(returned) {}
};

} // namespace Tolen::OpenKL

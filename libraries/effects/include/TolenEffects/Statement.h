#pragma once

/// @file
/// The statement nodes. As with expressions, operations that take a node take its ownership, and
/// setters delete the child they replace, accept null and answer true.

#include "TolenEffects/Syntax.h"

#include <cstddef>
#include <vector>

namespace Tolen::Effects {

class Condition;
class Expression;
class VariableDeclaration;

/// The base of all statements.
class TOLEN_EXPORT Statement : public Syntax {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_Statement; }

    ~Statement() override;
    Class GetClass() const override = 0;
    /// A deep copy in @p target, with the source's range, that nobody owns yet.
    virtual Statement* Clone(Module* target) const = 0;
    /// Whether @p other, which may be null, has the same structure. Ranges don't count.
    virtual bool Equals(const Statement* other) const = 0;
    /// Calls the reading Visit of @p visitor for this kind of node with @p slot, which tells the
    /// parent.
    /// @return its answer
    virtual bool AcceptVisitor(Visitor* visitor, TParentSyntaxConst<Statement>* slot) const = 0;
    /// Calls the mutating Visit of @p visitor for this kind of node with @p slot, through which the
    /// node can be replaced.
    /// @return its answer
    virtual bool AcceptVisitor(Visitor* visitor, TIParentSyntax<Statement>* slot) = 0;
    /// The module that the node belongs to.
    virtual Module* GetModule() const;

protected:
    /// A node of @p module, which is borrowed.
    explicit Statement(Module* module) : _pModule(module) {}
    Statement(const Statement&) = delete;

    Module* _pModule; ///< borrowed
};

/// A lone ";".
/// @extends Statement
class TOLEN_EXPORT EmptyStatement
    : public TSlottedNode<EmptyStatement, kClass_EmptyStatement, Statement> {
public:
    ~EmptyStatement() override;
    EmptyStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

private:
    friend class Module;
    explicit EmptyStatement(Module* module);
};

/// The declaration of a local variable, or of a global one in a module.
/// @extends Statement
class TOLEN_EXPORT DeclarationStatement
    : public TSlottedNode<DeclarationStatement, kClass_DeclarationStatement, Statement> {
public:
    ~DeclarationStatement() override;
    DeclarationStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;
    /// By the order of the declarations.
    virtual bool operator<(const DeclarationStatement& other) const;

    /// What is declared.
    VariableDeclaration* GetDeclaration() const { return _pDeclaration.get(); }

private:
    friend class Module;
    DeclarationStatement(Module* module, VariableDeclaration* declaration);

    std::unique_ptr<VariableDeclaration> _pDeclaration;
};

/// An expression with a ";" behind it.
/// @extends Statement
class TOLEN_EXPORT ExpressionStatement
    : public TSlottedNode<ExpressionStatement, kClass_ExpressionStatement, Statement> {
public:
    ~ExpressionStatement() override;
    ExpressionStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// The expression.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces the expression. @return true
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    ExpressionStatement(Module* module, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
};

/// A block in braces.
/// @extends Statement
class TOLEN_EXPORT CompoundStatement
    : public TSlottedNode<CompoundStatement, kClass_CompoundStatement, Statement> {
public:
    ~CompoundStatement() override;
    CompoundStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// Appends a statement. The first gives the block its range, each later one its new end.
    void AddStatement(Statement* statement);
    /// The statements in order, owned by the block. Who changes the list looks after the range.
    std::vector<Statement*>& GetStatements() { return _statements; }
    /// The statements, to be read.
    const std::vector<Statement*>& GetStatements() const { return _statements; }
    /// The number of statements.
    std::size_t GetCountStatements() const { return _statements.size(); }

private:
    friend class Module;
    explicit CompoundStatement(Module* module);
    CompoundStatement(Module* module, Statement* first);

    std::vector<Statement*> _statements; ///< owned
};

/// `if (condition) then else else`.
/// @extends Statement
class TOLEN_EXPORT SelectionStatement
    : public TSlottedNode<SelectionStatement, kClass_SelectionStatement, Statement> {
public:
    ~SelectionStatement() override;
    SelectionStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// What is looked at.
    Expression* GetCondition() const { return _pCondition.get(); }
    /// Replaces the condition. @return true
    bool SetCondition(Expression* condition);
    /// What runs where the condition holds.
    Statement* GetThen() const { return _pThen.get(); }
    /// Replaces what runs where the condition holds. @return true
    bool SetThen(Statement* statement);
    /// Null when there is no else branch.
    Statement* GetElse() const { return _pElse.get(); }
    /// Replaces the else branch. @return true
    bool SetElse(Statement* statement);

private:
    friend class Module;
    explicit SelectionStatement(Module* module);

    std::unique_ptr<Expression> _pCondition;
    std::unique_ptr<Statement> _pThen;
    std::unique_ptr<Statement> _pElse;
};

/// The base of the loops, which owns the body.
class TOLEN_EXPORT IterationStatement : public Statement {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass_IterationStatement; }

    ~IterationStatement() override;

    /// The body.
    Statement* GetStatement() const { return _pStatement.get(); }
    /// Replaces the body. @return true
    bool SetStatement(Statement* statement);

protected:
    /// A node of @p module, which takes @p statement for its body.
    IterationStatement(Module* module, Statement* statement);

private:
    std::unique_ptr<Statement> _pStatement;
};

/// `while (condition) statement`.
/// @extends IterationStatement
class TOLEN_EXPORT WhileStatement
    : public TSlottedNode<WhileStatement, kClass_WhileStatement, Statement, IterationStatement> {
public:
    ~WhileStatement() override;
    WhileStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// What is looked at before each round.
    Condition* GetCondition() const { return _pCondition.get(); }
    /// Replaces the condition. @return true
    bool SetCondition(Condition* condition);

private:
    friend class Module;
    WhileStatement(Module* module, Condition* condition, Statement* statement);

    std::unique_ptr<Condition> _pCondition;
};

/// `do statement while (expression);`.
/// @extends IterationStatement
class TOLEN_EXPORT DoWhileStatement : public TSlottedNode<DoWhileStatement, kClass_DoWhileStatement,
                                                          Statement, IterationStatement> {
public:
    ~DoWhileStatement() override;
    DoWhileStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// What is looked at after each round.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces what is looked at after each round. @return true
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    DoWhileStatement(Module* module, Statement* statement, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
};

/// `for (initialization condition; iteration) statement`.
/// @extends IterationStatement
class TOLEN_EXPORT ForStatement
    : public TSlottedNode<ForStatement, kClass_ForStatement, Statement, IterationStatement> {
public:
    ~ForStatement() override;
    ForStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// What runs first, with its ";".
    Statement* GetInitialization() const { return _pInitialization.get(); }
    /// Replaces what runs first. @return true
    bool SetInitialization(Statement* initialization);
    /// Null for a loop without a condition.
    Condition* GetCondition() const { return _pCondition.get(); }
    /// Replaces the condition. @return true
    bool SetCondition(Condition* condition);
    /// Null when nothing stands behind the second ";".
    Expression* GetIteration() const { return _pIteration.get(); }
    /// Replaces what runs after each round. @return true
    bool SetIteration(Expression* iteration);

private:
    friend class Module;
    ForStatement(Module* module, Expression* iteration);

    std::unique_ptr<Statement> _pInitialization;
    std::unique_ptr<Condition> _pCondition;
    std::unique_ptr<Expression> _pIteration;
};

/// `continue`, `break` or `return`.
/// @extends Statement
class TOLEN_EXPORT JumpStatement
    : public TSlottedNode<JumpStatement, kClass_JumpStatement, Statement> {
public:
    ~JumpStatement() override;
    JumpStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    /// Which of the three it is.
    JumpType GetType() const { return _type; }
    /// Makes it another of the three.
    void SetType(JumpType type) { _type = type; }
    /// The value of a `return`, null otherwise.
    Expression* GetExpression() const { return _pExpression.get(); }
    /// Replaces the value of a `return`. @return true
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    JumpStatement(Module* module, JumpType type, Expression* expression);

    JumpType _type;
    std::unique_ptr<Expression> _pExpression;
};

} // namespace Tolen::Effects

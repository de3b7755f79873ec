#pragma once

#include "TolenEffects/Syntax.h"

#include <cstddef>
#include <vector>

/// The statement nodes. As with expressions, operations that take a node take its ownership, and
/// setters delete the child they replace, accept null and answer true.

namespace Tolen::Effects {

class Condition;
class Expression;
class VariableDeclaration;

class TOLEN_EXPORT Statement : public Syntax {
public:
    static constexpr Class ClassStatic() { return kClass_Statement; }

    ~Statement() override;
    Class GetClass() const override = 0;
    /// A deep copy in @p target, with the source's range, that nobody owns yet.
    virtual Statement* Clone(Module* target) const = 0;
    /// Whether @p other, which may be null, has the same structure. Ranges don't count.
    virtual bool Equals(const Statement* other) const = 0;
    virtual bool AcceptVisitor(Visitor* visitor, TParentSyntaxConst<Statement>* slot) const = 0;
    virtual bool AcceptVisitor(Visitor* visitor, TIParentSyntax<Statement>* slot) = 0;
    /// The module that the node belongs to.
    virtual Module* GetModule() const;

protected:
    explicit Statement(Module* module) : _pModule(module) {}
    Statement(const Statement&) = delete;

    Module* _pModule; ///< borrowed
};

/// A lone ";".
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
class TOLEN_EXPORT DeclarationStatement
    : public TSlottedNode<DeclarationStatement, kClass_DeclarationStatement, Statement> {
public:
    ~DeclarationStatement() override;
    DeclarationStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;
    /// By the order of the declarations.
    virtual bool operator<(const DeclarationStatement& other) const;

    VariableDeclaration* GetDeclaration() const { return _pDeclaration.get(); }

private:
    friend class Module;
    DeclarationStatement(Module* module, VariableDeclaration* declaration);

    std::unique_ptr<VariableDeclaration> _pDeclaration;
};

class TOLEN_EXPORT ExpressionStatement
    : public TSlottedNode<ExpressionStatement, kClass_ExpressionStatement, Statement> {
public:
    ~ExpressionStatement() override;
    ExpressionStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    ExpressionStatement(Module* module, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
};

/// A block in braces.
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
    const std::vector<Statement*>& GetStatements() const { return _statements; }
    std::size_t GetCountStatements() const { return _statements.size(); }

private:
    friend class Module;
    explicit CompoundStatement(Module* module);
    CompoundStatement(Module* module, Statement* first);

    std::vector<Statement*> _statements; ///< owned
};

/// `if (condition) then else else`.
class TOLEN_EXPORT SelectionStatement
    : public TSlottedNode<SelectionStatement, kClass_SelectionStatement, Statement> {
public:
    ~SelectionStatement() override;
    SelectionStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    Expression* GetCondition() const { return _pCondition.get(); }
    bool SetCondition(Expression* condition);
    Statement* GetThen() const { return _pThen.get(); }
    bool SetThen(Statement* statement);
    /// Null when there is no else branch.
    Statement* GetElse() const { return _pElse.get(); }
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
    static constexpr Class ClassStatic() { return kClass_IterationStatement; }

    ~IterationStatement() override;

    Statement* GetStatement() const { return _pStatement.get(); }
    bool SetStatement(Statement* statement);

protected:
    IterationStatement(Module* module, Statement* statement);

private:
    std::unique_ptr<Statement> _pStatement;
};

class TOLEN_EXPORT WhileStatement
    : public TSlottedNode<WhileStatement, kClass_WhileStatement, Statement, IterationStatement> {
public:
    ~WhileStatement() override;
    WhileStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    Condition* GetCondition() const { return _pCondition.get(); }
    bool SetCondition(Condition* condition);

private:
    friend class Module;
    WhileStatement(Module* module, Condition* condition, Statement* statement);

    std::unique_ptr<Condition> _pCondition;
};

class TOLEN_EXPORT DoWhileStatement : public TSlottedNode<DoWhileStatement, kClass_DoWhileStatement,
                                                          Statement, IterationStatement> {
public:
    ~DoWhileStatement() override;
    DoWhileStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    DoWhileStatement(Module* module, Statement* statement, Expression* expression);

    std::unique_ptr<Expression> _pExpression;
};

class TOLEN_EXPORT ForStatement
    : public TSlottedNode<ForStatement, kClass_ForStatement, Statement, IterationStatement> {
public:
    ~ForStatement() override;
    ForStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    Statement* GetInitialization() const { return _pInitialization.get(); }
    bool SetInitialization(Statement* initialization);
    /// Null for a loop without a condition.
    Condition* GetCondition() const { return _pCondition.get(); }
    bool SetCondition(Condition* condition);
    /// Null when nothing stands behind the second ";".
    Expression* GetIteration() const { return _pIteration.get(); }
    bool SetIteration(Expression* iteration);

private:
    friend class Module;
    ForStatement(Module* module, Expression* iteration);

    std::unique_ptr<Statement> _pInitialization;
    std::unique_ptr<Condition> _pCondition;
    std::unique_ptr<Expression> _pIteration;
};

/// `continue`, `break` or `return`.
class TOLEN_EXPORT JumpStatement
    : public TSlottedNode<JumpStatement, kClass_JumpStatement, Statement> {
public:
    ~JumpStatement() override;
    JumpStatement* Clone(Module* target) const override;
    bool Equals(const Statement* other) const override;

    JumpType GetType() const { return _type; }
    void SetType(JumpType type) { _type = type; }
    /// The value of a `return`, null otherwise.
    Expression* GetExpression() const { return _pExpression.get(); }
    bool SetExpression(Expression* expression);

private:
    friend class Module;
    JumpStatement(Module* module, JumpType type, Expression* expression);

    JumpType _type;
    std::unique_ptr<Expression> _pExpression;
};

} // namespace Tolen::Effects

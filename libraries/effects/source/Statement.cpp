#include "TolenEffects/Statement.h"

#include "SyntaxSupport.h"

namespace Tolen::Effects {

Statement::~Statement() = default;

Module* Statement::GetModule() const {
    return _pModule;
}

EmptyStatement::EmptyStatement(Module* module) : TSlottedNode(module) {}

EmptyStatement::~EmptyStatement() = default;

DeclarationStatement::DeclarationStatement(Module* module, VariableDeclaration* declaration)
    : TSlottedNode(module), _pDeclaration(declaration) {}

DeclarationStatement::~DeclarationStatement() {
    DisposeChild(_pModule, _pDeclaration);
}

ExpressionStatement::ExpressionStatement(Module* module, Expression* expression)
    : TSlottedNode(module), _pExpression(expression) {}

ExpressionStatement::~ExpressionStatement() {
    DisposeChild(_pModule, _pExpression);
}

bool ExpressionStatement::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

CompoundStatement::CompoundStatement(Module* module) : TSlottedNode(module) {}

CompoundStatement::CompoundStatement(Module* module, Statement* first)
    : TSlottedNode(module), _statements{first} {}

CompoundStatement::~CompoundStatement() {
    DisposeChildren(_pModule, _statements);
}

void CompoundStatement::AddStatement(Statement* statement) {
    if (_statements.empty()) {
        SetRange(statement);
    } else {
        ExpandRange(statement);
    }
    _statements.push_back(statement);
}

SelectionStatement::SelectionStatement(Module* module) : TSlottedNode(module) {}

SelectionStatement::~SelectionStatement() {
    DisposeChild(_pModule, _pCondition);
    DisposeChild(_pModule, _pThen);
    DisposeChild(_pModule, _pElse);
}

bool SelectionStatement::SetCondition(Expression* condition) {
    return ReplaceChild(_pCondition, condition);
}

bool SelectionStatement::SetThen(Statement* statement) {
    return ReplaceChild(_pThen, statement);
}

bool SelectionStatement::SetElse(Statement* statement) {
    return ReplaceChild(_pElse, statement);
}

IterationStatement::IterationStatement(Module* module, Statement* statement)
    : Statement(module), _pStatement(statement) {}

IterationStatement::~IterationStatement() {
    DisposeChild(_pModule, _pStatement);
}

bool IterationStatement::SetStatement(Statement* statement) {
    return ReplaceChild(_pStatement, statement);
}

WhileStatement::WhileStatement(Module* module, Condition* condition, Statement* statement)
    : TSlottedNode(module, statement), _pCondition(condition) {}

WhileStatement::~WhileStatement() {
    DisposeChild(_pModule, _pCondition);
}

bool WhileStatement::SetCondition(Condition* condition) {
    return ReplaceChild(_pCondition, condition);
}

DoWhileStatement::DoWhileStatement(Module* module, Statement* statement, Expression* expression)
    : TSlottedNode(module, statement), _pExpression(expression) {}

DoWhileStatement::~DoWhileStatement() {
    DisposeChild(_pModule, _pExpression);
}

bool DoWhileStatement::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

ForStatement::ForStatement(Module* module, Expression* iteration)
    : TSlottedNode(module, nullptr), _pIteration(iteration) {}

ForStatement::~ForStatement() {
    DisposeChild(_pModule, _pInitialization);
    DisposeChild(_pModule, _pCondition);
    DisposeChild(_pModule, _pIteration);
}

bool ForStatement::SetInitialization(Statement* initialization) {
    return ReplaceChild(_pInitialization, initialization);
}

bool ForStatement::SetCondition(Condition* condition) {
    return ReplaceChild(_pCondition, condition);
}

bool ForStatement::SetIteration(Expression* iteration) {
    return ReplaceChild(_pIteration, iteration);
}

JumpStatement::JumpStatement(Module* module, JumpType type, Expression* expression)
    : TSlottedNode(module), _type(type), _pExpression(expression) {}

JumpStatement::~JumpStatement() {
    DisposeChild(_pModule, _pExpression);
}

bool JumpStatement::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

} // namespace Tolen::Effects

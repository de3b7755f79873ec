#include "TolenEffects/Statement.h"

#include "SyntaxSupport.h"

/// Deep copies and comparison of statements.

namespace Tolen::Effects {

EmptyStatement* EmptyStatement::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateEmptyStatement());
}

bool EmptyStatement::Equals(const Statement* other) const {
    return SameClass(this, other) != nullptr;
}

DeclarationStatement* DeclarationStatement::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateDeclarationStatement(CloneNode(_pDeclaration, target)));
}

bool DeclarationStatement::Equals(const Statement* other) const {
    const DeclarationStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pDeclaration, same->_pDeclaration);
}

bool DeclarationStatement::operator<(const DeclarationStatement& other) const {
    if (GetClass() != other.GetClass()) {
        return GetClass() < other.GetClass();
    }
    return *_pDeclaration < *other._pDeclaration;
}

ExpressionStatement* ExpressionStatement::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateExpressionStatement(CloneNode(_pExpression, target)));
}

bool ExpressionStatement::Equals(const Statement* other) const {
    const ExpressionStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pExpression, same->_pExpression);
}

CompoundStatement* CompoundStatement::Clone(Module* target) const {
    CompoundStatement* clone = target->CreateCompoundStatement();
    clone->_statements.reserve(_statements.size());
    for (const Statement* statement : _statements) {
        clone->_statements.push_back(CloneNode(statement, target));
    }
    return WithRangeOf(this, clone);
}

bool CompoundStatement::Equals(const Statement* other) const {
    const CompoundStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_statements, same->_statements);
}

SelectionStatement* SelectionStatement::Clone(Module* target) const {
    // An `else if` line may be of any length: copy downwards, each into the else of the one before.
    SelectionStatement* first = nullptr;
    SelectionStatement* previous = nullptr;
    for (const SelectionStatement* source = this;;) {
        SelectionStatement* clone = WithRangeOf(source, target->CreateSelectionStatement());
        clone->SetCondition(CloneNode(source->_pCondition, target));
        clone->SetThen(CloneNode(source->_pThen, target));
        if (previous == nullptr) {
            first = clone;
        } else {
            previous->SetElse(clone);
        }
        const SelectionStatement* next = SameClass(this, source->_pElse.get());
        if (next == nullptr) {
            clone->SetElse(CloneNode(source->_pElse, target));
            return first;
        }
        previous = clone;
        source = next;
    }
}

bool SelectionStatement::Equals(const Statement* other) const {
    const SelectionStatement* a = this;
    const SelectionStatement* b = SameClass(this, other);
    while (b != nullptr && AreEqual(a->_pCondition, b->_pCondition) &&
           AreEqual(a->_pThen, b->_pThen)) {
        const SelectionStatement* next = SameClass(this, a->_pElse.get());
        if (next == nullptr) {
            return AreEqual(a->_pElse, b->_pElse);
        }
        a = next;
        b = SameClass(this, b->_pElse.get());
    }
    return false;
}

WhileStatement* WhileStatement::Clone(Module* target) const {
    Condition* condition = CloneNode(_pCondition, target);
    Statement* statement = CloneNode(GetStatement(), target);
    return WithRangeOf(this, target->CreateWhileStatement(condition, statement));
}

bool WhileStatement::Equals(const Statement* other) const {
    const WhileStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pCondition, same->_pCondition) &&
           AreEqual(GetStatement(), same->GetStatement());
}

DoWhileStatement* DoWhileStatement::Clone(Module* target) const {
    Statement* statement = CloneNode(GetStatement(), target);
    Expression* expression = CloneNode(_pExpression, target);
    return WithRangeOf(this, target->CreateDoWhileStatement(statement, expression));
}

bool DoWhileStatement::Equals(const Statement* other) const {
    const DoWhileStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pExpression, same->_pExpression) &&
           AreEqual(GetStatement(), same->GetStatement());
}

ForStatement* ForStatement::Clone(Module* target) const {
    ForStatement* clone = target->CreateForStatement(CloneNode(_pIteration, target));
    clone->SetInitialization(CloneNode(_pInitialization, target));
    clone->SetCondition(CloneNode(_pCondition, target));
    clone->SetStatement(CloneNode(GetStatement(), target));
    return WithRangeOf(this, clone);
}

bool ForStatement::Equals(const Statement* other) const {
    const ForStatement* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pInitialization, same->_pInitialization) &&
           AreEqual(_pCondition, same->_pCondition) && AreEqual(_pIteration, same->_pIteration) &&
           AreEqual(GetStatement(), same->GetStatement());
}

JumpStatement* JumpStatement::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateJumpStatement(_type, CloneNode(_pExpression, target)));
}

bool JumpStatement::Equals(const Statement* other) const {
    const JumpStatement* same = SameClass(this, other);
    return same != nullptr && _type == same->_type && AreEqual(_pExpression, same->_pExpression);
}

} // namespace Tolen::Effects

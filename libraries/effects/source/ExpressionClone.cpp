#include "TolenEffects/Expression.h"

#include "SyntaxSupport.h"

#include <vector>

/// Deep copies and comparison of expressions.

namespace Tolen::Effects {

Assignment* Assignment::Clone(Module* target) const {
    Expression* left = CloneNode(_pLeft, target);
    Expression* right = CloneNode(_pRight, target);
    return WithRangeOf(this, target->CreateAssignment(_operator, left, right));
}

bool Assignment::Equals(const Expression* other) const {
    const Assignment* same = SameClass(this, other);
    return same != nullptr && _operator == same->_operator && AreEqual(_pLeft, same->_pLeft) &&
           AreEqual(_pRight, same->_pRight);
}

BinaryOperator* BinaryOperator::Clone(Module* target) const {
    // The operators along the left operands may be of any number: copy upwards from the last.
    std::vector<const BinaryOperator*> chain{this};
    const Expression* last = _pLeft.get();
    while (const BinaryOperator* next = SameClass(this, last)) {
        chain.push_back(next);
        last = next->_pLeft.get();
    }
    Expression* left = CloneNode(last, target);
    for (auto it = chain.rbegin(); it != chain.rend(); ++it) {
        const BinaryOperator* source = *it;
        Expression* right = CloneNode(source->_pRight, target);
        left = WithRangeOf(source, target->CreateBinaryOperator(source->_operator, left, right));
    }
    return static_cast<BinaryOperator*>(left);
}

bool BinaryOperator::Equals(const Expression* other) const {
    const BinaryOperator* a = this;
    const BinaryOperator* b = SameClass(this, other);
    while (b != nullptr && a->_operator == b->_operator && AreEqual(a->_pRight, b->_pRight)) {
        const BinaryOperator* next = SameClass(this, a->_pLeft.get());
        if (next == nullptr) {
            return AreEqual(a->_pLeft, b->_pLeft);
        }
        a = next;
        b = SameClass(this, b->_pLeft.get());
    }
    return false;
}

BoolConstant* BoolConstant::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateBoolConstant(_value));
}

bool BoolConstant::Equals(const Expression* other) const {
    const BoolConstant* same = SameClass(this, other);
    return same != nullptr && _value == same->_value;
}

IntConstant* IntConstant::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateIntConstant(_value));
}

bool IntConstant::Equals(const Expression* other) const {
    const IntConstant* same = SameClass(this, other);
    return same != nullptr && _value == same->_value;
}

FloatConstant* FloatConstant::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateFloatConstant(CloneNode(_pString, target), _value));
}

bool FloatConstant::Equals(const Expression* other) const {
    const FloatConstant* same = SameClass(this, other);
    return same != nullptr && _value == same->_value;
}

UnaryOperator* UnaryOperator::Clone(Module* target) const {
    return WithRangeOf(this,
                       target->CreateUnaryOperator(_operator, CloneNode(_pExpression, target)));
}

bool UnaryOperator::Equals(const Expression* other) const {
    const UnaryOperator* same = SameClass(this, other);
    return same != nullptr && _operator == same->_operator &&
           AreEqual(_pExpression, same->_pExpression);
}

PostOperator* PostOperator::Clone(Module* target) const {
    return WithRangeOf(
        this, target->CreatePostOperator(GetOperator(), CloneNode(GetExpression(), target)));
}

Conditional* Conditional::Clone(Module* target) const {
    Expression* condition = CloneNode(_pCondition, target);
    Expression* ifTrue = CloneNode(_pTrue, target);
    Expression* ifFalse = CloneNode(_pFalse, target);
    return WithRangeOf(this, target->CreateConditional(condition, ifTrue, ifFalse));
}

bool Conditional::Equals(const Expression* other) const {
    const Conditional* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pCondition, same->_pCondition) &&
           AreEqual(_pTrue, same->_pTrue) && AreEqual(_pFalse, same->_pFalse);
}

Variable* Variable::Clone(Module* target) const {
    return WithRangeOf(this, target->CreateVariable(CloneNode(_pIdentifier, target)));
}

bool Variable::Equals(const Expression* other) const {
    const Variable* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pIdentifier, same->_pIdentifier);
}

FieldSelection* FieldSelection::Clone(Module* target) const {
    Expression* expression = CloneNode(_pExpression, target);
    String* field = CloneNode(_pField, target);
    return WithRangeOf(this, target->CreateFieldSelection(expression, field));
}

bool FieldSelection::Equals(const Expression* other) const {
    const FieldSelection* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pField, same->_pField) &&
           AreEqual(_pExpression, same->_pExpression);
}

FunctionSelection* FunctionSelection::Clone(Module* target) const {
    Expression* expression = CloneNode(_pExpression, target);
    FunctionCall* function = CloneNode(_pFunction, target);
    return WithRangeOf(this, target->CreateFunctionSelection(expression, function));
}

bool FunctionSelection::Equals(const Expression* other) const {
    const FunctionSelection* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pExpression, same->_pExpression) &&
           AreEqual(_pFunction, same->_pFunction);
}

Subscript* Subscript::Clone(Module* target) const {
    Expression* array = CloneNode(_pArray, target);
    Expression* index = CloneNode(_pIndex, target);
    return WithRangeOf(this, target->CreateSubscript(array, index));
}

bool Subscript::Equals(const Expression* other) const {
    const Subscript* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pArray, same->_pArray) && AreEqual(_pIndex, same->_pIndex);
}

FunctionCall* FunctionCall::Clone(Module* target) const {
    FunctionCall* clone = _pName != nullptr
                              ? target->CreateFunctionCall(_pName->Clone(target))
                              : target->CreateFunctionCall(CloneNode(_pType, target));
    for (const Expression* parameter : _parameters) {
        clone->AddParameter(CloneNode(parameter, target));
    }
    return clone;
}

bool FunctionCall::Equals(const Expression* other) const {
    const FunctionCall* same = SameClass(this, other);
    return same != nullptr && AreEqual(_pName, same->_pName) &&
           (_pType == nullptr || AreEqual(_pType, same->_pType)) &&
           AreEqual(_parameters, same->_parameters);
}

bool FunctionCall::Equals(const FunctionPrototype* prototype) const {
    return prototype != nullptr && _pName != nullptr && _pName->Equals(prototype->GetName());
}

Condition* Condition::Clone(Module* target) const {
    if (_pExpression != nullptr) {
        return target->CreateCondition(_pExpression->Clone(target));
    }
    Condition* clone = target->CreateCondition(CloneNode(_pDeclaration, target));
    target->SetRange(this);
    return clone;
}

bool Condition::Equals(const Expression* other) const {
    const Condition* same = SameClass(this, other);
    if (same == nullptr) {
        return false;
    }
    if (_pExpression != nullptr && _pExpression->Equals(same->_pExpression.get())) {
        return true;
    }
    return _pDeclaration != nullptr && _pDeclaration->Equals(same->_pDeclaration.get());
}

} // namespace Tolen::Effects

#include "TolenEffects/Expression.h"

#include "SyntaxSupport.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

Expression::~Expression() = default;

Assignment::Assignment(Module* module, Operator op, Expression* left, Expression* right)
    : TSlottedNode(module), _operator(op), _pLeft(left), _pRight(right) {}

Assignment::~Assignment() {
    DisposeChild(_pModule, _pLeft);
    DisposeChild(_pModule, _pRight);
}

bool Assignment::SetLeft(Expression* left) {
    return ReplaceChild(_pLeft, left);
}

bool Assignment::SetRight(Expression* right) {
    return ReplaceChild(_pRight, right);
}

BinaryOperator::BinaryOperator(Module* module, Operator op, Expression* left, Expression* right)
    : TSlottedNode(module), _operator(op), _pLeft(left), _pRight(right) {}

BinaryOperator::~BinaryOperator() {
    DisposeChild(_pModule, _pLeft);
    DisposeChild(_pModule, _pRight);
}

bool BinaryOperator::SetLeft(Expression* left) {
    return ReplaceChild(_pLeft, left);
}

bool BinaryOperator::SetRight(Expression* right) {
    return ReplaceChild(_pRight, right);
}

BoolConstant::BoolConstant(Module* module, bool value) : TSlottedNode(module), _value(value) {}

BoolConstant::~BoolConstant() = default;

IntConstant::IntConstant(Module* module, std::int32_t value)
    : TSlottedNode(module), _value(value) {}

IntConstant::~IntConstant() = default;

FloatConstant::FloatConstant(Module* module, String* string, double value)
    : TSlottedNode(module), _value(value), _pString(string) {}

FloatConstant::~FloatConstant() {
    _pModule->DestroyString(_pString);
}

UnaryOperator::UnaryOperator(Module* module, Operator op, Expression* expression)
    : TSlottedNode(module), _operator(op), _pExpression(expression) {}

UnaryOperator::~UnaryOperator() {
    DisposeChild(_pModule, _pExpression);
}

bool UnaryOperator::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

PostOperator::PostOperator(Module* module, Operator op, Expression* expression)
    : TSlottedNode(module, op, expression) {}

PostOperator::~PostOperator() = default;

Conditional::Conditional(Module* module, Expression* condition, Expression* ifTrue,
                         Expression* ifFalse)
    : TSlottedNode(module), _pCondition(condition), _pTrue(ifTrue), _pFalse(ifFalse) {}

Conditional::~Conditional() {
    DisposeChild(_pModule, _pCondition);
    DisposeChild(_pModule, _pTrue);
    DisposeChild(_pModule, _pFalse);
}

bool Conditional::SetCondition(Expression* condition) {
    return ReplaceChild(_pCondition, condition);
}

bool Conditional::SetTrue(Expression* expression) {
    return ReplaceChild(_pTrue, expression);
}

bool Conditional::SetFalse(Expression* expression) {
    return ReplaceChild(_pFalse, expression);
}

Variable::Variable(Module* module, String* identifier)
    : TSlottedNode(module), _pIdentifier(identifier) {}

Variable::~Variable() {
    _pModule->DestroyString(_pIdentifier);
}

FieldSelection::FieldSelection(Module* module, Expression* expression, String* field)
    : TSlottedNode(module), _pExpression(expression), _pField(field) {}

FieldSelection::~FieldSelection() {
    DisposeChild(_pModule, _pExpression);
    _pModule->DestroyString(_pField);
}

bool FieldSelection::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

FunctionSelection::FunctionSelection(Module* module, Expression* expression, FunctionCall* function)
    : TSlottedNode(module), _pExpression(expression), _pFunction(function) {}

FunctionSelection::~FunctionSelection() {
    DisposeChild(_pModule, _pExpression);
    DisposeChild(_pModule, _pFunction);
}

bool FunctionSelection::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

bool FunctionSelection::SetFunction(FunctionCall* function) {
    return ReplaceChild(_pFunction, function);
}

Subscript::Subscript(Module* module, Expression* array, Expression* index)
    : TSlottedNode(module), _pArray(array), _pIndex(index) {}

Subscript::~Subscript() {
    DisposeChild(_pModule, _pArray);
    DisposeChild(_pModule, _pIndex);
}

bool Subscript::SetArray(Expression* array) {
    return ReplaceChild(_pArray, array);
}

bool Subscript::SetIndex(Expression* index) {
    return ReplaceChild(_pIndex, index);
}

FunctionCall::FunctionCall(Module* module, String* name) : TSlottedNode(module), _pName(name) {}

FunctionCall::FunctionCall(Module* module, Type* type)
    : TSlottedNode(module), _pName(nullptr), _pType(type) {}

FunctionCall::~FunctionCall() {
    DisposeChildren(_pModule, _parameters);
    _pModule->DestroyString(_pName);
    DisposeChild(_pModule, _pType);
}

bool FunctionCall::SetType(Type* type) {
    return ReplaceChild(_pType, type);
}

void FunctionCall::AddParameter(Expression* pExpression) {
    if (!TOLEN_CHECK_TEXT(pExpression != nullptr, "pExpression != NULL", "Source/Syntax")) {
        return;
    }
    _parameters.push_back(pExpression);
}

Condition::Condition(Module* module, Declaration* declaration)
    : TSlottedNode(module), _pDeclaration(declaration) {}

Condition::Condition(Module* module, Expression* expression)
    : TSlottedNode(module), _pExpression(expression) {}

Condition::~Condition() {
    DisposeChild(_pModule, _pExpression);
    DisposeChild(_pModule, _pDeclaration);
}

bool Condition::SetExpression(Expression* expression) {
    return ReplaceChild(_pExpression, expression);
}

} // namespace Tolen::Effects

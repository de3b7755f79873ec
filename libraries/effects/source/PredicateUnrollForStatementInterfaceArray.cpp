#include "PredicateUnrollForStatementInterfaceArray.h"

#include "SyntaxPieces.h"
#include "SyntaxWalk.h"

#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

namespace {

/// Looks through the body of a loop for jumps out of a single pass, and for declarations that hide
/// the loop's variable.
class BodyCheck final : public Visitor {
public:
    explicit BodyCheck(const std::string& nameVariable)
        : Visitor(kChainWalk_Iterated), _nameVariable(nameVariable) {}

    bool IsFound() const { return _isFound; }

    using Visitor::Visit;
    bool Visit(const JumpStatement* node, TParentSyntaxConst<Statement>* slot) override {
        _isFound = _isFound || (_depth == 0 && node->GetType() != kJumpType_Return);
        return Visitor::Visit(node, slot);
    }
    bool Visit(const VariableDeclaration* node) override {
        _isFound = _isFound || node->GetIdentifier()->GetString() == _nameVariable;
        return Visitor::Visit(node);
    }
    bool Visit(const ForStatement* node, TParentSyntaxConst<Statement>* slot) override {
        return _VisitLoop(node, slot);
    }
    bool Visit(const WhileStatement* node, TParentSyntaxConst<Statement>* slot) override {
        return _VisitLoop(node, slot);
    }
    bool Visit(const DoWhileStatement* node, TParentSyntaxConst<Statement>* slot) override {
        return _VisitLoop(node, slot);
    }

private:
    /// The jumps in an inner loop are its own.
    template <class Loop>
    bool _VisitLoop(const Loop* node, TParentSyntaxConst<Statement>* slot) {
        ++_depth;
        const bool goesOn = Visitor::Visit(node, slot);
        --_depth;
        return goesOn;
    }

    const std::string& _nameVariable;
    int _depth = 0; ///< inner loops around the node
    bool _isFound = false;
};

template <class Node>
using VisitorConst = TVisitorSyntaxConstDelegate<Node, TParentSyntaxConst<Expression>>;

} // namespace

PredicateUnrollForStatementInterfaceArray::PredicateUnrollForStatementInterfaceArray(
    const std::string& arrayName, const ForStatement* loop)
    : _nameArray(arrayName) {
    if (_IsHead(loop)) {
        _isValid = true;
        _CheckBody(loop);
    }
}

bool PredicateUnrollForStatementInterfaceArray::_IsHead(const ForStatement* loop) {
    return _IsInitialization(loop) && _IsCondition(loop) && _IsIteration(loop);
}

bool PredicateUnrollForStatementInterfaceArray::_IsInitialization(const ForStatement* loop) {
    const auto* const statement = AsExactly<DeclarationStatement>(loop->GetInitialization());
    if (statement == nullptr) {
        return false;
    }
    const VariableDeclaration* const declaration = statement->GetDeclaration();
    const Type* const type = declaration->GetType();
    if (type->GetTypeSpecifier() != kType_Int || type->IsArray()) {
        return false;
    }
    _nameVariable = declaration->GetIdentifier()->GetString();
    const auto* const value = AsExactly<IntConstant>(declaration->GetInitializer());
    return value != nullptr && value->GetValue() == 0;
}

bool PredicateUnrollForStatementInterfaceArray::_IsCondition(const ForStatement* loop) const {
    const Condition* const condition = loop->GetCondition();
    const auto* const comparison = AsExactly<BinaryOperator>(
        condition == nullptr ? nullptr : condition->GetExpression());
    if (comparison == nullptr || comparison->GetOperator() != kOperator_Less ||
        !IsVariable(comparison->GetLeft(), _nameVariable)) {
        return false;
    }
    const auto* const length = AsExactly<FieldSelection>(comparison->GetRight());
    return length != nullptr && length->GetField()->GetString() == "length" &&
           IsVariable(length->GetExpression(), _nameArray);
}

bool PredicateUnrollForStatementInterfaceArray::_IsIteration(const ForStatement* loop) const {
    // Exactly the prefix form: the postfix one is a node of a derived class.
    const auto* const increment = AsExactly<UnaryOperator>(loop->GetIteration());
    return increment != nullptr && increment->GetOperator() == kOperator_Increment &&
           IsVariable(increment->GetExpression(), _nameVariable);
}

void PredicateUnrollForStatementInterfaceArray::_CheckBody(const ForStatement* loop) {
    const Statement* const body = loop->GetStatement();
    if (body == nullptr) {
        _isValid = false;
        return;
    }
    TParentSyntaxConst<Statement> slot(loop);
    BodyCheck check(_nameVariable);
    body->AcceptVisitor(&check, &slot);
    if (check.IsFound()) {
        _isValid = false;
        return;
    }
    VisitorConst<FunctionSelection> selections(
        MakeDelegate(this, &PredicateUnrollForStatementInterfaceArray::_VisitFunctionSelection));
    body->AcceptVisitor(&selections, &slot);
    VisitorConst<Variable> variables(
        MakeDelegate(this, &PredicateUnrollForStatementInterfaceArray::_VisitVariable));
    body->AcceptVisitor(&variables, &slot);
}

bool PredicateUnrollForStatementInterfaceArray::_VisitFunctionSelection(
    const FunctionSelection* selection, TParentSyntaxConst<Expression>*) {
    const auto* const element = AsExactly<Subscript>(selection->GetExpression());
    if (element != nullptr && IsVariable(element->GetArray(), _nameArray) &&
        !IsVariable(element->GetIndex(), _nameVariable)) {
        _isValid = false;
    }
    return true;
}

bool PredicateUnrollForStatementInterfaceArray::_VisitVariable(
    const Variable* variable, TParentSyntaxConst<Expression>* slot) {
    if (variable->GetIdentifier()->GetString() != _nameVariable) {
        return true;
    }
    const Syntax* const parent = slot->GetParent();
    const auto* const element = AsExactly<Subscript>(parent);
    const bool isIndex = element != nullptr && element->GetIndex() == variable &&
                         IsVariable(element->GetArray(), _nameArray);
    if (!isIndex && AsExactly<FunctionCall>(parent) == nullptr) {
        _isValid = false;
    }
    return true;
}

} // namespace Tolen::Effects

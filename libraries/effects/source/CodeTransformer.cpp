#include "CodeTransformer.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include <utility>

namespace Tolen::Effects {

namespace {

/// Calls @p visit for every variable of @p code.
template <class Visit>
void _VisitVariablesOf(const std::vector<FunctionDefinition*>& code, Visit visit) {
    auto callback = [&visit](Variable* variable, TIParentSyntax<Expression>*) {
        visit(variable);
        return true;
    };
    using VisitorVariable = TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>>;
    VisitorVariable visitor(VisitorVariable::Delegate::Borrow(callback));
    for (FunctionDefinition* definition : code) {
        definition->AcceptVisitor(&visitor);
    }
}

} // namespace

CodeTransformer::CodeTransformer(std::vector<FunctionDefinition*> code) : _code(std::move(code)) {
    _VisitVariablesOf(_code, [this](const Variable* variable) {
        _names.insert(variable->GetIdentifier()->GetString());
    });
}

bool CodeTransformer::_Walk(Class, Visitor* visitor) {
    for (FunctionDefinition* definition : _code) {
        if (!definition->AcceptVisitor(visitor)) {
            return false;
        }
    }
    return true;
}

void CodeTransformer::_CollectVariables() {
    _variables.clear();
    _VisitVariablesOf(_code, [this](Variable* variable) {
        _variables[variable->GetIdentifier()->GetString()].push_back(variable);
    });
}

bool CodeTransformer::_VisitVariables(Class, Visitor* visitor) {
    for (Variable* variable : *_pRenamed) {
        if (!variable->AcceptVisitor(visitor, TParentSyntaxNull<Expression>::GetInstance())) {
            return false;
        }
    }
    return true;
}

} // namespace Tolen::Effects

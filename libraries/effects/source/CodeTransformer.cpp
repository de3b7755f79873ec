#include "CodeTransformer.h"

#include "SyntaxWalk.h"

#include "TolenEffects/VisitorDelegate.h"

#include <iterator>
#include <utility>

namespace Tolen::Effects {

namespace {

/// Calls @p visit for every variable that @p walk, which is given a visitor, comes to.
template <class Walk, class Visit>
void _ForVariables(const Walk& walk, const Visit& visit) {
    auto callback = [&visit](Variable* variable, TIParentSyntax<Expression>*) {
        visit(variable);
        return true;
    };
    using VisitorVariable = TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>>;
    VisitorVariable visitor(VisitorVariable::Delegate::Borrow(callback));
    walk(&visitor);
}

bool _WalkStatement(CompoundStatement* body, std::size_t index, Visitor* visitor) {
    auto position = std::next(body->GetStatements().begin(), static_cast<std::ptrdiff_t>(index));
    return ReplaceWalk(visitor, nullptr).Element<Statement>(position);
}

} // namespace

CodeTransformer::CodeTransformer(std::vector<FunctionDefinition*> code) : _code(std::move(code)) {
    for (const FunctionDefinition* definition : _code) {
        CompoundStatement* const body = definition->GetCompoundStatement();
        for (std::size_t i = 0; i < body->GetCountStatements(); ++i) {
            const Place place{body, i};
            _ForVariables(
                [&place](Visitor* visitor) { _WalkStatement(place.body, place.index, visitor); },
                [&](const Variable* variable) {
                    auto& places = _places[variable->GetIdentifier()->GetString()];
                    if (places.empty() || places.back() != place) {
                        places.push_back(place);
                    }
                });
        }
    }
}

bool CodeTransformer::_Walk(Class, Visitor* visitor) {
    for (const Place& place : *_pNamed) {
        if (!_WalkStatement(place.body, place.index, visitor)) {
            return false;
        }
    }
    return true;
}

void CodeTransformer::_CollectVariables() {
    _variables.clear();
    _ForVariables(
        [this](Visitor* visitor) {
            for (FunctionDefinition* definition : _code) {
                definition->AcceptVisitor(visitor);
            }
        },
        [this](Variable* variable) {
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

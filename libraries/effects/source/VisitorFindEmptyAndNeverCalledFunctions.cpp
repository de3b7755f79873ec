#include "VisitorFindEmptyAndNeverCalledFunctions.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IReferenceShader.h"
#include "TolenEffects/Module.h"

namespace Tolen::Effects {

namespace {

/// The types of the parameters, one behind the other.
std::string SignatureOf(const FunctionPrototype& prototype) {
    std::string signature;
    for (const FunctionParameter* parameter : prototype.GetParameters()) {
        signature += TypeSpecifierToString(parameter->GetType()->GetTypeSpecifier());
    }
    return signature;
}

bool ReturnsValue(const FunctionPrototype& prototype) {
    const Type* type = prototype.GetReturnType();
    return type != nullptr && type->GetTypeSpecifier() != kType_Void;
}

/// Marks a function that bears no mark yet.
template <class Node>
void MarkNeverCalled(Node* node) {
    if (node != nullptr && node->GetOptimization() == OptimizationNone) {
        node->SetOptimization(OptimizationNeverCalled);
    }
}

} // namespace

VisitorFindEmptyAndNeverCalledFunctions::VisitorFindEmptyAndNeverCalledFunctions(IGraph* graph)
    : Visitor(kChainWalk_Iterated), _pGraph(graph) {}

bool VisitorFindEmptyAndNeverCalledFunctions::Visit(Module* node) {
    _pModule = node;
    _CollectRoots();
    _CollectPrototypes();
    _CollectDefinitions();
    _MarkEmpty();
    if (!Visitor::Visit(node)) {
        return false;
    }
    _MarkNeverCalled();
    return true;
}

bool VisitorFindEmptyAndNeverCalledFunctions::Visit(FunctionCall* node,
                                                    TIParentSyntax<Expression>* slot) {
    if (FunctionInfo* info = _Find(node->GetName())) {
        if (info->pPrototype->GetOptimization() == OptimizationEmpty) {
            node->SetOptimization(OptimizationEmpty);
        } else {
            info->isUsed = true;
        }
    }
    return Visitor::Visit(node, slot);
}

void VisitorFindEmptyAndNeverCalledFunctions::_CollectRoots() {
    if (IReferenceShader* root = _pGraph->GetReferenceShader()) {
        for (const char* method : {"Init", "GetRayCount", "Shade", "Render"}) {
            if (root->HasMethod(method)) {
                _roots.insert(root->GetMethodMangled(method));
            }
        }
    }
    if (_pGraph->HasConstructor()) {
        _roots.insert(_pGraph->GetConstructor());
    }
    if (_pGraph->HasConstructorStatic()) {
        _roots.insert(_pGraph->GetConstructorStatic());
    }
}

void VisitorFindEmptyAndNeverCalledFunctions::_CollectPrototypes() {
    for (FunctionPrototype* prototype : _pModule->GetFunctionDeclarations()) {
        if (prototype->GetName() == nullptr) {
            continue;
        }
        const auto [it, isNew] = _functions.try_emplace(prototype->GetName()->GetString());
        std::string signature = SignatureOf(*prototype);
        // The marks go by name, so a name that stands for several functions is left alone.
        const bool isOverloaded = !isNew && it->second.signature != signature;
        it->second = {prototype, nullptr, isOverloaded, std::move(signature)};
    }
}

void VisitorFindEmptyAndNeverCalledFunctions::_CollectDefinitions() {
    for (FunctionDefinition* definition : _pModule->GetFunctionDefinitions()) {
        if (FunctionInfo* info = _Find(definition->GetFunctionPrototype()->GetName())) {
            info->pDefinition = definition;
        }
    }
}

void VisitorFindEmptyAndNeverCalledFunctions::_MarkEmpty() {
    for (FunctionDefinition* definition : _pModule->GetFunctionDefinitions()) {
        const FunctionPrototype& prototype = *definition->GetFunctionPrototype();
        const CompoundStatement* body = definition->GetCompoundStatement();
        if (body == nullptr || body->GetCountStatements() != 0 || ReturnsValue(prototype)) {
            continue;
        }
        FunctionInfo* info = _Find(prototype.GetName());
        if (info == nullptr || info->isUsed ||
            _roots.count(prototype.GetName()->GetString()) != 0) {
            continue;
        }
        info->pDefinition = definition;
        info->pPrototype->SetOptimization(OptimizationEmpty);
        definition->SetOptimization(OptimizationEmpty);
    }
}

void VisitorFindEmptyAndNeverCalledFunctions::_MarkNeverCalled() {
    for (auto& [name, info] : _functions) {
        if (!info.isUsed && _roots.count(name) == 0) {
            // A function that is only declared has no definition.
            MarkNeverCalled(info.pDefinition);
            MarkNeverCalled(info.pPrototype);
        }
    }
}

VisitorFindEmptyAndNeverCalledFunctions::FunctionInfo*
VisitorFindEmptyAndNeverCalledFunctions::_Find(const String* name) {
    if (name == nullptr) {
        return nullptr;
    }
    const auto it = _functions.find(name->GetString());
    return it == _functions.end() ? nullptr : &it->second;
}

} // namespace Tolen::Effects

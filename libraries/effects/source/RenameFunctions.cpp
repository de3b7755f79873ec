#include "RenameFunctions.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

namespace {

std::set<std::string> _GetFunctionsDefined(const Module* module) {
    std::set<std::string> names;
    for (const FunctionDefinition* definition : module->GetFunctionDefinitions()) {
        names.insert(definition->GetFunctionPrototype()->GetName()->GetString());
    }
    return names;
}

} // namespace

void RenameFunctions(Module* module, const std::set<std::string>& kept, const std::string& suffix) {
    std::set<std::string> renamed = _GetFunctionsDefined(module);
    for (const std::string& name : kept) {
        renamed.erase(name);
    }
    const auto rename = [&](String* name) {
        if (name != nullptr && renamed.count(name->GetString()) != 0) {
            name->SetString(name->GetString() + suffix);
        }
    };
    // The calls first: nobody looks for the functions by their old names after that.
    auto renameCall = [&](FunctionCall* call, TIParentSyntax<Expression>*) {
        rename(call->GetName());
        return true;
    };
    using VisitorCall = TVisitorSyntaxDelegate<FunctionCall, TIParentSyntax<Expression>>;
    VisitorCall visitor(VisitorCall::Delegate::Borrow(renameCall));
    module->AcceptVisitor(&visitor);
    for (FunctionPrototype* declaration : module->GetFunctionDeclarations()) {
        rename(declaration->GetName());
    }
    for (FunctionDefinition* definition : module->GetFunctionDefinitions()) {
        rename(definition->GetFunctionPrototype()->GetName());
    }
}

} // namespace Tolen::Effects

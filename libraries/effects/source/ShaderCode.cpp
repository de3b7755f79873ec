#include "Shader.h"

#include "CodeTransformer.h"
#include "GeneratedCode.h"
#include "OwnedTables.h"
#include "ParameterInterface.h"
#include "PrototypeShader.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Console.h"

#include <algorithm>
#include <utility>

/// The code of one instance: made from the class's template under the instance's own names, and
/// added to the code of graphs.

namespace Tolen::Effects {

bool Shader::CollectShader(Module* into) {
    if (!_NeedModule()) {
        return false;
    }
    const std::size_t first = into->GetCountFunctionDefinitions();
    _pModule->Clone(into);
    _pPrototype->RenameFreeFunctionCalls(into, first);
    return true;
}

bool Shader::CollectDeclarationMethod(Module* into, const std::string& method) {
    if (!HasMethod(method)) {
        ConsolePrint("Shader::CollectDeclarationMethod Method Not Found\n");
        return false;
    }
    for (const FunctionDefinition* definition :
         _pPrototype->GetDefinition()->GetMemberFunctions()) {
        const FunctionPrototype* prototype = definition->GetFunctionPrototype();
        if (prototype->GetQualifier() == kFunctionQualifier_Static ||
            prototype->GetName()->GetString() != method) {
            continue;
        }
        FunctionPrototype* copy = prototype->Clone(into);
        copy->GetName()->SetString(GetMethodNameMangled(method));
        into->AddFunctionDeclaration(copy);
    }
    return true;
}

bool Shader::VisitMethods(FastDelegate1<const FunctionDefinition*, bool>& visit) {
    if (!_NeedModule()) {
        return false;
    }
    bool all = true;
    for (const FunctionDefinition* method : std::vector<const FunctionDefinition*>(_methods)) {
        all = visit(method) && all;
    }
    return all;
}

bool Shader::_NeedModule() {
    if (_mustRebuild || _isStale) {
        _mustRebuild = false;
        _ShutdownModule();
    }
    return IsCompleteNode() && (_pModule != nullptr || _BuildModule());
}

bool Shader::_Rebuild() {
    _ShutdownModule();
    return !IsCompleteNode() || _BuildModule();
}

void Shader::_ShutdownModule() {
    _methods.clear();
    _pModule.reset();
    _isStale = false;
}

bool Shader::_BuildModule() {
    std::unique_ptr<Module> module(Module::Create(nullptr));
    std::vector<const FunctionDefinition*> methods;
    if (!_BuildMethods(module.get(), methods) || !_BuildConstructor(module.get()) ||
        !_RenameMethodCalls(module.get())) {
        return false;
    }
    // Parameters may add functions of their own, which speak of nothing of this class.
    CodeTransformer transformer(module->GetFunctionDefinitions());
    if (!_CollectParts(module.get()) || !_ApplyTransformations(transformer)) {
        return false;
    }
    _pModule = std::move(module);
    _methods = std::move(methods);
    _ProveInputs();
    return true;
}

void Shader::_ProveInputs() {
    // Loops over an array without cells leave nothing of their bodies, and hide what is wrong there.
    _isProven = std::none_of(_inputs.begin(), _inputs.end(), [](const ParameterInterface* input) {
        return input->GetLength() == 0;
    });
    for (ParameterInterface* input : _inputs) {
        input->ProveCells();
    }
}

bool Shader::_BuildMethods(Module* module, std::vector<const FunctionDefinition*>& methods) {
    // Asked for at every build: the template dies whenever the class changes.
    const ClassDefinition* source = _pPrototype->GetTemplate();
    if (source == nullptr) {
        return false;
    }
    for (const FunctionDefinition* method : source->GetMemberFunctions()) {
        FunctionDefinition* copy = method->Clone(module);
        String* name = copy->GetFunctionPrototype()->GetName();
        name->SetString(GetMethodNameMangled(name->GetString()));
        module->AddFunctionDefinition(copy);
        methods.push_back(copy);
    }
    return true;
}

bool Shader::_BuildConstructor(Module* module) {
    if (!HasConstructor()) {
        return true;
    }
    std::unique_ptr<CompoundStatement> body(module->CreateCompoundStatement());
    if (!CollectConstructors(_members, body.get()) ||
        !CollectConstructors(_parameters, body.get())) {
        return false;
    }
    DefineFunctionVoid(module, GetConstructorName(), body.release());
    _pPrototype->NameFreeFunctionCalls(module->GetFunctionDefinitions().back());
    return true;
}

bool Shader::_RenameMethodCalls(Module* module) {
    using VisitorCall = TVisitorSyntaxDelegate<FunctionCall, TIParentSyntax<Expression>>;
    VisitorCall visitor(MakeDelegate(this, &Shader::_RenameMethodCall));
    return module->AcceptVisitor(&visitor);
}

bool Shader::_RenameMethodCall(FunctionCall* call, TIParentSyntax<Expression>* parent) {
    if (call->GetName() == nullptr) {
        return true;
    }
    const Syntax* node = parent->GetParent();
    if (node != nullptr && node->GetClass() == kClass_FunctionSelection &&
        static_cast<const FunctionSelection*>(node)->GetFunction() == call) {
        return true; // the method of another object
    }
    const auto found = _methodNames.find(call->GetName()->GetString());
    if (found != _methodNames.end()) {
        call->GetName()->SetString(found->second);
    }
    return true;
}

bool Shader::_CollectParts(Module* module) {
    for (const auto& [name, parameter] : _parameters) {
        if (!parameter->CollectShader(module)) {
            return false;
        }
    }
    for (const auto& [name, member] : _members) {
        if (!member->CollectShader(module)) {
            return false;
        }
    }
    return true;
}

bool Shader::_ApplyTransformations(CodeTransformer& transformer) {
    for (const auto& [name, parameter] : _parameters) {
        if (!transformer.Apply(name, parameter.get())) {
            return false;
        }
    }
    for (const auto& [name, member] : _members) {
        if (!transformer.Apply(name, member.get())) {
            return false;
        }
    }
    return transformer.ApplyCoords(_coords);
}

} // namespace Tolen::Effects

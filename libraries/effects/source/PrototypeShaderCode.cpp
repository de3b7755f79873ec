#include "PrototypeShader.h"

#include "CodeTransformer.h"
#include "FreeFunctions.h"
#include "GeneratedCode.h"
#include "Library.h"
#include "LocationText.h"
#include "OwnedTables.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <set>
#include <utility>
#include <vector>

/// The second half of making a prototype: the tables and the declarations become the code that
/// exists once, the template of the shaders, and the functions outside of classes that both call.

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/PrototypeShader";

using SlotExpression = TIParentSyntax<Expression>;
using VisitorCall = TVisitorSyntaxDelegate<FunctionCall, SlotExpression>;

bool _IsStatic(const FunctionDefinition* method) {
    return method->GetFunctionPrototype()->GetQualifier() == kFunctionQualifier_Static;
}

/// Gathers the names before the dots of calls like `Name.method()`.
class SelectedNameCollector final : public Visitor {
public:
    SelectedNameCollector() : Visitor(kChainWalk_Iterated) {}

    using Visitor::Visit;
    bool Visit(const FunctionSelection* node, TParentSyntaxConst<Expression>* slot) override {
        const Expression* object = node->GetExpression();
        if (object->GetClass() == kClass_Variable) {
            _names.insert(static_cast<const Variable*>(object)->GetIdentifier()->GetString());
        }
        return Visitor::Visit(node, slot);
    }

    const std::set<std::string>& Get() const { return _names; }

private:
    std::set<std::string> _names;
};

} // namespace

bool PrototypeShader::CollectShader(Module* module) {
    if (_pStatic == nullptr) {
        return false;
    }
    const std::size_t first = module->GetCountFunctionDefinitions();
    _pStatic->Clone(module);
    RenameFreeFunctionCalls(module, first);
    if (_pFreeFunctions != nullptr) {
        _pFreeFunctions->Collect(module);
    }
    return true;
}

void PrototypeShader::NameFreeFunctionCalls(FunctionDefinition* constructor) const {
    if (_pFreeFunctions != nullptr) {
        _pFreeFunctions->NameCalls(constructor);
    }
}

void PrototypeShader::RenameFreeFunctionCalls(Module* module, std::size_t firstDefinition) const {
    if (_pFreeFunctions != nullptr) {
        _pFreeFunctions->RenameCalls(module, firstDefinition);
    }
}

const std::string& PrototypeShader::GetStaticMethodNameMangled(const std::string& method) const {
    static const std::string undefined = "Undefined";
    const auto found = _methodNames.find(method);
    return found == _methodNames.end() ? undefined : found->second;
}

const ClassDefinition* PrototypeShader::GetTemplate() const {
    return _pTemplate == nullptr ? nullptr : _pTemplate->GetClassDefinitions().front();
}

bool PrototypeShader::_InitStatic(const ClassDefinition* definition, Result* result) {
    if (!TOLEN_CHECK(_pStatic == NULL, kSource)) {
        return false;
    }
    std::unique_ptr<Module> module(Module::Create(nullptr));
    if (!_InitFreeFunctions(definition, result) || !_InitConstructorStatic(module.get()) ||
        !_InitStaticMethods(definition, module.get()) ||
        !_RewriteStaticCalls(_pLibrary, module.get(), result) ||
        !_RewriteOwnStaticCalls(module.get()) ||
        !_ApplyTransformations(module->GetFunctionDefinitions()) ||
        !_CollectShaderParameters(module.get()) || !_CollectShaderMembers(module.get())) {
        return false;
    }
    _pStatic = std::move(module);
    return true;
}

bool PrototypeShader::_InitConstructorStatic(Module* module) {
    std::unique_ptr<CompoundStatement> body(module->CreateCompoundStatement());
    if (!CollectConstructors(_members, body.get()) ||
        !CollectConstructors(_parameters, body.get())) {
        return false;
    }
    DefineFunctionVoid(module, GetConstructorStatic(), body.release());
    NameFreeFunctionCalls(module->GetFunctionDefinitions().back());
    return true;
}

bool PrototypeShader::_InitStaticMethods(const ClassDefinition* definition, Module* module) {
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        if (!_IsStatic(method)) {
            continue;
        }
        FunctionDefinition* copy = method->Clone(module);
        if (copy == nullptr) {
            ConsolePrint("PrototypeShader::_InitStaticMethods Clone\n");
            return false;
        }
        String* name = copy->GetFunctionPrototype()->GetName();
        name->SetString(GetStaticMethodNameMangled(name->GetString()));
        module->AddFunctionDefinition(copy);
    }
    return true;
}

bool PrototypeShader::_InitTemplate(const ClassDefinition* definition, Result* result) {
    if (!TOLEN_CHECK(_pTemplate == NULL, kSource)) {
        return false;
    }
    std::unique_ptr<Module> module(Module::Create(nullptr));
    ClassDefinition* copy = module->CreateClassDefinition();
    module->AddClassDefinition(copy);
    copy->SetName(definition->GetName()->Clone(module.get()));
    if (definition->GetInterface() != nullptr) {
        copy->SetInterface(definition->GetInterface()->Clone(module.get()));
    }
    if (!_InitTemplateMemberFunctions(definition, copy) || !_InitTemplateCoords(definition, copy) ||
        !_RewriteStaticCalls(_pLibrary, module.get(), result) ||
        !_RewriteOwnStaticCalls(module.get()) ||
        !_ApplyTransformations(copy->GetMemberFunctions())) {
        return false;
    }
    _pTemplate = std::move(module);
    return true;
}

bool PrototypeShader::_InitTemplateMemberFunctions(const ClassDefinition* definition,
                                                   ClassDefinition* copy) {
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        if (!_IsStatic(method)) {
            copy->AddMemberFunction(method->Clone(copy->GetModule()));
        }
    }
    return true;
}

bool PrototypeShader::_InitTemplateCoords(const ClassDefinition* definition,
                                          ClassDefinition* copy) {
    for (const auto& [name, coord] : definition->GetCoords()) {
        copy->AddCoord(coord->Clone(copy->GetModule()));
    }
    return true;
}

bool PrototypeShader::_InitFreeFunctions(const ClassDefinition* definition, Result* result) {
    auto functions = std::make_unique<FreeFunctions>(GetMgrEffects()->GetImplementation());
    const auto rewrite = [this, result](Library* library, Module* module) {
        return _RewriteStaticCalls(library, module, result);
    };
    if (!functions->Init(_pLibrary, definition, rewrite)) {
        return false;
    }
    if (!functions->IsEmpty()) {
        _pFreeFunctions = std::move(functions);
    }
    return true;
}

bool PrototypeShader::_RewriteStaticCalls(Library* library, Module* module, Result* result) {
    // The classes are looked up before the walk: making their prototypes nests, and would nest much
    // deeper with a walk in between.
    SelectedNameCollector names;
    std::as_const(*module).AcceptVisitor(&names);
    StaticCalls calls{{}, result};
    for (const std::string& name : names.Get()) {
        calls.classes.emplace(name, _FindPrototypeShader(library, name, result));
    }
    using VisitorSelection =
        TVisitorSyntaxDelegate1<FunctionSelection, SlotExpression, StaticCalls*>;
    VisitorSelection visitor(MakeDelegate(this, &PrototypeShader::_ReplaceFunctionSelectionStatic),
                             &calls);
    return module->AcceptVisitor(&visitor);
}

bool PrototypeShader::_RewriteOwnStaticCalls(Module* module) {
    VisitorCall visitor(MakeDelegate(this, &PrototypeShader::_ReplaceFunctionCallStatic));
    return module->AcceptVisitor(&visitor);
}

bool PrototypeShader::_ReplaceFunctionSelectionStatic(FunctionSelection* selection,
                                                      TIParentSyntax<Expression>* parent,
                                                      StaticCalls* calls) {
    const Expression* object = selection->GetExpression();
    if (object->GetClass() != kClass_Variable) {
        return true;
    }
    const auto found =
        calls->classes.find(static_cast<const Variable*>(object)->GetIdentifier()->GetString());
    if (found == calls->classes.end() || found->second == nullptr) {
        return true; // an object, whose call is rewritten by the input that holds it
    }
    PrototypeShader* prototype = found->second;
    if (!prototype->ReplaceStatic(selection, parent, calls->pResult)) {
        return false;
    }
    if (prototype != this && _staticReferences.insert(prototype).second) {
        prototype->_staticUsers.insert(this);
        _MarkHeardBelow(prototype);
        auto onDelete = MakeDelegate(this, &PrototypeShader::_OnDeleteReferenceStatic);
        prototype->AddListenerDelete(onDelete);
    }
    return true;
}

bool PrototypeShader::ReplaceStatic(FunctionSelection* selection,
                                    TIParentSyntax<Expression>* parent, Result* result) {
    const std::string& name = selection->GetFunction()->GetName()->GetString();
    if (_methodNames.count(name) == 0) {
        if (result != nullptr) {
            result->Add("%s: Class \"%s\" has no static method named \"%s\".",
                        LocationText(selection->GetRange()).c_str(), GetClassName().c_str(),
                        name.c_str());
        }
        return false;
    }
    std::unique_ptr<FunctionCall> call(selection->GetFunction()->Clone(selection->GetModule()));
    call->GetName()->SetString(GetStaticMethodNameMangled(name));
    if (!parent->SetReplacement(call.get())) {
        return false;
    }
    if (parent->GetReplacement() == call.get()) {
        call.release(); // the slot has it; one that can't be replaced leaves it here
    }
    return true;
}

bool PrototypeShader::_ReplaceFunctionCallStatic(FunctionCall* call,
                                                 TIParentSyntax<Expression>* parent) {
    if (call->GetName() == nullptr) {
        return true;
    }
    const Syntax* node = parent->GetParent();
    if (node != nullptr && node->GetClass() == kClass_FunctionSelection &&
        static_cast<const FunctionSelection*>(node)->GetFunction() == call) {
        return true;
    }
    const auto found = _methodNames.find(call->GetName()->GetString());
    if (found != _methodNames.end()) {
        call->GetName()->SetString(found->second);
    }
    return true;
}

bool PrototypeShader::_ApplyTransformations(std::vector<FunctionDefinition*> code) {
    CodeTransformer transformer(std::move(code));
    return _ApplyTransformationsParameter(transformer) && _ApplyTransformationsMember(transformer);
}

bool PrototypeShader::_ApplyTransformationsParameter(CodeTransformer& transformer) {
    for (const auto& [name, parameter] : _parameters) {
        if (!transformer.Apply(name, parameter.get())) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_ApplyTransformationsMember(CodeTransformer& transformer) {
    for (const auto& [name, member] : _members) {
        if (!transformer.Apply(name, member.get())) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_CollectShaderParameters(Module* module) {
    for (const auto& [name, parameter] : _parameters) {
        if (!parameter->CollectShader(module)) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_CollectShaderMembers(Module* module) {
    for (const auto& [name, member] : _members) {
        if (!member->CollectShader(module)) {
            return false;
        }
    }
    return true;
}

void PrototypeShader::_ShutdownCode() {
    _pFreeFunctions.reset();
    _pTemplate.reset();
    _pStatic.reset();
}

} // namespace Tolen::Effects

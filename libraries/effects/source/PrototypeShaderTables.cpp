#include "PrototypeShader.h"

#include "FacadeParameterValueSingle.h"
#include "Library.h"
#include "MemberValueArraySeparate.h"
#include "MemberValueSingleSeparate.h"
#include "MgrEffectsImpl.h"
#include "ParameterInterfaceArray.h"
#include "ParameterInterfaceSingle.h"
#include "ParameterValueArraySeparate.h"
#include "PrototypeInterface.h"
#include "PrototypeMemberValueArray.h"
#include "PrototypeMemberValueSingle.h"
#include "PrototypeParameterInterfaceArray.h"
#include "PrototypeParameterInterfaceSingle.h"
#include "PrototypeParameterValueArray.h"
#include "PrototypeParameterValueSingle.h"
#include "StructureChange.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

/// The first half of making a prototype: the declarations of the class become its tables of
/// parameters, members and their prototypes.

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/PrototypeShader";

void _Report(Result* result, const char* format, const std::string& className) {
    if (result != nullptr) {
        result->Add(format, className.c_str());
    }
}

/// The name of a static variable or method in generated code, before a key.
std::string _MangleNameStatic(const ClassDefinition* definition, const String* name) {
    return definition->GetName()->GetString() + "_" + name->GetString();
}

bool _IsInput(const VariableDeclaration* variable) {
    return variable->GetStorageQualifier() == kStorageQualifier_Input;
}

bool _IsPlain(const VariableDeclaration* variable) {
    return variable->GetStorageQualifier() == kStorageQualifier_None;
}

bool _IsBuiltIn(const VariableDeclaration* variable) {
    return variable->GetType()->GetClass() == kClass_Type;
}

bool _IsUserType(const VariableDeclaration* pMember) {
    return TOLEN_CHECK(pMember->GetType()->GetClass() == kClass_UserType, kSource);
}

/// The declared length of an array, 0 for none.
int _GetDeclaredLength(const VariableDeclaration* variable) {
    const Expression* length = variable->GetType()->GetLength();
    return length != nullptr && length->GetClass() == kClass_IntConstant
               ? static_cast<const IntConstant*>(length)->GetValue()
               : 0;
}

/// Makes a parameter or member of type T, or null.
template <class T>
std::unique_ptr<T> _Make(IMgrEffects* manager, const VariableDeclaration* variable,
                         const std::string& prefix, Result* result) {
    auto made = std::make_unique<T>();
    return made->Init(manager, variable, prefix, result) ? std::move(made) : nullptr;
}

} // namespace

bool PrototypeShader::Init(Library* library, ClassDefinition* definition, Result* result) {
    _pLibrary = library;
    _pClass = definition;
    _isBusy = true;
    if (!_InitTables(result)) {
        Shutdown();
        return false;
    }
    // Without all inputs the code waits for the change that completes them.
    const bool good = !IsComplete(result) ||
                      (_InitStatic(definition, result) && _InitTemplate(definition, result));
    _isBusy = false;
    _isReady = true;
    StructureChange::UpdateCompleteness(this);
    return good;
}

bool PrototypeShader::_InitTables(Result* result) {
    const ClassDefinition* definition = _pClass;
    const std::string& name = definition->GetName()->GetString();
    if (definition->GetInterface() != nullptr &&
        !_InitPrototypeInterface(name, definition->GetInterface()->GetString(), result)) {
        return false;
    }
    if (_pPrototypeInterface != nullptr &&
        !_ImplementsInterface(definition, _pPrototypeInterface, result)) {
        return false;
    }
    _InitMethodNameTable(definition);
    if (!_InitParameters(definition, result)) {
        _Report(result, "Prototype shader \"%s\" parameter init failed", name);
        return false;
    }
    if (!_InitMembers(definition)) {
        _Report(result, "Prototype shader \"%s\" member init failed", name);
        return false;
    }
    if (!_InitPrototypeParameters(definition, result)) {
        _Report(result, "Prototype shader \"%s\" prototype parameter init failed", name);
        return false;
    }
    if (!_InitPrototypeMembers(definition)) {
        _Report(result, "Prototype shader \"%s\" prototype member init failed", name);
        return false;
    }
    return true;
}

bool PrototypeShader::_InitPrototypeInterface(const std::string& className,
                                              const std::string& interfaceName, Result*) {
    if (!TOLEN_CHECK(_pPrototypeInterface == NULL, kSource)) {
        return false;
    }
    _pPrototypeInterface = _FindPrototypeInterface(interfaceName);
    if (_pPrototypeInterface != nullptr) {
        return true;
    }
    if (IMgrConsole* console = GetMgrEffects()->GetConsole()) {
        console->Print("Failed to find interface %s while initializing PrototypeShader %s.\n",
                       interfaceName.c_str(), className.c_str());
    }
    return false;
}

bool PrototypeShader::_ImplementsInterface(const ClassDefinition* definition,
                                           const IPrototypeInterface* prototypeInterface,
                                           Result* result) {
    std::unordered_map<std::string_view, std::vector<const FunctionPrototype*>> methods;
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        const FunctionPrototype* prototype = method->GetFunctionPrototype();
        methods[prototype->GetName()->GetString()].push_back(prototype);
    }
    const auto isImplemented = [&methods](const FunctionPrototype* wanted) {
        const auto found = methods.find(wanted->GetName()->GetString());
        if (found == methods.end()) {
            return false;
        }
        for (const FunctionPrototype* method : found->second) {
            if (wanted->Equivalent(method)) {
                return true;
            }
        }
        return false;
    };
    const InterfaceDefinition* wanted = prototypeInterface->GetDefinition();
    bool all = true;
    for (const FunctionPrototype* prototype : wanted->GetMemberFunctions()) {
        if (isImplemented(prototype)) {
            continue;
        }
        all = false;
        if (result != nullptr) {
            result->Add("Class \"%s\" is missing implementation of method \"%s\" from interface "
                        "\"%s\"\n",
                        definition->GetName()->GetString().c_str(),
                        prototype->GetName()->GetString().c_str(),
                        wanted->GetName()->GetString().c_str());
        }
    }
    return all;
}

void PrototypeShader::_InitMethodNameTable(const ClassDefinition* definition) {
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        const FunctionPrototype* prototype = method->GetFunctionPrototype();
        if (prototype->GetQualifier() == kFunctionQualifier_Static) {
            _methodNames[prototype->GetName()->GetString()] =
                _MangleNameStatic(definition, prototype->GetName());
        }
    }
}

bool PrototypeShader::_InitParameters(const ClassDefinition* definition, Result* result) {
    for (const VariableDeclaration* variable : definition->GetMemberVariables()) {
        if (_IsInput(variable) && variable->IsStatic() &&
            !_InitParameter(definition, variable, result)) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_InitParameter(const ClassDefinition* definition,
                                     const VariableDeclaration* variable, Result* result) {
    if (!_IsBuiltIn(variable)) {
        return _InitParameterInterface(variable, result);
    }
    const std::string prefix = _MangleNameStatic(definition, variable->GetIdentifier());
    std::unique_ptr<IParameter> parameter;
    if (variable->GetType()->IsArray()) {
        parameter = _Make<ParameterValueArraySeparate>(GetMgrEffects(), variable, prefix, result);
    } else {
        parameter = _Make<ParameterValueSingleSeparate>(GetMgrEffects(), variable, prefix, result);
    }
    if (parameter == nullptr) {
        return false;
    }
    auto onChange = MakeDelegate(this, &PrototypeShader::_OnChangeStructureParameter);
    parameter->AddListenerChangeStructure(onChange);
    _parameters[variable->GetIdentifier()->GetString()] = std::move(parameter);
    return true;
}

bool PrototypeShader::_InitParameterInterface(const VariableDeclaration* variable, Result* result) {
    if (!_IsUserType(variable)) {
        return false;
    }
    const ResolvedType type = _ResolveType(variable, result);
    if (type.pInterface == nullptr && type.pClass == nullptr) {
        ConsolePrint("PrototypeShader::_InitParameters Prototype Not Found\n");
        return false;
    }
    if (type.pInterface != nullptr && type.pInterface->GetDefinition() == nullptr) {
        ConsolePrint("PrototypeShader::_InitParameters Interface Definition\n");
        return false;
    }
    if (!variable->GetType()->IsArray()) {
        return _InitParameterInterfaceSingle(variable, result);
    }
    return type.pInterface != nullptr &&
           _InitParameterInterfaceArray(variable, type.pInterface->GetDefinition(), result);
}

bool PrototypeShader::_InitParameterInterfaceSingle(const VariableDeclaration* variable,
                                                    Result* result) {
    auto input = std::make_unique<ParameterInterfaceSingle>();
    if (!input->Init(GetMgrEffects(), variable, this, result)) {
        return false;
    }
    _EnterInput(variable, std::move(input));
    return true;
}

bool PrototypeShader::_InitParameterInterfaceArray(const VariableDeclaration* variable,
                                                   const InterfaceDefinition* definition,
                                                   Result* result) {
    auto input = std::make_unique<ParameterInterfaceArray>();
    if (!input->Init(GetMgrEffects(), variable, definition, this, _GetDeclaredLength(variable),
                     result)) {
        return false;
    }
    _EnterInput(variable, std::move(input));
    return true;
}

void PrototypeShader::_EnterInput(const VariableDeclaration* variable,
                                  std::unique_ptr<ParameterInterface> input) {
    GetMgrEffects()->GetImplementation()->NoteInputOfClass();
    // cppcheck-suppress danglingLifetime ; the table takes what the list points to
    _inputs.push_back(input.get());
    _parameters[variable->GetIdentifier()->GetString()] = std::move(input);
}

bool PrototypeShader::_InitMembers(const ClassDefinition* definition) {
    for (const VariableDeclaration* variable : definition->GetMemberVariables()) {
        if (_IsPlain(variable) && variable->IsStatic() && !_InitMember(definition, variable)) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_InitMember(const ClassDefinition* definition,
                                  const VariableDeclaration* variable) {
    if (!_IsBuiltIn(variable)) {
        ConsolePrint("PrototypeShader::_InitMembers Interface types not supported\n");
        return false;
    }
    const std::string prefix = _MangleNameStatic(definition, variable->GetIdentifier());
    std::unique_ptr<IMember> member;
    if (variable->GetType()->IsArray()) {
        member = _Make<MemberValueArraySeparate>(GetMgrEffects(), variable, prefix, nullptr);
    } else {
        member = _Make<MemberValueSingleSeparate>(GetMgrEffects(), variable, prefix, nullptr);
    }
    if (member == nullptr) {
        return false;
    }
    auto onChange = MakeDelegate(this, &PrototypeShader::_OnChangeLengthMemberValueArray);
    member->AddListenerChangeLength(onChange);
    _members[variable->GetIdentifier()->GetString()] = std::move(member);
    return true;
}

bool PrototypeShader::_InitPrototypeParameters(const ClassDefinition* definition, Result* result) {
    for (const VariableDeclaration* variable : definition->GetMemberVariables()) {
        if (!_IsInput(variable) || variable->IsStatic() ||
            _InitPrototypeParameter(variable, result)) {
            continue;
        }
        if (result != nullptr) {
            result->Add("Initialization of prototype param \"%s\" in class \"%s\" failed.",
                        variable->GetIdentifier()->GetString().c_str(),
                        definition->GetName()->GetString().c_str());
        }
        return false;
    }
    return true;
}

bool PrototypeShader::_InitPrototypeParameter(const VariableDeclaration* variable, Result* result) {
    if (!_IsBuiltIn(variable)) {
        const ResolvedType type = _ResolveType(variable, result);
        return type.pInterface != nullptr ? _InitPrototypeParameterInterface(variable, type)
                                          : _InitPrototypeParameterShader(variable, type);
    }
    std::unique_ptr<IPrototypeParameter>& slot =
        _prototypeParameters[variable->GetIdentifier()->GetString()];
    if (variable->GetType()->IsArray()) {
        auto prototype = std::make_unique<PrototypeParameterValueArray>();
        prototype->Init(GetMgrEffects(), variable);
        slot = std::move(prototype);
    } else {
        auto prototype = std::make_unique<PrototypeParameterValueSingle>();
        prototype->Init(this, variable);
        slot = std::move(prototype);
    }
    return true;
}

bool PrototypeShader::_InitPrototypeParameterInterface(const VariableDeclaration* variable,
                                                       const ResolvedType& type) {
    const bool isArray = variable->GetType()->IsArray();
    if (type.pInterface->GetDefinition() == nullptr) {
        ConsolePrint("PrototypeShader::_InitPrototypeParameterInterface%s Interface Definition "
                     "NULL\n",
                     isArray ? "Array" : "Single");
        return false;
    }
    const std::string& name = variable->GetIdentifier()->GetString();
    if (isArray) {
        auto prototype = std::make_unique<PrototypeParameterInterfaceArray>();
        prototype->Init(variable, type.pInterface, name, _GetDeclaredLength(variable));
        _prototypeParameters[name] = std::move(prototype);
        return true;
    }
    auto prototype = std::make_unique<PrototypeParameterInterfaceSingle>();
    if (!prototype->Init(variable, type.pInterface, name)) {
        return false;
    }
    _prototypeParameters[name] = std::move(prototype);
    return true;
}

bool PrototypeShader::_InitPrototypeParameterShader(const VariableDeclaration* variable,
                                                    const ResolvedType& type) {
    if (type.pClass == nullptr) {
        return false;
    }
    const std::string& name = variable->GetIdentifier()->GetString();
    if (variable->GetType()->IsArray()) {
        auto prototype = std::make_unique<PrototypeParameterInterfaceArray>();
        prototype->Init(variable, type.pClass, name, _GetDeclaredLength(variable));
        _prototypeParameters[name] = std::move(prototype);
    } else {
        auto prototype = std::make_unique<PrototypeParameterInterfaceSingle>();
        prototype->Init(variable, type.pClass, name);
        _prototypeParameters[name] = std::move(prototype);
    }
    return true;
}

bool PrototypeShader::_InitPrototypeMembers(const ClassDefinition* definition) {
    for (const VariableDeclaration* variable : definition->GetMemberVariables()) {
        if (_IsPlain(variable) && !variable->IsStatic() && !_InitPrototypeMember(variable)) {
            return false;
        }
    }
    return true;
}

bool PrototypeShader::_InitPrototypeMember(const VariableDeclaration* variable) {
    if (!_IsBuiltIn(variable)) {
        ConsolePrint("PrototypeShader::_InitPrototypeMemberVariables Unsupported "
                     "Interface Member Variable\n");
        return false;
    }
    std::unique_ptr<IPrototypeMember>& slot =
        _prototypeMembers[variable->GetIdentifier()->GetString()];
    if (variable->GetType()->IsArray()) {
        auto prototype = std::make_unique<PrototypeMemberValueArray>();
        prototype->Init(GetMgrEffects(), variable);
        slot = std::move(prototype);
    } else {
        auto prototype = std::make_unique<PrototypeMemberValueSingle>();
        prototype->Init(this, variable);
        slot = std::move(prototype);
    }
    return true;
}

PrototypeShader::ResolvedType PrototypeShader::_ResolveType(const VariableDeclaration* variable,
                                                            Result* result) const {
    const auto* type = static_cast<const UserType*>(variable->GetType());
    const std::string& name = type->GetName()->GetString();
    ResolvedType resolved;
    resolved.pInterface = _FindPrototypeInterface(name);
    if (resolved.pInterface == nullptr) {
        resolved.pClass = _FindPrototypeShader(_pLibrary, name, result);
    }
    return resolved;
}

IPrototypeInterface* PrototypeShader::_FindPrototypeInterface(const std::string& name) const {
    IPrototypeInterface* own = _pLibrary->GetPrototypeInterface(name);
    return own != nullptr ? own : GetMgrEffects()->GetPrototypeInterface(name);
}

PrototypeShader* PrototypeShader::_FindPrototypeShader(Library* library, const std::string& name,
                                                       Result* result) const {
    PrototypeShader* own = library->GetPrototypeShader(name, result);
    return own != nullptr
               ? own
               : static_cast<PrototypeShader*>(GetMgrEffects()->GetPrototypeShader(name, result));
}

} // namespace Tolen::Effects

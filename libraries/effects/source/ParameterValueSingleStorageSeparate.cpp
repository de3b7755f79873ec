#include "ParameterValueSingleStorageSeparate.h"

#include "IValue.h"
#include "ParameterStorage.h"
#include "ParameterValueExpression.h"
#include "ReferenceParameterValueSingleSeparate.h"
#include "SyntaxPieces.h"

#include "TolenEffects/Declaration.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Type.h"

#include "TolenCore/Result.h"

namespace Tolen::Effects {

ParameterValueSingleStorageSeparate::~ParameterValueSingleStorageSeparate() {
    Shutdown();
}

bool ParameterValueSingleStorageSeparate::Init(IMgrEffects* manager,
                                               const VariableDeclaration* declaration,
                                               const std::string& prefix, Result* result) {
    _pMgrEffects = manager;
    _pDecl = declaration;
    _key = manager->CreateKey();
    _nameMangled = prefix + _key.ToString();

    const TypeSpecifier specifier = GetTypeSpecifier();
    if (!_InitStorageLocalApplyValue(specifier)) {
        if (result != nullptr) {
            result->Add("Input \"%s\" can't be of type %s", GetName().c_str(), GetType().c_str());
        }
        Shutdown();
        return false;
    }
    const Expression* const initializer = declaration->GetInitializer();
    if (initializer != nullptr &&
        !_InitializeValue(result, _pStorage.get(), 0, specifier, initializer)) {
        if (result != nullptr) {
            result->Add("Initializer");
            result->Add("%s", GetName().c_str());
        }
        return false;
    }
    return true;
}

void ParameterValueSingleStorageSeparate::Shutdown() {
    _pStorage.reset();
    _nameMangled = "Shutdown";
    if (_pMgrEffects != nullptr && _key != Key::Null()) {
        _pMgrEffects->DestroyKey(_key);
    }
    _key = Key::Null();
    _pMgrEffects = nullptr;
    _pDecl = nullptr;
}

bool ParameterValueSingleStorageSeparate::AddListenerChangeValue(
    FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ParameterValueSingleStorageSeparate::RemoveListenerChangeValue(
    FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ParameterValueSingleStorageSeparate::AddListenerChangeStructure(
    FastDelegate1<IParameter*, bool>&) {
    return true;
}

bool ParameterValueSingleStorageSeparate::RemoveListenerChangeStructure(
    FastDelegate1<IParameter*, bool>&) {
    return true;
}

IReferenceParameter* ParameterValueSingleStorageSeparate::CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferenceParameterValueSingleSeparate>();
    return reference->Init(graph, this) ? reference.release() : nullptr;
}

bool ParameterValueSingleStorageSeparate::DestroyReference(IReferenceParameter* reference) {
    delete reference;
    return true;
}

bool ParameterValueSingleStorageSeparate::CollectConstructor(CompoundStatement*) {
    return true;
}

bool ParameterValueSingleStorageSeparate::CollectShader(Module* module) {
    AddGlobalVariable(module, GetTypeSpecifier(), _nameMangled, nullptr)
        ->SetStorageQualifier(kStorageQualifier_Uniform);
    return true;
}

bool ParameterValueSingleStorageSeparate::IsComplete(Result*) const {
    return true;
}

IParameter::ParameterClass ParameterValueSingleStorageSeparate::GetClass() {
    return kClass_Value;
}

TypeSpecifier ParameterValueSingleStorageSeparate::GetTypeSpecifier() {
    return _pDecl == nullptr ? kType_Void : _pDecl->GetType()->GetTypeSpecifier();
}

std::string ParameterValueSingleStorageSeparate::GetType() {
    return TypeSpecifierToString(GetTypeSpecifier());
}

std::string ParameterValueSingleStorageSeparate::GetName() {
    return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
}

int ParameterValueSingleStorageSeparate::GetLength() const {
    return 1;
}

bool ParameterValueSingleStorageSeparate::GetAsString(std::string& out, int index) const {
    IValue* const value = _pStorage == nullptr ? nullptr : _pStorage->GetValue();
    return value != nullptr && value->GetValueAsString(out, index);
}

bool ParameterValueSingleStorageSeparate::GetAsString(std::string& out) const {
    return GetAsString(out, 0);
}

std::string ParameterValueSingleStorageSeparate::GetNameMangled() {
    return _nameMangled;
}

bool ParameterValueSingleStorageSeparate::_InitStorageLocalApplyValue(TypeSpecifier specifier) {
    _pStorage = CreateParameterStorage(_pMgrEffects->GetOpenKLContext(),
                                       GetStorageSpecifier(specifier), 1, false);
    if (_pStorage == nullptr) {
        return false;
    }
    FastDelegate0<bool> listener =
        MakeDelegate(this, &ParameterValueSingleStorageSeparate::_OnChangeValue);
    return _pStorage->AddListenerChangeValue(listener);
}

bool ParameterValueSingleStorageSeparate::_OnChangeValue() {
    return _listenersChangeValue.Fire(this);
}

} // namespace Tolen::Effects

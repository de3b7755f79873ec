#include "ParameterValueArraySeparate.h"

#include "AccessBuffer.h"
#include "AccessSubscriptSeparate.h"
#include "AccessTexture.h"
#include "IValue.h"
#include "ParameterStorage.h"
#include "ParameterStorageBuffer.h"
#include "ParameterStorageTexture.h"
#include "ParameterValueExpression.h"
#include "ReferenceParameterValueArraySeparate.h"

#include "TolenEffects/Declaration.h"
#include "TolenEffects/Expression.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Type.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <utility>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/ParameterValueArraySeparate";

/// Makes an access that follows the length of @p storage.
template <class AccessType, class... Args>
std::unique_ptr<IAccess> MakeAccess(IStorage& storage, const Args&... args) {
    auto access = std::make_unique<AccessType>();
    if (!access->Init(args...)) {
        return nullptr;
    }
    FastDelegate1<int, bool> listener = MakeDelegate(access.get(), &AccessType::SetLength);
    storage.AddListenerChangeLength(listener);
    return access;
}

} // namespace

ParameterValueArraySeparate::~ParameterValueArraySeparate() {
    Shutdown();
}

bool ParameterValueArraySeparate::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                       const std::string& prefix, Result* result) {
    _pMgrEffects = manager;
    _pDecl = declaration;
    _key = manager->CreateKey();
    if (!_InitLength()) {
        if (result != nullptr) {
            result->Add("%s", GetName().c_str());
        }
        return false;
    }
    _nameMangled = prefix + _key.ToString();
    _accessLength.Init(GetName(), _nameMangled + "Length");
    return _InitStorage(GetTypeSpecifier(), _length, result);
}

void ParameterValueArraySeparate::Shutdown() {
    _ShutdownStorage();
    _nameMangled = "Shutdown";
    _accessLength.Init(std::string(), "Shutdown");
    if (_pMgrEffects != nullptr && _key != Key::Null()) {
        _pMgrEffects->DestroyKey(_key);
    }
    _key = Key::Null();
    _length = 0;
    _pMgrEffects = nullptr;
    _pDecl = nullptr;
}

IReferenceParameter* ParameterValueArraySeparate::CreateReference(IGraph* graph) {
    auto reference = std::make_unique<ReferenceParameterValueArraySeparate>();
    return reference->Init(graph, this) ? reference.release() : nullptr;
}

bool ParameterValueArraySeparate::DestroyReference(IReferenceParameter* reference) {
    delete reference;
    return true;
}

bool ParameterValueArraySeparate::CollectConstructor(CompoundStatement*) {
    return true;
}

bool ParameterValueArraySeparate::CollectShader(Module* module) {
    return _HasStorage() && _pAccess->CollectDeclaration(module) &&
           _accessLength.CollectDeclaration(module);
}

bool ParameterValueArraySeparate::VisitTransformations(
    FastDelegate2<Class, Visitor*, bool>& visit) {
    return _HasStorage() && _pAccess->VisitTransformations(visit) &&
           _accessLength.VisitTransformations(visit);
}

bool ParameterValueArraySeparate::IsComplete(Result*) const {
    return true;
}

IParameter::ParameterClass ParameterValueArraySeparate::GetClass() {
    return kClass_Value;
}

TypeSpecifier ParameterValueArraySeparate::GetTypeSpecifier() {
    return _pDecl == nullptr ? kType_Void : _pDecl->GetType()->GetTypeSpecifier();
}

std::string ParameterValueArraySeparate::GetType() {
    return TypeSpecifierToString(GetTypeSpecifier());
}

std::string ParameterValueArraySeparate::GetName() {
    return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
}

bool ParameterValueArraySeparate::IsArray() const {
    return true;
}

int ParameterValueArraySeparate::GetLength() const {
    return _length;
}

bool ParameterValueArraySeparate::SetLength(int length) {
    if (length == _length) {
        return true;
    }
    if (!_isResizable) {
        ConsolePrint("ParameterValueArraySeparate::SetLength Not Resizable\n");
        return false;
    }
    if (!TOLEN_CHECK(_pStorage != NULL, kSource)) {
        return false;
    }
    if ((length < 0) != (_pStorage->GetLength() < 0)) {
        return _ReplaceStorage(length) && _FireChangeLength(true);
    }
    return _ResizeStorage(length);
}

bool ParameterValueArraySeparate::IsResizable() const {
    return _isResizable;
}

bool ParameterValueArraySeparate::GetAsString(std::string& out, int index) const {
    IValue* const value = _pStorage == nullptr ? nullptr : _pStorage->GetValue();
    return value != nullptr && value->GetValueAsString(out, index);
}

bool ParameterValueArraySeparate::GetAsString(std::string& out) const {
    return GetAsString(out, 0);
}

#define TOLEN_FORWARD(specifier, T, name, bytes)                                                   \
    bool ParameterValueArraySeparate::Set(const T* values, int count) {                            \
        return _HasStorage() && _pStorage->Set(values, count);                                     \
    }                                                                                              \
    bool ParameterValueArraySeparate::Set(ArgumentOf<T> value, int index) {                        \
        return _HasStorage() && _pStorage->Set(static_cast<const T&>(value), index);               \
    }                                                                                              \
    bool ParameterValueArraySeparate::Get(T& value, int index) {                                   \
        return _HasStorage() && _pStorage->Get(value, index);                                      \
    }
TOLEN_ELEMENT_TYPES(TOLEN_FORWARD)
#undef TOLEN_FORWARD

std::string ParameterValueArraySeparate::GetNameMangled() {
    return _nameMangled;
}

std::string ParameterValueArraySeparate::GetNameLengthMangled() const {
    return _accessLength.GetName();
}

bool ParameterValueArraySeparate::ApplyLength(IKLPrimitive* primitive, IKLProgram*, int location) {
    if (!_HasStorage() || primitive == nullptr) {
        return false;
    }
    if (!primitive->SetUniform(_accessLength.GetName(), location, _length)) {
        ConsolePrint("ParameterValueArraySeparate::_ApplyLength Set Uniform\n");
        return false;
    }
    return true;
}

bool ParameterValueArraySeparate::ApplyStorage(IKLPrimitive* primitive, IKLProgram* program,
                                               int location) {
    return _HasStorage() && _pStorage->Apply(primitive, program, _nameMangled, location);
}

bool ParameterValueArraySeparate::_HasStorage() const {
    return TOLEN_CHECK_TEXT(_pStorage != nullptr, "_pStorage", kSource);
}

bool ParameterValueArraySeparate::_InitLength() {
    const Expression* const declared = _pDecl->GetType()->GetLength();
    _isResizable = declared == nullptr;
    if (_isResizable) {
        _length = GetArrayConstructorLength(_pDecl->GetInitializer());
        return true;
    }
    if (!TOLEN_CHECK(kClass_IntConstant == _pDecl->GetType()->GetLength()->GetClass(), kSource)) {
        return false;
    }
    _length = static_cast<const IntConstant*>(declared)->GetValue();
    return true;
}

bool ParameterValueArraySeparate::_InitStorage(TypeSpecifier specifier, int length,
                                               Result* result) {
    const bool isMade =
        length < 0 ? _InitStorageLocal(specifier, length) &&
                         _InitAccessSubscriptSeparate(specifier, length)
                   : _InitStorageBuffer(specifier, length) && _InitAccessBuffer(specifier, length);
    _isBuffered = length >= 0;
    if (!isMade) {
        _ShutdownStorage();
        if (result != nullptr) {
            result->Add("Input \"%s\" can't be %d elements of type %s", GetName().c_str(), length,
                        GetType().c_str());
        }
        return false;
    }
    const Expression* const initializer = _pDecl->GetInitializer();
    if (initializer != nullptr &&
        !_InitializeValueArray(result, _pStorage.get(), specifier, initializer)) {
        if (result != nullptr) {
            result->Add("%s", GetName().c_str());
        }
        return false;
    }
    _length = _pStorage->GetValue()->GetLength();
    // Nobody is to hear of the elements while the array is being made.
    FastDelegate0<bool> listener = MakeDelegate(this, &ParameterValueArraySeparate::_OnChangeValue);
    return _pStorage->AddListenerChangeValue(listener);
}

bool ParameterValueArraySeparate::_InitStorageLocal(TypeSpecifier specifier, int length) {
    _pStorage = CreateParameterStorage(_pMgrEffects->GetOpenKLContext(),
                                       GetStorageSpecifier(specifier), length, _isResizable);
    return _pStorage != nullptr;
}

bool ParameterValueArraySeparate::_InitStorageBuffer(TypeSpecifier specifier, int length) {
    _pStorage = CreateParameterStorageBuffer(_pMgrEffects->GetOpenKLContext(), this,
                                             GetStorageSpecifier(specifier), length, _isResizable);
    return _pStorage != nullptr;
}

bool ParameterValueArraySeparate::_InitStorageTexture(TypeSpecifier specifier, int length) {
    _pStorage = CreateParameterStorageTexture(_pMgrEffects->GetOpenKLContext(), this, specifier,
                                              length, _isResizable);
    return _pStorage != nullptr;
}

bool ParameterValueArraySeparate::_InitAccessSubscriptSeparate(TypeSpecifier specifier,
                                                               int length) {
    _pAccess = MakeAccess<AccessSubscriptSeparate>(*_pStorage, specifier, GetName(), _nameMangled,
                                                   length, kAccessQualifier_Uniform, nullptr);
    return _pAccess != nullptr;
}

bool ParameterValueArraySeparate::_InitAccessBuffer(TypeSpecifier specifier, int length) {
    _pAccess = MakeAccess<AccessBuffer>(*_pStorage, specifier, GetName(), _nameMangled, length);
    return _pAccess != nullptr;
}

bool ParameterValueArraySeparate::_InitAccessTexture(TypeSpecifier specifier, int length) {
    _pAccess = MakeAccess<AccessTexture>(*_pStorage, specifier, GetName(), _nameMangled, length);
    return _pAccess != nullptr;
}

void ParameterValueArraySeparate::_ShutdownStorage() {
    _pStorage.reset();
    _pAccess.reset();
}

bool ParameterValueArraySeparate::_ReplaceStorage(int length) {
    std::unique_ptr<IStorage> storage = std::move(_pStorage);
    std::unique_ptr<IAccess> access = std::move(_pAccess);
    const bool wasBuffered = _isBuffered;
    Result result;
    if (_InitStorage(GetTypeSpecifier(), length, &result)) {
        return true;
    }
    _ShutdownStorage();
    _pStorage = std::move(storage);
    _pAccess = std::move(access);
    _isBuffered = wasBuffered;
    result.ReportToConsole(nullptr);
    return false;
}

bool ParameterValueArraySeparate::_ResizeStorage(int length) {
    if (!_pStorage->SetLength(length)) {
        return false;
    }
    const int previous = std::exchange(_length, length);
    const LifeToken::Watch alive = _life.GetWatch();
    _InitializeValueArrayPartial(GetTypeSpecifier(), previous, length);
    // A listener that heard of the new elements may have changed the length again, or be rid of us.
    return !alive || _length != length || _FireChangeLength(false);
}

void ParameterValueArraySeparate::_InitializeValueArrayPartial(TypeSpecifier specifier, int first,
                                                               int end) {
    const Expression* const initializer = _pDecl->GetInitializer();
    if (first >= end || initializer == nullptr || IsArrayConstructor(initializer)) {
        return;
    }
    // The first use of the initializer shows whether it is a constant: once, not for each element.
    Result local;
    const std::unique_ptr<IStorage> trial =
        CreateParameterStorage(nullptr, GetStorageSpecifier(specifier), 1, false);
    if (!_InitializeValue(&local, trial.get(), 0, specifier, initializer)) {
        return;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    for (int i = first; alive && i < end && i < _length; ++i) {
        _InitializeValue(&local, _pStorage.get(), i, specifier, initializer);
    }
}

bool ParameterValueArraySeparate::_OnChangeValue() {
    return _listenersChangeValue.Fire(this);
}

bool ParameterValueArraySeparate::_FireChangeLength(bool isReplaced) {
    const LifeToken::Watch alive = _life.GetWatch();
    const bool isStructure = !_isBuffered || isReplaced;
    const bool isLengthFine = _listenersChangeLength.Fire(this);
    if (!alive || !isStructure) {
        return isLengthFine;
    }
    return _listenersChangeStructure.Fire(this) && isLengthFine;
}

} // namespace Tolen::Effects

#include "TolenEffects/MgrEffects.h"

#include "MgrEffectsImpl.h"

namespace Tolen::Effects {

MgrEffects::MgrEffects() : _pImplementation(std::make_unique<MgrEffectsImpl>()) {}

MgrEffects::~MgrEffects() {
    _pImplementation->Shutdown();
}

bool MgrEffects::Init(IMgrConsole* console, IOpenKLContext* context, Result* result) {
    return _pImplementation->Init(this, console, context, result);
}

void MgrEffects::Shutdown() {
    _pImplementation->Shutdown();
}

MgrEffectsImpl* MgrEffects::GetImplementation() {
    return _pImplementation.get();
}

bool MgrEffects::AddLibrary(const std::string& name, const std::string& source, Result* result) {
    return _pImplementation->AddLibrary(name, source, result);
}

bool MgrEffects::AddLibrary(const std::string& file, Result* result) {
    return _pImplementation->AddLibrary(file, result);
}

bool MgrEffects::AddRayAttribute(TypeSpecifier type, const std::string& name) {
    return _pImplementation->AddRayAttribute(type, name);
}

bool MgrEffects::AddVariableGlobal(TypeSpecifier type, const std::string& name) {
    return _pImplementation->AddVariableGlobal(type, name);
}

IPrototypeShader* MgrEffects::GetPrototypeShader(const std::string& name, Result* result) {
    return _pImplementation->GetPrototypeShader(name, result);
}

IPrototypeInterface* MgrEffects::GetPrototypeInterface(const std::string& name) {
    return _pImplementation->GetPrototypeInterface(name);
}

bool MgrEffects::VisitRayAttributes(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) {
    return _pImplementation->VisitRayAttributes(visit);
}

bool MgrEffects::VisitVariablesGlobal(
    FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) {
    return _pImplementation->VisitVariablesGlobal(visit);
}

bool MgrEffects::VisitEffectsSurface(FastDelegate1<IEffect*, bool>& visit) {
    return _pImplementation->VisitEffectsSurface(visit);
}

bool MgrEffects::VisitEffectsRenderer(FastDelegate1<IEffect*, bool>& visit) {
    return _pImplementation->VisitEffectsRenderer(visit);
}

bool MgrEffects::VisitEffectsPrefix(FastDelegate1<IEffect*, bool>& visit) {
    return _pImplementation->VisitEffectsPrefix(visit);
}

IShader* MgrEffects::CreateShader(const std::string& name, Result* result) {
    return _pImplementation->CreateShader(name, result);
}

IShader* MgrEffects::CreateShader(const std::string& name) {
    return _pImplementation->CreateShader(name);
}

void MgrEffects::DestroyShader(IShader* shader) {
    _pImplementation->DestroyShader(shader);
}

IEffect* MgrEffects::CreateEffectSurface() {
    return _pImplementation->CreateEffectSurface();
}

void MgrEffects::DestroyEffectSurface(IEffect* effect) {
    _pImplementation->DestroyEffectSurface(effect);
}

IEffect* MgrEffects::CreateEffectRenderer() {
    return _pImplementation->CreateEffectRenderer();
}

void MgrEffects::DestroyEffectRenderer(IEffect* effect) {
    _pImplementation->DestroyEffectRenderer(effect);
}

IEffect* MgrEffects::CreateEffectPrefix() {
    return _pImplementation->CreateEffectPrefix();
}

void MgrEffects::DestroyEffectPrefix(IEffect* effect) {
    _pImplementation->DestroyEffectPrefix(effect);
}

bool MgrEffects::AddListenerAddOutput(
    FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) {
    return _pImplementation->AddListenerAddOutput(listener);
}

bool MgrEffects::RemoveListenerAddOutput(
    FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) {
    return _pImplementation->RemoveListenerAddOutput(listener);
}

bool MgrEffects::AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) {
    return _pImplementation->AddListenerRemoveOutput(listener);
}

bool MgrEffects::RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) {
    return _pImplementation->RemoveListenerRemoveOutput(listener);
}

bool MgrEffects::AcquireOutput(TypeSpecifier type, const std::string& name) {
    return _pImplementation->AcquireOutput(type, name);
}

bool MgrEffects::ReleaseOutput(const std::string& name) {
    return _pImplementation->ReleaseOutput(name);
}

int MgrEffects::GetCountOutputs() {
    return _pImplementation->GetCountOutputs();
}

bool MgrEffects::HasOutput(const std::string& name) {
    return _pImplementation->HasOutput(name);
}

bool MgrEffects::VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) {
    return _pImplementation->VisitOutputs(visit);
}

bool MgrEffects::SetOutputAttachmentIndex(const std::string& name, int index) {
    return _pImplementation->SetOutputAttachmentIndex(name, index);
}

bool MgrEffects::GetOutputAttachmentIndex(int& index, const std::string& name) {
    return _pImplementation->GetOutputAttachmentIndex(index, name);
}

bool MgrEffects::ClearOutputAttachmentIndex(const std::string& name) {
    return _pImplementation->ClearOutputAttachmentIndex(name);
}

bool MgrEffects::AddListenerChangeOutputIndices(FastDelegate0<bool>& listener) {
    return _pImplementation->AddListenerChangeOutputIndices(listener);
}

bool MgrEffects::RemoveListenerChangeOutputIndices(FastDelegate0<bool>& listener) {
    return _pImplementation->RemoveListenerChangeOutputIndices(listener);
}

bool MgrEffects::Update() {
    return _pImplementation->Update();
}

bool MgrEffects::Update(Result* result) {
    return _pImplementation->Update(result);
}

Key MgrEffects::CreateKey() {
    return _pImplementation->CreateKey();
}

void MgrEffects::DestroyKey(Key& key) {
    _pImplementation->DestroyKey(key);
}

IMgrConsole* MgrEffects::GetConsole() const {
    return _pImplementation->GetConsole();
}

IOpenKLContext* MgrEffects::GetOpenKLContext() const {
    return _pImplementation->GetOpenKLContext();
}

Profiler* MgrEffects::GetProfiler() const {
    return _pImplementation->GetProfiler();
}

} // namespace Tolen::Effects

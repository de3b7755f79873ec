#include "ReferencePrototypeShader.h"

#include "IPrototypeMember.h"
#include "IPrototypeParameter.h"
#include "IReferencePrototypeMember.h"
#include "IReferencePrototypeParameter.h"
#include "PrototypeShader.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IReferenceMember.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IReferenceShader.h"

#include "TolenCore/Console.h"

#include <algorithm>

namespace Tolen::Effects {

ReferencePrototypeShader::~ReferencePrototypeShader() { Shutdown(); }

bool ReferencePrototypeShader::Init(PrototypeShader* prototype, IGraph* graph) {
    _pPrototypeShader = prototype;
    _pGraph = graph;
    if (!_InitParts()) {
        Shutdown();
        return false;
    }
    return true;
}

bool ReferencePrototypeShader::_InitParts() {
    auto initOutput = MakeDelegate(this, &ReferencePrototypeShader::_InitOutput);
    auto initParameter = MakeDelegate(this, &ReferencePrototypeShader::_InitReferenceParameter);
    auto initMember = MakeDelegate(this, &ReferencePrototypeShader::_InitReferenceMember);
    auto initPrototypeParameter =
        MakeDelegate(this, &ReferencePrototypeShader::_InitReferencePrototypeParameter);
    if (!_pPrototypeShader->VisitOutputs(initOutput) ||
        !_pPrototypeShader->VisitParameters(initParameter) ||
        !_pPrototypeShader->VisitMembers(initMember) ||
        !_pPrototypeShader->VisitPrototypeParameters(initPrototypeParameter) ||
        !_InitReferencePrototypeMembers()) {
        return false;
    }

    auto collect = MakeDelegate(this, &ReferencePrototypeShader::_CollectShader);
    auto apply = MakeDelegate(this, &ReferencePrototypeShader::Apply);
    auto onChange =
        MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructurePrototypeMember);
    _isEntered = true;
    return _pGraph->AddReferencePrototypeShader(_pPrototypeShader, this) &&
           _pGraph->AddDelegateCollectShader(collect) && _pGraph->AddDelegateApply(apply) &&
           _pPrototypeShader->AddListenerChangeStructure(onChange);
}

void ReferencePrototypeShader::Shutdown() {
    if (_pPrototypeShader == nullptr) {
        return;
    }
    auto onChange =
        MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructurePrototypeMember);
    _pPrototypeShader->RemoveListenerChangeStructure(onChange);
    _ShutdownOutputs();
    if (_isEntered) {
        auto apply = MakeDelegate(this, &ReferencePrototypeShader::Apply);
        auto collect = MakeDelegate(this, &ReferencePrototypeShader::_CollectShader);
        _pGraph->RemoveDelegateApply(apply);
        _pGraph->RemoveDelegateCollectShader(collect);
        _pGraph->RemoveReferencePrototypeShader(_pPrototypeShader);
        _isEntered = false;
    }
    _referenceShaders.TakeAll();
    _ShutdownReferenceParameters();
    _ShutdownReferenceMembers();
    _ShutdownReferencePrototypeParameters();
    _ShutdownReferencePrototypeMembers();
    _ShutdownReferencePrototypeShadersStatic();
    _pPrototypeShader = nullptr;
    _pGraph = nullptr;
}

bool ReferencePrototypeShader::Release() { return _pPrototypeShader->ReleaseReference(this); }

bool ReferencePrototypeShader::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    return _ApplyReferenceParameters(primitive, program) &&
           _ApplyReferenceMembers(primitive, program) && _ApplyReferenceShaders(primitive, program);
}

bool ReferencePrototypeShader::AddReferenceShader(IReferenceShader* reference) {
    _referenceShaders.Add(reference);
    const bool acquired = _pPrototypeShader->AcquireReference(_pGraph) != nullptr;
    return acquired && (_referenceShaders.GetCount() > 1 || _InitReferencePrototypeShadersStatic());
}

bool ReferencePrototypeShader::RemoveReferenceShader(IReferenceShader* reference) {
    if (_referenceShaders.Take(reference) == nullptr) {
        ConsolePrint("ReferencePrototypeShader::RemoveReferenceShader Reference Not Found\n");
        return false;
    }
    if (_referenceShaders.IsEmpty()) {
        _ShutdownReferencePrototypeShadersStatic();
    }
    return _pPrototypeShader->ReleaseReference(this);
}

bool ReferencePrototypeShader::VisitReferenceShaders(
    FastDelegate1<IReferenceShader*, bool>& visit) {
    bool all = true;
    const std::vector<IReferenceShader*> references(_referenceShaders.begin(),
                                                    _referenceShaders.end());
    for (IReferenceShader* reference : references) {
        all = (reference == nullptr || visit(reference)) && all;
    }
    return all;
}

int ReferencePrototypeShader::GetCountReferenceShader() const {
    return static_cast<int>(_referenceShaders.GetCount());
}

bool ReferencePrototypeShader::HasConstructorStatic() const { return true; }

std::string ReferencePrototypeShader::GetConstructorStatic() const {
    return _pPrototypeShader->GetConstructorStatic();
}

bool ReferencePrototypeShader::IsComplete(Result* result) const {
    return _pPrototypeShader->IsComplete(result);
}

IReferencePrototypeParameter* ReferencePrototypeShader::GetParameter(const std::string& name) const {
    const auto found = _referencePrototypeParameters.find(name);
    return found == _referencePrototypeParameters.end() ? nullptr : found->second;
}

bool ReferencePrototypeShader::AddListenerChangeStructure(FastDelegate0<bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool ReferencePrototypeShader::RemoveListenerChangeStructure(FastDelegate0<bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

bool ReferencePrototypeShader::_InitOutput(TypeSpecifier type, const std::string& name) {
    if (!_pGraph->AcquireOutput(type, name)) {
        return false;
    }
    _outputsAcquired.push_back(name);
    return true;
}

bool ReferencePrototypeShader::_InitReferenceParameter(const std::string& name,
                                                       IParameter* parameter) {
    IReferenceParameter* const reference = parameter->CreateReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    _referenceParameters[name] = reference;
    auto relay = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructureReferenceParameter);
    return reference->AddListenerChangeStructure(relay);
}

bool ReferencePrototypeShader::_InitReferenceMember(const std::string& name, IMember* member) {
    IReferenceMember* const reference = member->CreateReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    _referenceMembers[name] = reference;
    auto relay = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeLengthReferenceMember);
    return reference->AddListenerChangeLength(relay);
}

bool ReferencePrototypeShader::_InitReferencePrototypeParameter(const std::string& name,
                                                                IPrototypeParameter* parameter) {
    IReferencePrototypeParameter* const reference = parameter->CreateReference(this);
    if (reference == nullptr) {
        return false;
    }
    _referencePrototypeParameters[name] = reference;
    return true;
}

bool ReferencePrototypeShader::_InitReferencePrototypeMember(const std::string& name,
                                                             IPrototypeMember* member) {
    IReferencePrototypeMember* const reference = member->CreateReference(this);
    if (reference == nullptr) {
        return false;
    }
    _referencePrototypeMembers[name] = reference;
    return true;
}

bool ReferencePrototypeShader::_InitReferencePrototypeMembers() {
    auto init = MakeDelegate(this, &ReferencePrototypeShader::_InitReferencePrototypeMember);
    return _pPrototypeShader->VisitPrototypeMembers(init);
}

bool ReferencePrototypeShader::_InitReferencePrototypeShadersStatic() {
    std::vector<IPrototypeShader*> reached{_pPrototypeShader};
    auto reach = [&reached](IPrototypeShader* prototype) {
        if (std::find(reached.begin(), reached.end(), prototype) == reached.end()) {
            reached.push_back(prototype);
        }
        return true;
    };
    auto visit = FastDelegate1<IPrototypeShader*, bool>::Borrow(reach);
    for (std::size_t i = 0; i < reached.size(); ++i) {
        static_cast<PrototypeShader*>(reached[i])->VisitPrototypeShadersStatic(visit);
    }
    reached.erase(reached.begin());

    const auto held = _referencePrototypeShadersStatic;
    for (const auto& [prototype, reference] : held) {
        if (std::find(reached.begin(), reached.end(), prototype) == reached.end()) {
            _ReleaseStatic(prototype);
        }
    }
    for (IPrototypeShader* prototype : reached) {
        if (!_AcquireStatic(prototype)) {
            return false;
        }
    }
    return true;
}

bool ReferencePrototypeShader::_AcquireStatic(IPrototypeShader* prototype) {
    for (const auto& [known, reference] : _referencePrototypeShadersStatic) {
        if (known == prototype) {
            return true;
        }
    }
    ReferencePrototypeShader* const reference = prototype->AcquireReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    _referencePrototypeShadersStatic.emplace_back(prototype, reference);
    auto onDelete = MakeDelegate(this, &ReferencePrototypeShader::_OnDeletePrototypeStatic);
    auto onChange = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructureStatic);
    return prototype->AddListenerDelete(onDelete) && reference->AddListenerChangeStructure(onChange);
}

void ReferencePrototypeShader::_ReleaseStatic(IPrototypeShader* prototype) {
    const auto found =
        std::find_if(_referencePrototypeShadersStatic.begin(), _referencePrototypeShadersStatic.end(),
                     [prototype](const auto& entry) { return entry.first == prototype; });
    if (found == _referencePrototypeShadersStatic.end()) {
        return;
    }
    ReferencePrototypeShader* const reference = found->second;
    _referencePrototypeShadersStatic.erase(found);
    auto onDelete = MakeDelegate(this, &ReferencePrototypeShader::_OnDeletePrototypeStatic);
    auto onChange = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructureStatic);
    prototype->RemoveListenerDelete(onDelete);
    reference->RemoveListenerChangeStructure(onChange);
    prototype->ReleaseReference(reference);
}

void ReferencePrototypeShader::_ShutdownOutputs() {
    const std::vector<std::string> acquired = std::move(_outputsAcquired);
    _outputsAcquired.clear();
    for (const std::string& name : acquired) {
        _pGraph->ReleaseOutput(name);
    }
}

void ReferencePrototypeShader::_ShutdownReferenceParameters() {
    auto relay = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeStructureReferenceParameter);
    for (const auto& [name, reference] : _referenceParameters) {
        reference->RemoveListenerChangeStructure(relay);
        reference->GetParameter()->DestroyReference(reference);
    }
    _referenceParameters.clear();
}

void ReferencePrototypeShader::_ShutdownReferenceMembers() {
    auto relay = MakeDelegate(this, &ReferencePrototypeShader::_OnChangeLengthReferenceMember);
    for (const auto& [name, reference] : _referenceMembers) {
        reference->RemoveListenerChangeLength(relay);
        reference->GetMember()->DestroyReference(reference);
    }
    _referenceMembers.clear();
}

void ReferencePrototypeShader::_ShutdownReferencePrototypeParameters() {
    for (const auto& [name, reference] : _referencePrototypeParameters) {
        if (IPrototypeParameter* const parameter = _pPrototypeShader->GetPrototypeParameter(name)) {
            parameter->DestroyReference(reference);
        }
    }
    _referencePrototypeParameters.clear();
}

void ReferencePrototypeShader::_ShutdownReferencePrototypeMembers() {
    for (const auto& [name, reference] : _referencePrototypeMembers) {
        if (IPrototypeMember* const member = _pPrototypeShader->GetPrototypeMember(name)) {
            member->DestroyReference(reference);
        }
    }
    _referencePrototypeMembers.clear();
}

void ReferencePrototypeShader::_ShutdownReferencePrototypeShadersStatic() {
    while (!_referencePrototypeShadersStatic.empty()) {
        _ReleaseStatic(_referencePrototypeShadersStatic.back().first);
    }
}

bool ReferencePrototypeShader::_ApplyReferenceParameters(IKLPrimitive* primitive,
                                                         IKLProgram* program) {
    for (const auto& [name, reference] : _referenceParameters) {
        if (!reference->Apply(primitive, program)) {
            return false;
        }
    }
    return true;
}

bool ReferencePrototypeShader::_ApplyReferenceMembers(IKLPrimitive* primitive, IKLProgram* program) {
    for (const auto& [name, reference] : _referenceMembers) {
        if (!reference->Apply(primitive, program)) {
            return false;
        }
    }
    return true;
}

bool ReferencePrototypeShader::_ApplyReferenceShaders(IKLPrimitive* primitive, IKLProgram* program) {
    for (IReferenceShader* reference : _referenceShaders) {
        if (reference != nullptr && !reference->Apply(primitive, program)) {
            return false;
        }
    }
    return true;
}

bool ReferencePrototypeShader::_CollectShader(Module* module) {
    return _pPrototypeShader->CollectShader(module);
}

bool ReferencePrototypeShader::_CollectShaderReferenceShaders(Module* module) {
    for (IReferenceShader* reference : _referenceShaders) {
        if (reference != nullptr && !reference->CollectShader(module)) {
            return false;
        }
    }
    return true;
}

bool ReferencePrototypeShader::_OnChangeStructurePrototypeMember(PrototypeShader*) {
    const bool synchronized =
        _referenceShaders.IsEmpty() || _InitReferencePrototypeShadersStatic();
    return _listenersChangeStructure.Fire() && synchronized;
}

bool ReferencePrototypeShader::_OnChangeStructureReferenceParameter(IReferenceParameter*) {
    return _listenersChangeStructure.Fire();
}

bool ReferencePrototypeShader::_OnChangeLengthReferenceMember(IReferenceMember*) {
    return _listenersChangeStructure.Fire();
}

bool ReferencePrototypeShader::_OnChangeStructureStatic() {
    return _InitReferencePrototypeShadersStatic();
}

bool ReferencePrototypeShader::_OnDeletePrototypeStatic(IPrototypeShader* prototype) {
    // The reference dies with its prototype, so there is nothing to give back.
    for (auto it = _referencePrototypeShadersStatic.begin();
         it != _referencePrototypeShadersStatic.end(); ++it) {
        if (it->first == prototype) {
            _referencePrototypeShadersStatic.erase(it);
            break;
        }
    }
    return true;
}

} // namespace Tolen::Effects

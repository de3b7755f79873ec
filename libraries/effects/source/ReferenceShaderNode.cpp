#include "ReferenceShaderNode.h"

#include "Graph.h"
#include "PrototypeShader.h"
#include "ReferenceCompleteness.h"
#include "ReferencePrototypeShader.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IReferenceMember.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

namespace Tolen::Effects {

namespace {

template <class Map>
auto _Find(const Map& map, const std::string& name) -> typename Map::mapped_type {
    const auto found = map.find(name);
    return found == map.end() ? nullptr : found->second;
}

} // namespace

ReferenceShaderNode::~ReferenceShaderNode() { Shutdown(); }

bool ReferenceShaderNode::Init(IShader* shader, IGraph* graph) {
    _pShader = shader;
    _pGraph = graph;
    if (!_InitParts()) {
        Shutdown();
        return false;
    }
    return true;
}

bool ReferenceShaderNode::_InitParts() {
    _pReferencePrototype = _pShader->GetPrototype()->AcquireReference(_pGraph);
    if (_pReferencePrototype == nullptr) {
        return false;
    }
    auto collect = FastDelegate1<Module*, bool>(this, &ReferenceShaderNode::CollectShader);
    _pGraph->AddDelegateCollectShader(collect);
    _ListenCreateGraph(true);

    auto initParameter = MakeDelegate(this, &ReferenceShaderNode::_InitParameter);
    auto initMember = MakeDelegate(this, &ReferenceShaderNode::_InitMember);
    auto initCoord = MakeDelegate(this, &ReferenceShaderNode::_InitCoord);
    return _pShader->VisitParameters(initParameter) && _pShader->VisitMembers(initMember) &&
           _pShader->VisitCoords(initCoord) && _pReferencePrototype->AddReferenceShader(this);
}

bool ReferenceShaderNode::_InitParameter(const std::string& name, IParameter* parameter) {
    IReferenceParameter* const reference = parameter->CreateReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    _parameters[name] = reference;
    return true;
}

bool ReferenceShaderNode::_InitMember(const std::string& name, IMember* member) {
    IReferenceMember* const reference = member->CreateReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    _members[name] = reference;
    return true;
}

bool ReferenceShaderNode::_InitCoord(const std::string& name, IParameter* coord) {
    IReferenceParameter* const reference = coord->CreateReference(_pGraph);
    if (reference == nullptr) {
        return false;
    }
    auto relay = MakeDelegate(this, &ReferenceShaderNode::_OnChangeStructureReference);
    if (!reference->AddListenerChangeValue(relay)) {
        coord->DestroyReference(reference);
        return false;
    }
    _coords[name] = reference;
    return true;
}

void ReferenceShaderNode::Shutdown() {
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    if (!_listenersChangeStructure.IsEmpty()) {
        _listenersChangeStructure.Clear();
        _ListenChangeStructure(false);
    }
    _ShutdownCoords();
    _ShutdownMembers();
    _ShutdownParameters();
    if (_pReferencePrototype != nullptr) {
        ReferencePrototypeShader* const prototype = _pReferencePrototype;
        _pReferencePrototype = nullptr;
        prototype->RemoveReferenceShader(this);
        prototype->Release();
    }
    if (_pShader == nullptr) {
        return;
    }
    if (TOLEN_CHECK(_pGraph != NULL, "Source/ReferenceShaderNode")) {
        _ListenCreateGraph(false);
        auto collect = FastDelegate1<Module*, bool>(this, &ReferenceShaderNode::CollectShader);
        _pGraph->RemoveDelegateCollectShader(collect);
    }
    _pShader = nullptr;
    _pGraph = nullptr;
}

void ReferenceShaderNode::_ShutdownCoords() {
    auto relay = MakeDelegate(this, &ReferenceShaderNode::_OnChangeStructureReference);
    for (const auto& [name, reference] : _coords) {
        reference->RemoveListenerChangeValue(relay);
        reference->GetParameter()->DestroyReference(reference);
    }
    _coords.clear();
}

void ReferenceShaderNode::_ShutdownMembers() {
    for (const auto& [name, reference] : _members) {
        reference->GetMember()->DestroyReference(reference);
    }
    _members.clear();
}

void ReferenceShaderNode::_ShutdownParameters() {
    for (const auto& [name, reference] : _parameters) {
        reference->GetParameter()->DestroyReference(reference);
    }
    _parameters.clear();
}

bool ReferenceShaderNode::_ListenCreateGraph(bool listen) {
    auto relay = MakeDelegate(this, &ReferenceShaderNode::_OnCreateGraph);
    const IKLShader::Type eType = _pGraph->GetType();
    switch (eType) {
    case IKLShader::kType_Ray:
        return listen ? _pShader->AddListenerCreateGraphKind0(relay)
                      : _pShader->RemoveListenerCreateGraphKind0(relay);
    case IKLShader::kType_Frame:
        return listen ? _pShader->AddListenerCreateGraphKind2(relay)
                      : _pShader->RemoveListenerCreateGraphKind2(relay);
    default:
        TOLEN_CHECK(eType == IKLShader::kType_PrefixRay, "Source/ReferenceShaderNode");
        return listen ? _pShader->AddListenerCreateGraphKind3(relay)
                      : _pShader->RemoveListenerCreateGraphKind3(relay);
    }
}

void ReferenceShaderNode::_ListenChangeStructure(bool listen) {
    if (_pShader == nullptr) {
        return;
    }
    auto onShader = MakeDelegate(this, &ReferenceShaderNode::_OnChangeStructureShader);
    auto onReference = MakeDelegate(this, &ReferenceShaderNode::_OnChangeStructureReference);
    if (listen) {
        _pShader->AddListenerChangeStructure(onShader);
    } else {
        _pShader->RemoveListenerChangeStructure(onShader);
    }
    for (const auto& [name, reference] : _parameters) {
        if (listen) {
            reference->AddListenerChangeStructure(onReference);
        } else {
            reference->RemoveListenerChangeStructure(onReference);
        }
    }
}

bool ReferenceShaderNode::Release() {
    return _pShader != nullptr && _pShader->ReleaseReference(_pShader->GetReference(_pGraph));
}

bool ReferenceShaderNode::AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool ReferenceShaderNode::RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool ReferenceShaderNode::CollectShader(Module* module) {
    // In a compile those below are collected as well, each asking for itself.
    Result result;
    const bool isComplete = static_cast<Graph*>(_pGraph)->IsCollecting()
                                ? ReferenceCompleteness::IsCompleteHere(this, &result)
                                : IsComplete(&result);
    if (isComplete) {
        return _pShader->CollectShader(module);
    }
    ConsolePrint("ReferenceShaderNode::CollectShader Shader Incomplete\n");
    module->LogError("Shader '" + _pShader->GetName() + "' is incomplete.");
    result.ReportToConsole(_pShader->GetMgrEffects()->GetConsole());
    return false;
}

bool ReferenceShaderNode::CollectDeclarationMethod(Module* module, const std::string& method) {
    return _pShader->CollectDeclarationMethod(module, method);
}

bool ReferenceShaderNode::HasMethod(const std::string& method) const {
    return _pShader->HasMethod(method);
}

std::string ReferenceShaderNode::GetMethodMangled(const std::string& method) const {
    return _pShader->GetMethodNameMangled(method);
}

bool ReferenceShaderNode::IsComplete(Result* result) const {
    return ReferenceCompleteness(_pGraph, result).IsComplete(this);
}

bool ReferenceShaderNode::HasConstructor() const { return _pShader->HasConstructor(); }

std::string ReferenceShaderNode::GetConstructor() const { return _pShader->GetConstructorName(); }

bool ReferenceShaderNode::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    for (const auto& [name, reference] : _parameters) {
        if (!reference->Apply(primitive, program)) {
            return false;
        }
    }
    for (const auto& [name, reference] : _members) {
        if (!reference->Apply(primitive, program)) {
            return false;
        }
    }
    return true;
}

bool ReferenceShaderNode::AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>&) {
    return true;
}

bool ReferenceShaderNode::RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>&) {
    return true;
}

bool ReferenceShaderNode::AddListenerChangeStructure(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    const bool isFirst = _listenersChangeStructure.IsEmpty();
    _listenersChangeStructure.Add(listener);
    if (isFirst) {
        _ListenChangeStructure(true);
    }
    return true;
}

bool ReferenceShaderNode::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    _listenersChangeStructure.Remove(listener);
    if (_listenersChangeStructure.IsEmpty()) {
        _ListenChangeStructure(false);
    }
    return true;
}

IReferenceParameter* ReferenceShaderNode::GetParameter(const std::string& name) {
    return _Find(_parameters, name);
}

bool ReferenceShaderNode::VisitParameters(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
    Result* result) const {
    bool all = true;
    for (const auto& [name, reference] : References(_parameters)) {
        all = visit(name, reference, result) && all;
    }
    return all;
}

int ReferenceShaderNode::GetCountParameters() const { return static_cast<int>(_parameters.size()); }

IReferenceMember* ReferenceShaderNode::GetMember(const std::string& name) {
    return _Find(_members, name);
}

bool ReferenceShaderNode::VisitMembers(
    FastDelegate2<const std::string&, IReferenceMember*, bool>& visit) const {
    bool all = true;
    for (const auto& [name, reference] : std::map<std::string, IReferenceMember*>(_members)) {
        all = visit(name, reference) && all;
    }
    return all;
}

int ReferenceShaderNode::GetCountMembers() const { return static_cast<int>(_members.size()); }

IReferenceParameter* ReferenceShaderNode::GetCoord(const std::string& name) {
    return _Find(_coords, name);
}

bool ReferenceShaderNode::VisitCoords(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
    Result* result) const {
    bool all = true;
    for (const auto& [name, reference] : References(_coords)) {
        all = visit(name, reference, result) && all;
    }
    return all;
}

int ReferenceShaderNode::GetCountCoords() const { return static_cast<int>(_coords.size()); }

IShader* ReferenceShaderNode::GetShader() { return _pShader; }

ReferencePrototypeShader* ReferenceShaderNode::GetReferencePrototype() {
    return _pReferencePrototype;
}

IGraph* ReferenceShaderNode::GetGraph() { return _pGraph; }

bool ReferenceShaderNode::AddListenerChangeImpl(FastDelegate0<bool>& listener) {
    return _listenersChangeImpl.Add(listener);
}

bool ReferenceShaderNode::RemoveListenerChangeImpl(FastDelegate0<bool>& listener) {
    return _listenersChangeImpl.Remove(listener);
}

bool ReferenceShaderNode::_OnChangeStructureShader(IShader*) {
    return _listenersChangeStructure.Fire(this);
}

bool ReferenceShaderNode::_OnChangeStructureReference(IReferenceParameter*) {
    return _listenersChangeStructure.Fire(this);
}

bool ReferenceShaderNode::_OnCreateGraph(IShader*, IGraph*) { return _listenersChangeImpl.Fire(); }

} // namespace Tolen::Effects

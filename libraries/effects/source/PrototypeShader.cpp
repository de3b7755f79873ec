#include "PrototypeShader.h"

#include "FreeFunctions.h"
#include "Graph.h"
#include "IPrototypeMember.h"
#include "IPrototypeParameter.h"
#include "Library.h"
#include "OwnedTables.h"
#include "ParameterInterface.h"
#include "PrototypeInterface.h"
#include "ReferencePrototypeInterface.h"
#include "ReferencePrototypeShader.h"
#include "ScopedHold.h"
#include "Shader.h"
#include "StructureChange.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Tolen::Effects {

PrototypeShader::PrototypeShader() = default;

PrototypeShader::~PrototypeShader() {
    Shutdown();
}

void PrototypeShader::Shutdown() {
    _isBusy = true;
    _isReady = false;
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();

    auto onDelete = MakeDelegate(this, &PrototypeShader::_OnDeleteReferenceStatic);
    for (PrototypeShader* prototype : _staticReferences) {
        prototype->RemoveListenerDelete(onDelete);
        prototype->_staticUsers.erase(this);
    }
    _staticReferences.clear();
    _staticUsers.clear();

    if (_shaders.GetCount() != 0) {
        if (TOLEN_CHECK(_pClass, "Source/PrototypeShader")) {
            ConsolePrint("%s shut down with %i remaining shader(s)\n", GetClassName().c_str(),
                         static_cast<int>(_shaders.GetCount()));
        }
        _shaders.DestroyAll();
    }
    _ShutdownReferencePrototypeShaders();
    _ShutdownPrototypeParameters();
    _ShutdownPrototypeMembers();
    _ShutdownParameters();
    _ShutdownMembers();
    _ShutdownCode();
    _listenersChangeStructure.Clear();
    _pPrototypeInterface = nullptr;
    _pLibrary = nullptr;
    _pClass = nullptr;
}

IShader* PrototypeShader::CreateShader(Result* result) {
    if (_isBusy || _pClass == nullptr) {
        return nullptr;
    }
    _isBusy = true;
    auto shader = std::make_unique<Shader>();
    const bool good = shader->Init(this, _pClass, result);
    _isBusy = false;
    return good ? _shaders.Add(std::move(shader)) : nullptr;
}

void PrototypeShader::DestroyShader(IShader* shader) {
    _shaders.Destroy(shader);
}

bool PrototypeShader::AddListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool PrototypeShader::RemoveListenerDelete(FastDelegate1<IPrototypeShader*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool PrototypeShader::AddListenerChangeStructure(FastDelegate1<PrototypeShader*, bool>& listener) {
    MarkHeard();
    return _listenersChangeStructure.Add(listener);
}

bool PrototypeShader::RemoveListenerChangeStructure(
    FastDelegate1<PrototypeShader*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

std::string PrototypeShader::GetClassName() {
    return _pClass == nullptr ? std::string() : _pClass->GetName()->GetString();
}

std::string PrototypeShader::GetInterfaceName() {
    return _pClass == nullptr || _pClass->GetInterface() == nullptr
               ? std::string()
               : _pClass->GetInterface()->GetString();
}

IMgrEffects* PrototypeShader::GetMgrEffects() const {
    return _pLibrary == nullptr ? nullptr : _pLibrary->GetMgrEffects();
}

IPrototypeParameter* PrototypeShader::GetPrototypeParameter(const std::string& name) const {
    return FindOwned(_prototypeParameters, name);
}

IPrototypeMember* PrototypeShader::GetPrototypeMember(const std::string& name) const {
    return FindOwned(_prototypeMembers, name);
}

bool PrototypeShader::VisitPrototypeParameters(
    FastDelegate2<const std::string&, IPrototypeParameter*, bool>& visit) {
    return VisitOwned(_prototypeParameters, visit);
}

bool PrototypeShader::VisitPrototypeMembers(
    FastDelegate2<const std::string&, IPrototypeMember*, bool>& visit) {
    return VisitOwned(_prototypeMembers, visit);
}

bool PrototypeShader::VisitPrototypeShadersStatic(FastDelegate1<IPrototypeShader*, bool>& visit) {
    bool all = true;
    for (PrototypeShader* prototype : std::set<PrototypeShader*, ByCreation>(_staticReferences)) {
        all = visit(prototype) && all;
    }
    return all;
}

bool PrototypeShader::VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) {
    return VisitOwned(_parameters, visit);
}

IParameter* PrototypeShader::GetParameter(const std::string& name) {
    return FindOwned(_parameters, name);
}

bool PrototypeShader::VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) {
    return VisitOwned(_members, visit);
}

IMember* PrototypeShader::GetMember(const std::string& name) {
    return FindOwned(_members, name);
}

bool PrototypeShader::VisitCoords(
    FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>& visit) {
    bool all = true;
    if (_pClass != nullptr) {
        for (const auto& [name, coord] : _pClass->GetCoords()) {
            all = visit(coord->GetType()->GetTypeSpecifier(), name, coord->GetTransformation()) &&
                  all;
        }
    }
    return all;
}

bool PrototypeShader::VisitOutputs(FastDelegate2<TypeSpecifier, const std::string&, bool>& visit) {
    if (_pClass == nullptr) {
        return true;
    }
    std::map<std::string, TypeSpecifier> outputs;
    for (const auto& [name, type] : _pClass->GetOutputs()) {
        outputs.emplace(name->GetString(), type->GetTypeSpecifier());
    }
    bool all = true;
    for (const auto& [name, type] : outputs) {
        all = visit(type, name) && all;
    }
    return all;
}

bool PrototypeShader::Apply(IKLPrimitive*, IKLProgram*) {
    return true;
}

std::string PrototypeShader::GetConstructorStatic() {
    return "__ctor_" + GetClassName();
}

bool PrototypeShader::IsComplete(Result* result) {
    if (result == nullptr && _isReady) {
        return IsCompleteNode();
    }
    return _AreInputsComplete(result);
}

bool PrototypeShader::_AreInputsComplete(Result* result) {
    // The classes that are reached by static calls, in the order of a walk by depth; calls may go
    // in circles.
    std::vector<PrototypeShader*> open{this};
    std::unordered_set<const PrototypeShader*> met{this};
    while (!open.empty()) {
        const PrototypeShader* prototype = open.back();
        open.pop_back();
        bool all = true;
        for (const auto& [name, parameter] : prototype->_parameters) {
            all = parameter->IsComplete(result) && all;
        }
        if (!all) {
            return false;
        }
        const auto& references = prototype->_staticReferences;
        for (auto it = references.rbegin(); it != references.rend(); ++it) {
            if (met.insert(*it).second) {
                open.push_back(*it);
            }
        }
    }
    return true;
}

bool PrototypeShader::_OnChangeStructureParameter(IParameter*) {
    return !_isReady || StructureChange::Run(this);
}

bool PrototypeShader::_OnChangeLengthMemberValueArray(IMember*) {
    return !_isReady || StructureChange::Run(this);
}

void PrototypeShader::CollectNodesAbove(std::vector<StructureNode*>& nodes) const {
    nodes.insert(nodes.end(), _staticUsers.begin(), _staticUsers.end());
    _shaders.ForEach([&nodes](Shader* shader) { nodes.push_back(shader); });
}

void PrototypeShader::CollectNodesBelow(std::vector<StructureNode*>& nodes) const {
    nodes.insert(nodes.end(), _staticReferences.begin(), _staticReferences.end());
    for (const ParameterInterface* input : _inputs) {
        for (int i = 0, count = input->GetLength(); i < count; ++i) {
            if (Shader* const shader = input->GetShaderBase(i)) {
                nodes.push_back(shader);
            }
        }
    }
}

bool PrototypeShader::_IsCompleteHere() {
    if (!_isReady) {
        return IsCompleteNode();
    }
    return _AreInputsComplete(nullptr);
}

bool PrototypeShader::_HasListeners() const {
    return !_listenersChangeStructure.IsEmpty() ||
           std::any_of(_inputs.begin(), _inputs.end(),
                       [](const ParameterInterface* input) { return input->HasListeners(); });
}

bool PrototypeShader::_OnChangeStructureNode(StructureOrigin origin) {
    if (!_isReady) {
        return true;
    }
    // A change below leaves the code as it is, unless it is what the code was waiting for.
    const bool hasCode = _pStatic != nullptr && _pTemplate != nullptr;
    const bool isOwn = origin != StructureOrigin::Below;
    return isOwn || hasCode != IsCompleteNode() ? _OnChangeStructureCommon()
                                                : _listenersChangeStructure.Fire(this);
}

bool PrototypeShader::_OnChangeStructureCommon() {
    _ShutdownCode();
    _shaders.ForEach([](Shader* shader) { shader->RequestRebuild(); });
    Result local;
    const bool isComplete = IsComplete(&local);
    const bool good = isComplete && _InitStatic(_pClass, &local) && _InitTemplate(_pClass, &local);
    // The code may call classes that it didn't call before.
    StructureChange::UpdateCompleteness(this);
    if (!good) {
        local.Add("PrototypeShader::_OnChangeStructureCommon failed for interface PrototypeShader: "
                  "%s",
                  GetInterfaceName().c_str());
        local.ReportToConsole(GetMgrEffects()->GetConsole());
    }
    // While inputs are missing there is no code, which listeners have to know; when the code can't
    // be made although nothing is missing, the message is all there is.
    return (good || !isComplete) && _listenersChangeStructure.Fire(this);
}

bool PrototypeShader::_OnDeleteReferenceStatic(IPrototypeShader* prototype) {
    _staticReferences.erase(static_cast<PrototypeShader*>(prototype));
    return true;
}

ReferencePrototypeShader* PrototypeShader::AcquireReference(IGraph* graph) {
    if (const auto found = _references.find(graph); found != _references.end()) {
        ++found->second.count;
        return found->second.pReference.get();
    }
    if (static_cast<Graph*>(graph)->IsGoing()) {
        return nullptr;
    }
    auto onDelete = MakeDelegate(this, &PrototypeShader::_OnDeleteGraph);
    graph->AddListenerDelete(onDelete);
    const ScopedHold hold(GetMgrEffects());
    UsedReference& entry = _references[graph];
    entry.count = 1;
    entry.order = ++_countReferences;
    _CreateReference(graph, entry.pReference);
    return entry.pReference.get();
}

void PrototypeShader::_CreateReference(IGraph* graph,
                                       std::unique_ptr<ReferencePrototypeShader>& reference) {
    // In its place before it is initialised, since what it makes in turn may ask for it.
    reference = std::make_unique<ReferencePrototypeShader>();
    if (!reference->Init(this, graph)) {
        reference.reset();
        return;
    }
    if (_pPrototypeInterface != nullptr) {
        if (ReferencePrototypeInterface* implemented = _pPrototypeInterface->GetReference(graph)) {
            implemented->AddReferencePrototypeShader(reference.get());
        }
    }
}

bool PrototypeShader::ReleaseReference(ReferencePrototypeShader* reference) {
    const auto found =
        reference == nullptr ? _references.end() : _references.find(reference->GetGraph());
    if (found == _references.end() || found->second.pReference.get() != reference) {
        ConsolePrint("PrototypeShader::ReleaseReference Reference Not Found\n");
        return false;
    }
    if (--found->second.count > 0) {
        return true;
    }
    _EndReference(found);
    return true;
}

void PrototypeShader::ForgetGraph(IGraph* graph) {
    if (const auto found = _references.find(graph); found != _references.end()) {
        _EndReference(found);
    }
}

void PrototypeShader::_EndReference(std::map<IGraph*, UsedReference>::iterator entry) {
    const ScopedHold hold(GetMgrEffects());
    IGraph* const graph = entry->first;
    std::unique_ptr<ReferencePrototypeShader> dying = std::move(entry->second.pReference);
    _references.erase(entry);
    auto onDelete = MakeDelegate(this, &PrototypeShader::_OnDeleteGraph);
    graph->RemoveListenerDelete(onDelete);
    _DestroyReference(graph, std::move(dying));
}

void PrototypeShader::_DestroyReference(IGraph* graph,
                                        std::unique_ptr<ReferencePrototypeShader> reference) {
    if (_pPrototypeInterface == nullptr) {
        return;
    }
    // The interface lets go of a graph as soon as the graph says that it goes.
    auto* prototype = static_cast<PrototypeInterface*>(_pPrototypeInterface);
    if (ReferencePrototypeInterface* implemented = prototype->FindReference(graph)) {
        implemented->RemoveReferencePrototypeShader(reference.get());
    }
}

bool PrototypeShader::_OnDeleteGraph(IGraph* graph) {
    const auto found = _references.find(graph);
    if (found != _references.end() && found->second.pReference == nullptr) {
        // Nobody gives a failure back, and a later graph may have the same address.
        _references.erase(found);
    }
    return true;
}

void PrototypeShader::_ShutdownReferencePrototypeShaders() {
    std::map<std::uint64_t, std::pair<IGraph*, std::unique_ptr<ReferencePrototypeShader>>> left;
    for (auto& [graph, entry] : _references) {
        left.emplace(entry.order, std::make_pair(graph, std::move(entry.pReference)));
    }
    _references.clear();
    auto onDelete = MakeDelegate(this, &PrototypeShader::_OnDeleteGraph);
    for (auto& [order, entry] : left) {
        auto& [graph, reference] = entry;
        graph->RemoveListenerDelete(onDelete);
        if (reference != nullptr) {
            _DestroyReference(graph, std::move(reference));
        }
    }
}

void PrototypeShader::_ShutdownPrototypeParameters() {
    _prototypeParameters.clear();
}

void PrototypeShader::_ShutdownPrototypeMembers() {
    _prototypeMembers.clear();
}

void PrototypeShader::_ShutdownParameters() {
    // Out of the tables first: shaders that go with their inputs may lead back here.
    _inputs.clear();
    const auto parameters = std::move(_parameters);
    _parameters.clear();
}

void PrototypeShader::_ShutdownMembers() {
    _members.clear();
}

template <class Call>
bool PrototypeShader::_SetParameter(const std::string& name, Miss miss, Call call) {
    if (IParameter* parameter = GetParameter(name)) {
        return call(parameter);
    }
    if (miss == Miss::kValue) {
        ConsolePrint("PrototypeShader::_SetParameter Parameter Not Found (%s)\n", name.c_str());
    } else if (miss == Miss::kElement) {
        ConsolePrint("PrototypeShader::_SetParameter Index Parameter Not Found\n");
    }
    return false;
}

#define TOLEN_DEFINE_SET_STATIC(specifier, T, typeName, bytes)                                     \
    bool PrototypeShader::SetParameter(const std::string& name, ArgumentOf<T> value) {             \
        return _SetParameter(name, Miss::kValue,                                                   \
                             [&](IParameter* parameter) { return parameter->Set(value); });        \
    }                                                                                              \
    bool PrototypeShader::SetParameter(const std::string& name, ArgumentOf<T> value, int index) {  \
        return _SetParameter(name, Miss::kElement,                                                 \
                             [&](IParameter* parameter) { return parameter->Set(value, index); }); \
    }                                                                                              \
    bool PrototypeShader::SetParameter(const std::string& name, const T* values, int count) {      \
        return _SetParameter(name, Miss::kSilent, [&](IParameter* parameter) {                     \
            return parameter->Set(values, count);                                                  \
        });                                                                                        \
    }
TOLEN_ELEMENT_TYPES(TOLEN_DEFINE_SET_STATIC)
#undef TOLEN_DEFINE_SET_STATIC

bool PrototypeShader::SetParameter(const std::string& name, IShader* shader) {
    return _SetParameter(name, Miss::kSilent,
                         [&](IParameter* parameter) { return parameter->Set(shader); });
}

bool PrototypeShader::SetParameter(const std::string& name, IShader* shader, int index) {
    return _SetParameter(name, Miss::kSilent,
                         [&](IParameter* parameter) { return parameter->Set(shader, index); });
}

bool PrototypeShader::SetParameter(const std::string& name, IShader** shaders, int count) {
    return _SetParameter(name, Miss::kSilent,
                         [&](IParameter* parameter) { return parameter->Set(shaders, count); });
}

} // namespace Tolen::Effects

#include "Shader.h"

#include "DeepReferences.h"
#include "Graph.h"
#include "IPrototypeMember.h"
#include "IPrototypeParameter.h"
#include "MangleMethodPrefixKey.h"
#include "OwnedTables.h"
#include "ParameterCoord.h"
#include "ParameterInterface.h"
#include "PrototypeShader.h"
#include "ReferenceShader.h"
#include "ScopedHold.h"
#include "ScopedResult.h"
#include "StructureChange.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <utility>

namespace Tolen::Effects {

bool Shader::ByCreation::operator()(const ParameterInterface* a,
                                    const ParameterInterface* b) const {
    return a->GetCreationNumber() < b->GetCreationNumber();
}

Shader::Shader() = default;

Shader::~Shader() {
    Shutdown();
}

bool Shader::Init(IPrototypeShader* prototype, const ClassDefinition* definition, Result* result) {
    _pPrototype = static_cast<PrototypeShader*>(prototype);
    _name = _pPrototype->GetClassName();
    _key = GetMgrEffects()->CreateKey();
    _pMangleMethod = std::make_unique<MangleMethodPrefixKey>(&_key);
    if (!_InitParts(definition, result)) {
        Shutdown();
        return false;
    }
    _isMuted = false;
    _isStarting = false;
    return true;
}

bool Shader::_InitParts(const ClassDefinition* definition, Result* result) {
    if (!_InitParameters(result) || !_InitMembers(result) || !_InitCoords()) {
        return false;
    }
    _InitMethodNames(definition);
    const ScopedResult scope(GetMgrEffects(), result);
    StructureChange::UpdateCompleteness(this);
    return !IsCompleteNode() || _BuildModule();
}

bool Shader::_InitParameters(Result* result) {
    bool good = true;
    auto init = [&](const std::string& name, IPrototypeParameter* prototype) {
        std::unique_ptr<IParameter> parameter(good ? prototype->CreateParameter(this, result)
                                                   : nullptr);
        good = parameter != nullptr;
        if (!good) {
            return false;
        }
        if (parameter->GetClass() == IParameter::kClass_Interface) {
            // It tells of its changes by itself.
            _inputs.push_back(static_cast<ParameterInterface*>(parameter.get()));
        } else {
            auto onChange = MakeDelegate(this, &Shader::_OnChangeStructureParameter);
            parameter->AddListenerChangeStructure(onChange);
        }
        _parameters[name] = std::move(parameter);
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IPrototypeParameter*, bool>::Borrow(init);
    return _pPrototype->VisitPrototypeParameters(visit);
}

bool Shader::_InitMembers(Result* result) {
    bool good = true;
    auto init = [&](const std::string& name, IPrototypeMember* prototype) {
        std::unique_ptr<IMember> member(good ? prototype->CreateMember(this, result) : nullptr);
        good = member != nullptr;
        if (good) {
            auto onChange = MakeDelegate(this, &Shader::_OnChangeLengthMember);
            member->AddListenerChangeLength(onChange);
            _members[name] = std::move(member);
        }
        return good;
    };
    auto visit = FastDelegate2<const std::string&, IPrototypeMember*, bool>::Borrow(init);
    return _pPrototype->VisitPrototypeMembers(visit);
}

bool Shader::_InitCoords() {
    bool good = true;
    auto init = [&](TypeSpecifier type, const std::string& name,
                    TransformationCoord transformation) {
        auto coord = std::make_unique<ParameterCoord>();
        good = good && coord->Init(GetMgrEffects(), type, name, transformation);
        if (good) {
            auto onChange = MakeDelegate(this, &Shader::_OnChangeStructureParameter);
            coord->AddListenerChangeStructure(onChange);
            _coords[name] = std::move(coord);
        }
        return good;
    };
    auto visit =
        FastDelegate3<TypeSpecifier, const std::string&, TransformationCoord, bool>::Borrow(init);
    return _pPrototype->VisitCoords(visit);
}

void Shader::_InitMethodNames(const ClassDefinition* definition) {
    const std::string prefix = definition->GetName()->GetString() + "_";
    for (const FunctionDefinition* method : definition->GetMemberFunctions()) {
        const FunctionPrototype* prototype = method->GetFunctionPrototype();
        if (prototype->GetQualifier() != kFunctionQualifier_Static) {
            _methodNames[prototype->GetName()->GetString()] =
                _pMangleMethod->Mangle(prefix, prototype);
        }
    }
}

void Shader::Shutdown() {
    _isMuted = true;
    _isStarting = false;
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    _FireEnd(this);
    _ShutdownUsers();
    _ShutdownReferences();
    for (GraphSlot& slot : _graphs) {
        const std::unique_ptr<Graph> dying = std::move(slot.pGraph);
    }
    _ShutdownParts();
    if (IMgrEffects* manager = GetMgrEffects(); manager != nullptr && _key != Key::Null()) {
        manager->DestroyKey(_key);
    }
    _key = Key::Null();
    _ShutdownModule();
    _pMangleMethod.reset();
    _methodNames.clear();
    _name.clear();
    _pPrototype = nullptr;
}

void Shader::_ShutdownParts() {
    // Out of the tables first: shaders that go with their inputs may lead back here.
    _inputs.clear();
    const Parameters parameters = std::move(_parameters);
    const auto members = std::move(_members);
    const Parameters coords = std::move(_coords);
    _parameters.clear();
    _members.clear();
    _coords.clear();
}

void Shader::_ShutdownUsers() {
    while (!_users.empty()) {
        const auto [input, cells] = *_users.begin();
        _users.erase(_users.begin());
        input->OnDeleteShader(this, cells);
    }
}

void Shader::_ShutdownReferences() {
    const ScopedHold hold(GetMgrEffects());
    std::map<std::uint64_t, std::pair<IGraph*, std::unique_ptr<ReferenceShader>>> left;
    for (auto& [graph, entry] : _references) {
        left.emplace(entry.order, std::make_pair(graph, std::move(entry.pReference)));
    }
    _references.clear();
    auto onEnd = MakeDelegate(this, &Shader::_OnEndGraph);
    for (auto& [order, entry] : left) {
        static_cast<Graph*>(entry.first)->RemoveListenerEnd(onEnd);
        entry.second.reset();
    }
}

bool Shader::AddListenerDelete(FastDelegate1<IShader*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool Shader::RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool Shader::AddListenerChangeStructure(FastDelegate1<IShader*, bool>& listener) {
    MarkHeard();
    return _listenersChangeStructure.Add(listener);
}

bool Shader::RemoveListenerChangeStructure(FastDelegate1<IShader*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

std::string Shader::GetInterfaceName() {
    return _pPrototype == nullptr ? std::string() : _pPrototype->GetInterfaceName();
}

std::string Shader::GetClassName() {
    return _pPrototype == nullptr ? std::string() : _pPrototype->GetClassName();
}

std::string Shader::GetKeyName() {
    return _key.ToString();
}

bool Shader::HasMethod(const std::string& method) {
    return _methodNames.count(method) != 0;
}

std::string Shader::GetMethodNameMangled(const std::string& method) {
    const auto found = _methodNames.find(method);
    return found == _methodNames.end() ? "MethodNotFound" : found->second;
}

bool Shader::HasConstructor() {
    return true;
}

std::string Shader::GetConstructorName() {
    return "__ctor_" + _key.ToString();
}

IPrototypeShader* Shader::GetPrototype() {
    return _pPrototype;
}

IMgrEffects* Shader::GetMgrEffects() {
    return _pPrototype == nullptr ? nullptr : _pPrototype->GetMgrEffects();
}

#define TOLEN_DEFINE_GRAPH_KIND(N, slot, type)                                                     \
    bool Shader::AddListenerCreateGraphKind##N(FastDelegate2<IShader*, IGraph*, bool>& listener) { \
        return _graphs[slot].listenersCreate.Add(listener);                                        \
    }                                                                                              \
    bool Shader::RemoveListenerCreateGraphKind##N(                                                 \
        FastDelegate2<IShader*, IGraph*, bool>& listener) {                                        \
        return _graphs[slot].listenersCreate.Remove(listener);                                     \
    }                                                                                              \
    IGraph* Shader::CreateGraphKind##N() {                                                         \
        return _CreateGraph(_graphs[slot], type);                                                  \
    }                                                                                              \
    IGraph* Shader::GetGraphKind##N() {                                                            \
        return _graphs[slot].pGraph.get();                                                         \
    }                                                                                              \
    bool Shader::DestroyGraphKind##N() {                                                           \
        return _DestroyGraph(_graphs[slot]);                                                       \
    }
TOLEN_DEFINE_GRAPH_KIND(0, 0, IKLShader::kType_Ray)
TOLEN_DEFINE_GRAPH_KIND(2, 1, IKLShader::kType_Frame)
TOLEN_DEFINE_GRAPH_KIND(3, 2, IKLShader::kType_PrefixRay)
#undef TOLEN_DEFINE_GRAPH_KIND

IGraph* Shader::_CreateGraph(GraphSlot& slot, IKLShader::Type kind) {
    if (slot.pGraph != nullptr || _pPrototype == nullptr) {
        return slot.pGraph.get();
    }
    const LifeToken::Watch alive = _life.GetWatch();
    {
        const ScopedHold hold(GetMgrEffects());
        auto graph = std::make_unique<Graph>();
        if (!graph->Init(GetMgrEffects(), kind, this, _name)) {
            return nullptr;
        }
        graph->SetName(_name);
        slot.pGraph = std::move(graph);
        IGraph* created = slot.pGraph.get();
        slot.listenersCreate.Fire(this, created);
    }
    return alive ? slot.pGraph.get() : nullptr;
}

bool Shader::_DestroyGraph(GraphSlot& slot) {
    if (slot.pGraph != nullptr) {
        GetMgrEffects()->GetImplementation()->DestroyGraph(std::move(slot.pGraph));
    }
    return true;
}

IReferenceShader* Shader::CreateReference(IGraph* graph) {
    if (const auto found = _references.find(graph); found != _references.end()) {
        ++found->second.count;
        return found->second.pReference.get();
    }
    if (_pPrototype == nullptr || graph == nullptr || static_cast<Graph*>(graph)->IsGoing()) {
        return nullptr;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    {
        const ScopedHold hold(GetMgrEffects());
        _CreateReference(graph);
    }
    return alive ? GetReference(graph) : nullptr;
}

void Shader::_CreateReference(IGraph* graph) {
    const DeepReferences below(this, graph);
    auto onEnd = MakeDelegate(this, &Shader::_OnEndGraph);
    static_cast<Graph*>(graph)->AddListenerEnd(onEnd);
    UsedReference& entry = _references[graph];
    entry.count = 1;
    entry.order = ++_countReferences;
    // In its place before it is initialised, since what it reaches may lead back here.
    entry.pReference = std::make_unique<ReferenceShader>();
    if (!entry.pReference->Init(this, graph)) {
        entry.pReference.reset();
    }
}

IReferenceShader* Shader::GetReference(IGraph* graph) {
    const auto found = _references.find(graph);
    return found == _references.end() ? nullptr : found->second.pReference.get();
}

bool Shader::ReleaseReference(IReferenceShader* reference) {
    auto found = _references.end();
    if (reference != nullptr) {
        // A reference of a shader with a graph of its own tells that graph, not the user's.
        found = _references.find(reference->GetGraph());
        if (found == _references.end() || found->second.pReference.get() != reference) {
            found = _references.begin();
            while (found != _references.end() && found->second.pReference.get() != reference) {
                ++found;
            }
        }
    }
    if (found == _references.end()) {
        ConsolePrint("Shader::ReleaseReference Reference Not Found\n");
        return false;
    }
    if (--found->second.count > 0) {
        return true;
    }
    _EndReference(found);
    return true;
}

void Shader::_EndReference(std::map<IGraph*, UsedReference>::iterator entry) {
    const ScopedHold hold(GetMgrEffects());
    auto onEnd = MakeDelegate(this, &Shader::_OnEndGraph);
    auto* const graph = static_cast<Graph*>(entry->first);
    graph->RemoveListenerEnd(onEnd);
    // Out of the table first, so that nobody whom its end calls finds it there.
    std::unique_ptr<ReferenceShader> dying = std::move(entry->second.pReference);
    _references.erase(entry);
    graph->EndReference(std::move(dying));
}

bool Shader::_OnEndGraph(Graph* graph) {
    // What a client has not given back, and failures, which nobody gives back.
    const auto found = _references.find(graph);
    if (found != _references.end()) {
        _EndReference(found);
    }
    return true;
}

IParameter* Shader::GetParameter(const std::string& name) {
    return FindOwned(_parameters, name);
}

bool Shader::VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) {
    return VisitOwned(_parameters, visit);
}

IMember* Shader::GetMember(const std::string& name) {
    return FindOwned(_members, name);
}

bool Shader::VisitMembers(FastDelegate2<const std::string&, IMember*, bool>& visit) {
    return VisitOwned(_members, visit);
}

IParameter* Shader::GetCoord(const std::string& name) {
    return FindOwned(_coords, name);
}

bool Shader::VisitCoords(FastDelegate2<const std::string&, IParameter*, bool>& visit) {
    return VisitOwned(_coords, visit);
}

bool Shader::SetName(const std::string& name) {
    _name = name;
    return true;
}

const std::string& Shader::GetName() {
    return _name;
}

bool Shader::_OnChangeStructureParameter(IParameter*) {
    return _isMuted || StructureChange::Run(this);
}

bool Shader::_OnChangeLengthMember(IMember*) {
    return _isMuted || StructureChange::Run(this);
}

} // namespace Tolen::Effects

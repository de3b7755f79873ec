#include "Graph.h"

#include "CollectorDeclaration.h"
#include "EndingShader.h"
#include "GeneratedCode.h"
#include "ProfileScope.h"
#include "PrototypeShader.h"
#include "ReferenceGraph.h"
#include "ReferencePrototypeShader.h"
#include "ReferenceShader.h"
#include "ScopedHold.h"
#include "Shader_PassThrough.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Module.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"
#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <algorithm>
#include <utility>

namespace Tolen::Effects {

Graph::Graph() : _isCompiling(std::make_shared<bool>(false)) {}

Graph::~Graph() { Shutdown(); }

bool Graph::Init(IMgrEffects* manager, IKLShader::Type type, IShader* pShader,
                 const std::string& name) {
    if (!TOLEN_CHECK(pShader != NULL, "Source/Graph") ||
        !TOLEN_CHECK(_rKey == Key::Null(), "Source/Graph")) {
        return false;
    }
    _pMgrEffects = manager;
    _rKey = manager->CreateKey();
    _type = type;
    _name = name;
    if (!_InitShader(pShader)) {
        Shutdown();
        return false;
    }
    _isInitialized = true;
    _isCompiled = false;
    return true;
}

bool Graph::_InitShader(IShader* pShader) {
    if (!TOLEN_CHECK(_pShader == NULL, "Source/Graph") ||
        !TOLEN_CHECK(pShader != NULL, "Source/Graph")) {
        return false;
    }
    _pShader = pShader;
    _pReferenceShader = pShader->CreateReference(this);
    if (_pReferenceShader == nullptr) {
        return false;
    }
    _ListenToView(true);
    auto onDelete = MakeDelegate(this, &Graph::_OnDeleteReferenceShader);
    return _pReferenceShader->AddListenerDelete(onDelete);
}

void Graph::_ListenToView(bool listen) {
    if (dynamic_cast<Shader_PassThrough*>(_pShader) == nullptr) {
        return;
    }
    auto onEnd = MakeDelegate(this, &Graph::_OnEndView);
    if (listen) {
        Effects::AddListenerEnd(_pShader, onEnd);
    } else {
        Effects::RemoveListenerEnd(_pShader, onEnd);
    }
}

void Graph::Shutdown() {
    const ScopedHold hold(_pMgrEffects);
    _isGoing = true;
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    _isInitialized = false;
    _listenersChangeValue.Clear();
    _listenersChangeStructure.Clear();
    _delegatesCollectShader.Clear();
    _delegatesApply.Clear();
    _referenceGraphs.clear();
    if (_pReferenceShader != nullptr) {
        _ShutdownShader();
    }
    _pShader = nullptr;
    _ShutdownReferencesLeft();
    _prototypeInterfaces.clear();
    _isCompiled = false;
    _outputsUsed.clear();
    _DestroyKLShader();
    _outputs.Shutdown();
    if (_pMgrEffects != nullptr) {
        _pMgrEffects->DestroyKey(_rKey);
        _rKey = Key::Null();
        _pMgrEffects = nullptr;
    }
    _isGoing = false;
}

void Graph::_ShutdownReferencesLeft() {
    _listenersEnd.FireAll(this);
    _listenersEnd.Clear();
    // Shaders have let go; what is left are references to classes alone. A class that goes may take
    // others with it.
    std::vector<PrototypeShader*> prototypes;
    for (const auto& [prototype, reference] : _prototypeShaders) {
        prototypes.push_back(static_cast<PrototypeShader*>(prototype));
    }
    std::sort(prototypes.begin(), prototypes.end(), [](const auto* a, const auto* b) {
        return a->GetCreationNumber() < b->GetCreationNumber();
    });
    for (PrototypeShader* prototype : prototypes) {
        prototype->ForgetGraph(this);
    }
    _prototypeShaders.clear();
}

void Graph::EndReference(std::unique_ptr<ReferenceShader> reference) {
    _ending.push_back(std::move(reference));
    if (std::exchange(_isEnding, true)) {
        return;
    }
    while (!_ending.empty()) {
        const std::unique_ptr<ReferenceShader> ended = std::move(_ending.back());
        _ending.pop_back();
    }
    _isEnding = false;
}

bool Graph::_ShutdownShader() {
    if (_pReferenceShader == nullptr) {
        return true;
    }
    if (!TOLEN_CHECK(_pShader != NULL, "Source/Graph")) {
        return false;
    }
    auto onDelete = MakeDelegate(this, &Graph::_OnDeleteReferenceShader);
    _pReferenceShader->RemoveListenerDelete(onDelete);
    _ListenToRoot(false);
    // Out of the field first: what goes with it gives attributes back, and they come by here.
    IReferenceShader* const root = std::exchange(_pReferenceShader, nullptr);
    _ListenToView(false);
    root->Release();
    _pShader = nullptr;
    return true;
}

bool Graph::SetName(const std::string& name) {
    _name = name;
    if (_pKLShader != nullptr) {
        _pKLShader->SetName(name);
    }
    return true;
}

std::string Graph::GetName() { return _name; }

std::string Graph::GetNameMangled() { return _name + _rKey.ToString(); }

IShader* Graph::GetShader() const { return _pShader; }

IReferenceShader* Graph::GetReferenceShader() const { return _pReferenceShader; }

IReferenceGraph* Graph::CreateReference(IEffect*) {
    auto reference = std::make_unique<ReferenceGraph>();
    if (!reference->Init(this)) {
        return nullptr;
    }
    _referenceGraphs.push_back(std::move(reference));
    return _referenceGraphs.back().get();
}

void Graph::DestroyReference(IReferenceGraph* reference) {
    const auto found =
        std::find_if(_referenceGraphs.begin(), _referenceGraphs.end(),
                     [reference](const auto& owned) { return owned.get() == reference; });
    if (found != _referenceGraphs.end()) {
        _referenceGraphs.erase(found);
    }
}

bool Graph::AddListenerDelete(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool Graph::RemoveListenerDelete(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool Graph::AddReferencePrototypeShader(IPrototypeShader* prototype,
                                        ReferencePrototypeShader* reference) {
    auto onChange = MakeDelegate(this, &Graph::_OnChangeStructure);
    if (!reference->AddListenerChangeStructure(onChange)) {
        return false;
    }
    _prototypeShaders[prototype] = reference;
    return true;
}

bool Graph::RemoveReferencePrototypeShader(IPrototypeShader* prototype) {
    const auto found = _prototypeShaders.find(prototype);
    if (found == _prototypeShaders.end()) {
        ConsolePrint("Graph::RemoveReferencePrototypeShader PrototypeShader Not Found\n");
        return false;
    }
    auto onChange = MakeDelegate(this, &Graph::_OnChangeStructure);
    found->second->RemoveListenerChangeStructure(onChange);
    _prototypeShaders.erase(found);
    return true;
}

bool Graph::AddReferencePrototypeInterface(IPrototypeInterface* prototype,
                                           ReferencePrototypeInterface* reference) {
    _prototypeInterfaces[prototype] = reference;
    return true;
}

bool Graph::RemoveReferencePrototypeInterface(IPrototypeInterface* prototype) {
    if (_prototypeInterfaces.erase(prototype) == 0) {
        ConsolePrint("Graph::RemoveReferencePrototypeInterface IPrototypeInterface Not Found\n");
        return false;
    }
    return true;
}

bool Graph::AddDelegateCollectShader(FastDelegate1<Module*, bool>& collect) {
    return _delegatesCollectShader.Add(collect);
}

bool Graph::RemoveDelegateCollectShader(FastDelegate1<Module*, bool>& collect) {
    return _delegatesCollectShader.Remove(collect);
}

bool Graph::AcquireAttribute(TypeSpecifier type, const std::string& name,
                             TransformationCoord transformation) {
    const auto found = _attributes.find(name);
    if (found != _attributes.end()) {
        if (found->second.attribute.type != type) {
            ConsolePrint("Graph::AcquireAttribute Type Collision\n");
            return false;
        }
        ++found->second.count;
        return true;
    }
    _Invalidate();
    const Attribute attribute{type, name, transformation};
    _attributes.emplace(name, AttributeUse{attribute, 1});
    _listenersAddAttribute.Fire(attribute);
    return true;
}

bool Graph::ReleaseAttribute(const std::string& name) {
    const auto found = _attributes.find(name);
    if (found == _attributes.end()) {
        return true;
    }
    const Attribute attribute = found->second.attribute;
    const bool isLast = --found->second.count <= 0;
    const bool wasCompiled = _isCompiled;
    _Invalidate();
    if (isLast) {
        _attributes.erase(found);
        const LifeToken::Watch alive = _life.GetWatch();
        if (!_listenersRemoveAttribute.Fire(attribute) || !alive) {
            return false;
        }
    }
    if (wasCompiled) {
        _listenersChangeStructure.Fire(this);
    }
    return true;
}

int Graph::GetCountAttributes() { return static_cast<int>(_attributes.size()); }

bool Graph::AddListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) {
    return _listenersAddAttribute.Add(listener);
}

bool Graph::RemoveListenerAddAttribute(FastDelegate1<Attribute, bool>& listener) {
    return _listenersAddAttribute.Remove(listener);
}

bool Graph::AddListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) {
    return _listenersRemoveAttribute.Add(listener);
}

bool Graph::RemoveListenerRemoveAttribute(FastDelegate1<Attribute, bool>& listener) {
    return _listenersRemoveAttribute.Remove(listener);
}

bool Graph::VisitAttributes(FastDelegate1<Attribute, bool>& visit) {
    std::vector<Attribute> attributes;
    for (const auto& [name, use] : _attributes) {
        attributes.push_back(use.attribute);
    }
    bool all = true;
    for (const Attribute& attribute : attributes) {
        all = visit(attribute) && all;
    }
    return all;
}

bool Graph::AcquireOutput(TypeSpecifier type, const std::string& name) {
    _Invalidate();
    if (!_pMgrEffects->AcquireOutput(type, name)) {
        return false;
    }
    if (!_outputs.AcquireOutput(type, name)) {
        _pMgrEffects->ReleaseOutput(name);
        return false;
    }
    _listenersChangeStructure.Fire(this);
    return true;
}

bool Graph::ReleaseOutput(const std::string& name) {
    _Invalidate();
    // Both counts go down even when a listener of the first one says false. The name may be the
    // entry's, which goes.
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
    const std::string released = name;
    const bool graph = _outputs.ReleaseOutput(released);
    const bool manager = _pMgrEffects->ReleaseOutput(released);
    if (!graph || !manager) {
        return false;
    }
    _listenersChangeStructure.Fire(this);
    return true;
}

int Graph::GetCountOutputs() { return _outputs.GetCountOutputs(); }

const std::set<std::string>& Graph::GetOutputsUsed() const { return _outputsUsed; }

bool Graph::AddListenerAddOutput(
    FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) {
    return _outputs.AddListenerAddOutput(listener);
}

bool Graph::RemoveListenerAddOutput(
    FastDelegate2<TypeSpecifier, const std::string&, bool>& listener) {
    return _outputs.RemoveListenerAddOutput(listener);
}

bool Graph::AddListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) {
    return _outputs.AddListenerRemoveOutput(listener);
}

bool Graph::RemoveListenerRemoveOutput(FastDelegate1<const std::string&, bool>& listener) {
    return _outputs.RemoveListenerRemoveOutput(listener);
}

bool Graph::AddListenerCompile(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersCompile.Add(listener);
}

bool Graph::RemoveListenerCompile(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersCompile.Remove(listener);
}

bool Graph::IsComplete(Result* result) {
    return _isInitialized && _pReferenceShader != nullptr && _pReferenceShader->IsComplete(result);
}

bool Graph::IsCompiled() { return _isCompiled; }

bool Graph::HasConstructorStatic() const { return true; }

std::string Graph::GetConstructorStatic() const { return "_ctor_static" + _rKey.ToString(); }

bool Graph::CollectDeclarationConstructorStatic(Module* module) const {
    if (HasConstructorStatic()) {
        DeclareFunctionVoid(module, GetConstructorStatic());
    }
    return true;
}

bool Graph::HasConstructor() const { return true; }

std::string Graph::GetConstructor() const { return "_ctor_instance" + _rKey.ToString(); }

bool Graph::CollectDeclarationConstructor(Module* module) const {
    if (HasConstructor()) {
        DeclareFunctionVoid(module, GetConstructor());
    }
    return true;
}

bool Graph::AddDelegateApply(DelegateUpdate& apply) { return _delegatesApply.Add(apply); }

bool Graph::RemoveDelegateApply(DelegateUpdate& apply) { return _delegatesApply.Remove(apply); }

bool Graph::Apply(IKLPrimitive* primitive, IKLProgram* program, Result*) {
    const ProfileScope scope("Graph::Apply",
                             _pMgrEffects == nullptr ? nullptr : _pMgrEffects->GetProfiler());
    const AutoBindKLPrimitive bind(primitive);
    return _delegatesApply.Fire(primitive, program);
}

bool Graph::AddDelegateUpdate(DelegateUpdate& update) {
    if (!_isCompiled) {
        return true;
    }
    _hasQueuedUpdates = true;
    return _listenersChangeValue.Fire(this, update);
}

bool Graph::AddListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool Graph::RemoveListenerChangeValue(FastDelegate2<IGraph*, DelegateUpdate&, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool Graph::AddListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool Graph::RemoveListenerChangeStructure(FastDelegate1<IGraph*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

IMgrEffects* Graph::GetMgrEffects() { return _pMgrEffects; }

IKLShader* Graph::GetKLShader() { return _pKLShader; }

IKLShader::Type Graph::GetType() { return _type; }

void Graph::AddGraphForeign(Graph* graph) {
    ++_graphsForeign[graph];
    if (++graph->_countUsers == 1) {
        // The first user makes all methods of the shader part of the text.
        graph->_OnChangeStructure();
    }
}

void Graph::RemoveGraphForeign(Graph* graph) {
    const auto found = _graphsForeign.find(graph);
    if (found == _graphsForeign.end()) {
        return;
    }
    --graph->_countUsers;
    if (--found->second == 0) {
        _graphsForeign.erase(found);
    }
}

std::vector<Graph*> Graph::GetGraphsForeign() const {
    std::set<Graph*> seen;
    std::vector<Graph*> graphs;
    const auto reach = [&](const Graph* from) {
        for (const auto& [graph, uses] : from->_graphsForeign) {
            if (seen.insert(graph).second) {
                graphs.push_back(graph);
            }
        }
    };
    reach(this);
    for (std::size_t i = 0; i < graphs.size(); ++i) {
        reach(graphs[i]);
    }
    std::sort(graphs.begin(), graphs.end(), [](const Graph* a, const Graph* b) {
        return a->GetCreationNumber() < b->GetCreationNumber();
    });
    return graphs;
}

void Graph::ForgetUpdates(const void* object) {
    if (_hasQueuedUpdates) {
        _listenersForgetUpdates.Fire(object);
    }
}

bool Graph::AddListenerForgetUpdates(FastDelegate1<const void*, bool>& listener) {
    return _listenersForgetUpdates.Add(listener);
}

bool Graph::RemoveListenerForgetUpdates(FastDelegate1<const void*, bool>& listener) {
    return _listenersForgetUpdates.Remove(listener);
}

bool Graph::AddListenerEnd(FastDelegate1<Graph*, bool>& listener) {
    return _listenersEnd.Add(listener);
}

bool Graph::RemoveListenerEnd(FastDelegate1<Graph*, bool>& listener) {
    return _listenersEnd.Remove(listener);
}

void Graph::_Invalidate() {
    if (_isCompiled) {
        _ListenToRoot(false);
    }
    _isCompiled = false;
    _outputsUsed.clear();
}

void Graph::_ListenToRoot(bool listen) {
    if (_pReferenceShader == nullptr) {
        return;
    }
    auto onChange = MakeDelegate(this, &Graph::_OnChangeStructureReferenceShader);
    if (listen) {
        _pReferenceShader->AddListenerChangeStructure(onChange);
    } else {
        _pReferenceShader->RemoveListenerChangeStructure(onChange);
    }
}

void Graph::_DestroyKLShader() {
    if (_pKLShader != nullptr && _pMgrEffects != nullptr) {
        _pMgrEffects->GetOpenKLContext()->DestroyShader(_pKLShader);
    }
    _pKLShader = nullptr;
}

bool Graph::_OnDeleteReferenceShader(IReferenceShader*) {
    const bool wasCompiled = _isCompiled;
    _Invalidate();
    _ListenToView(false);
    _pReferenceShader = nullptr;
    _pShader = nullptr;
    if (wasCompiled) {
        _listenersChangeStructure.Fire(this);
    }
    return true;
}

bool Graph::_OnEndView(IShader*) {
    const ScopedHold hold(_pMgrEffects);
    const bool wasCompiled = _isCompiled;
    _Invalidate();
    _ShutdownShader();
    if (wasCompiled) {
        _listenersChangeStructure.Fire(this);
    }
    return true;
}

bool Graph::_OnChangeStructure() {
    const bool wasCompiled = _isCompiled;
    _Invalidate();
    if (wasCompiled) {
        _listenersChangeStructure.Fire(this);
    }
    return true;
}

void Graph::OnChangeReference() {
    _Invalidate();
    _listenersChangeStructure.Fire(this);
}

bool Graph::_OnChangeStructureReferenceShader(IReferenceShader*) { return _OnChangeStructure(); }

} // namespace Tolen::Effects

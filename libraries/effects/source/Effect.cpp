#include "Effect.h"

#include "CompileProblems.h"
#include "Graph.h"
#include "ProfileScope.h"
#include "ReferenceEffect.h"
#include "ScopedHold.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IReferenceGraph.h"
#include "TolenEffects/IShader.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"
#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

namespace Tolen::Effects {

template <class PolicyVertex, class PolicyCompiler>
Effect<PolicyVertex, PolicyCompiler>::Effect() = default;

template <class PolicyVertex, class PolicyCompiler>
Effect<PolicyVertex, PolicyCompiler>::~Effect() {
    Shutdown();
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::Init(IMgrEffects* manager) {
    _pMgrEffects = manager;
    _name = "Init";
    _isCompiled = false;
    IOpenKLContext* const context = manager->GetOpenKLContext();
    _pKLProgram = context == nullptr ? nullptr : context->CreateProgram();
    if (_pKLProgram == nullptr) {
        Shutdown();
        ConsolePrint("Effect::Init CreateProgram\n");
        return false;
    }
    _pKLProgram->SetName(_name);
    if (!_policyVertex.Init(this, _pKLProgram)) {
        Shutdown();
        return false;
    }
    _policyVertex.SetName(_name);
    auto onChangeIndices = MakeDelegate(this, &Effect::_OnChangeOutputIndices);
    return _pMgrEffects->AddListenerChangeOutputIndices(onChangeIndices);
}

template <class PolicyVertex, class PolicyCompiler>
void Effect<PolicyVertex, PolicyCompiler>::Shutdown() {
    const std::shared_ptr<const void> hold = _Hold();
    const bool isShared = ScopedHold::IsHeld(_pMgrEffects);
    const ScopedHold holdEnds(_pMgrEffects);
    // A listener may end the effect, or the manager, in the middle of this: then the inner call does
    // all of it and the outer one finds nothing left.
    const bool isNested = std::exchange(_isShuttingDown, true);
    if (!isNested) {
        _listenersDelete.Fire(this);
    }
    _listenersDelete.Clear();
    _ShutdownReferenceEffects();
    _listenersApply.Clear();
    _listenersUpdate.Clear();
    // Ends a firing that is in progress; there is none after this.
    _listenersChangeValue.Clear();
    _listenersChangeStructure.Clear();
    _listenersCompile.Clear();
    _policyVertex.Shutdown();
    if (_pMgrEffects != nullptr) {
        auto onChangeIndices = MakeDelegate(this, &Effect::_OnChangeOutputIndices);
        _pMgrEffects->RemoveListenerChangeOutputIndices(onChangeIndices);
    }
    if (_pGraph != nullptr) {
        _ShutdownGraph(isShared);
    }
    if (_pKLShaderRoot != nullptr) {
        _pMgrEffects->GetOpenKLContext()->DestroyShader(_pKLShaderRoot);
        _pKLShaderRoot = nullptr;
    }
    if (_pKLProgram != nullptr) {
        _pMgrEffects->GetOpenKLContext()->DestroyProgram(_pKLProgram);
        _pKLProgram = nullptr;
    }
    _name = "Shutdown";
    _isCompiled = false;
    _pReferenceShaderRoot = nullptr;
    _pKLPrimitiveApply = nullptr;
    _pMgrEffects = nullptr;
    _isShuttingDown = isNested;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::SetName(const std::string& name) {
    _name = name;
    bool all = true;
    if (_pGraph != nullptr) {
        all = _pGraph->SetName(name);
    }
    if (_pKLShaderRoot != nullptr) {
        _pKLShaderRoot->SetName(name);
    }
    if (_pKLProgram != nullptr) {
        _pKLProgram->SetName(name);
    }
    _policyVertex.SetName(name);
    return all;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerDelete(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerDelete(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerChangeValue(
    FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerChangeValue(
    FastDelegate2<IEffect*, ActionUpdate&, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerChangeStructure(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerChangeStructure(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerCompile(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersCompile.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerCompile(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersCompile.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::IsCompiled() {
    return _isCompiled;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::VisitAttributes(
    FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) {
    return _policyVertex.VisitAttributes(visit);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerChangeAttribute(
    FastDelegate1<IEffect*, bool>& listener) {
    return _policyVertex.AddListenerChangeAttribute(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerChangeAttribute(
    FastDelegate1<IEffect*, bool>& listener) {
    return _policyVertex.RemoveListenerChangeAttribute(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::SetRoot(IShader* shader) {
    if (_pMgrEffects == nullptr || _isShuttingDown || _isReplacingRoot) {
        return false;
    }
    const std::shared_ptr<const void> hold = _Hold();
    bool replaced = false;
    {
        const bool isShared = ScopedHold::IsHeld(_pMgrEffects);
        const ScopedHold holdEnds(_pMgrEffects);
        _isReplacingRoot = true;
        replaced = _ReplaceRoot(shader, isShared);
        _isReplacingRoot = false;
    }
    if (!replaced || _pMgrEffects == nullptr) {
        return false;
    }
    _listenersChangeStructure.Fire(this);
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_ReplaceRoot(IShader* shader, bool isShared) {
    IMgrEffects* const manager = _pMgrEffects;
    // The number of the old graph is the next to be handed out. It is held back while the new graph
    // draws its own, so that the names in the new text differ from those before.
    const bool hadGraph = _pGraph != nullptr;
    Key held;
    if (hadGraph) {
        _ShutdownGraph(isShared);
        if (_pMgrEffects == nullptr) {
            return false;
        }
        held = manager->CreateKey();
    }
    _pReferenceShaderRoot = nullptr;
    const bool initialized = _InitGraph(shader);
    if (hadGraph) {
        manager->DestroyKey(held);
    }
    if (!initialized) {
        return false;
    }
    _pReferenceShaderRoot = shader->GetReference(_pGraph.get());
    _isCompiled = false;
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_InitGraph(IShader* shader) {
    if (!TOLEN_CHECK(_pGraph == NULL, "Source/Effect")) {
        return false;
    }
    auto graph = std::make_unique<Graph>();
    if (!graph->Init(_pMgrEffects, PolicyCompiler::kType, shader, _name)) {
        graph.reset();
        Shutdown();
        return false;
    }
    if (_pMgrEffects == nullptr) {
        return false;
    }
    _pGraph = std::move(graph);
    _pReferenceGraph = _pGraph->CreateReference(this);
    auto onChangeValue = MakeDelegate(this, &Effect::_OnChangeValueGraph);
    auto onChangeStructure = MakeDelegate(this, &Effect::_OnChangeStructureGraph);
    auto onCompile = MakeDelegate(this, &Effect::_OnCompileGraph);
    auto onForget = MakeDelegate(this, &Effect::_OnForgetUpdates);
    _pReferenceGraph->AddListenerChangeValue(onChangeValue);
    _pReferenceGraph->AddListenerChangeStructure(onChangeStructure);
    _pReferenceGraph->AddListenerCompile(onCompile);
    _pGraph->AddListenerForgetUpdates(onForget);
    if (_policyVertex.InitGraph(_pGraph.get())) {
        return true;
    }
    if (_pGraph != nullptr) {
        _ShutdownGraph(false);
    }
    return false;
}

template <class PolicyVertex, class PolicyCompiler>
void Effect<PolicyVertex, PolicyCompiler>::_ShutdownGraph(bool isShared) {
    if (!TOLEN_CHECK(_pGraph != NULL, "Source/Effect")) {
        return;
    }
    _isCompiled = false;
    // Out of the fields first: the graph's delete listeners may ask this effect.
    std::unique_ptr<Graph> graph = std::move(_pGraph);
    IReferenceGraph* const reference = std::exchange(_pReferenceGraph, nullptr);
    if (!isShared) {
        return;
    }
    // The graph goes later, when this effect may be gone: it must know nothing of it any more.
    IMgrEffects* const manager = _pMgrEffects;
    auto onForget = MakeDelegate(this, &Effect::_OnForgetUpdates);
    graph->RemoveListenerForgetUpdates(onForget);
    graph->DestroyReference(reference);
    _policyVertex.InitGraph(nullptr);
    manager->GetImplementation()->DestroyGraph(std::move(graph));
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::GetRoot(IShader*& shader) const {
    shader = _pGraph == nullptr ? nullptr : _pGraph->GetShader();
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
IReferenceEffect* Effect<PolicyVertex, PolicyCompiler>::CreateReference(IKLPrimitive* primitive) {
    if (_pMgrEffects == nullptr || _isShuttingDown) {
        return nullptr;
    }
    auto getReferenceShader = MakeDelegate(this, &Effect::_GetReferenceShader);
    auto reference = std::make_unique<ReferenceEffect>();
    if (!reference->Init(primitive, this, getReferenceShader)) {
        reference.reset();
    }
    IReferenceEffect* const made = reference.get();
    _referenceEffects.Add(std::move(reference));
    return made;
}

template <class PolicyVertex, class PolicyCompiler>
void Effect<PolicyVertex, PolicyCompiler>::DestroyReference(IReferenceEffect* reference) {
    const std::unique_ptr<IReferenceEffect> destroyed = _referenceEffects.Take(reference);
}

template <class PolicyVertex, class PolicyCompiler>
void Effect<PolicyVertex, PolicyCompiler>::_ShutdownReferenceEffects() {
    const std::vector<std::unique_ptr<IReferenceEffect>> destroyed = _referenceEffects.TakeAll();
}

template <class PolicyVertex, class PolicyCompiler>
IReferenceShader* Effect<PolicyVertex, PolicyCompiler>::_GetReferenceShader(IShader* shader) {
    return _pGraph == nullptr ? nullptr : shader->GetReference(_pGraph.get());
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerApply(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersApply.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerApply(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersApply.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::Apply(IKLPrimitive* primitive, Result* result) {
    if (!_isCompiled) {
        return true;
    }
    if (primitive == nullptr) {
        return false;
    }
    const std::shared_ptr<const void> hold = _Hold();
    const ProfileScope scope("Effect< PolicyVertex >::Apply", _pMgrEffects->GetProfiler());
    const AutoBindKLPrimitive bind(primitive);
    klUseProgram(_pKLProgram->GetHandle());
    if (!_pGraph->Apply(primitive, _pKLProgram, result)) {
        return false;
    }
    _pKLPrimitiveApply = primitive;
    _OnChangeOutputIndices();
    _pKLPrimitiveApply = nullptr;
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::Apply(Result*) {
    return !_isCompiled || _listenersApply.Fire(this);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::AddListenerUpdate(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersUpdate.Add(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::RemoveListenerUpdate(
    FastDelegate1<IEffect*, bool>& listener) {
    return _listenersUpdate.Remove(listener);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::Update(Result* result) {
    if (_isUpdating) {
        return false;
    }
    const std::shared_ptr<const void> hold = _Hold();
    _isUpdating = true;
    bool updated = true;
    if (!_isCompiled) {
        updated = _pGraph != nullptr && _pGraph->Compile(result);
        if (!updated) {
            _CheckCompileProblems(result);
        }
    }
    // A failure of the API, or a listener, may have shut the effect down on the way.
    updated = updated && _pGraph != nullptr && _listenersUpdate.Fire(this) && _pGraph != nullptr;
    _isUpdating = false;
    return updated;
}

template <class PolicyVertex, class PolicyCompiler>
IKLProgram* Effect<PolicyVertex, PolicyCompiler>::GetKLProgram() {
    return _pKLProgram;
}

template <class PolicyVertex, class PolicyCompiler>
IMgrEffects* Effect<PolicyVertex, PolicyCompiler>::GetMgrEffects() {
    return _pMgrEffects;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_Compile(Result* result) {
    const ProfileScope scope("Effect< PolicyVertex, PolicyCompiler >::_Compile",
                             _pMgrEffects->GetProfiler());
    if (!_pGraph->IsComplete(result)) {
        if (result != nullptr) {
            result->Add("Graph::IsComplete() failed for Graph: %s", _pGraph->GetName().c_str());
        }
        return false;
    }
    if (!_pGraph->IsCompiled() && !_pGraph->Compile(result)) {
        if (result != nullptr) {
            result->Add("Graph::Compile() failed for Graph: %s", _pGraph->GetName().c_str());
        }
        return false;
    }
    const auto compiled = _pGraph->GetCreationNumber();
    if (!_InitShaderRoot() || !_CompileGraphsForeign(result) || !_LinkWithForeign(result)) {
        return false;
    }
    // A listener of one of these steps may have changed the structure, or set another root: the
    // program is stale already.
    if (_pGraph == nullptr || _pGraph->GetCreationNumber() != compiled || !_pGraph->IsCompiled()) {
        return false;
    }
    _isCompiled = true;
    _listenersCompile.Fire(this);
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_InitShaderRoot() {
    IOpenKLContext* const context = _pMgrEffects->GetOpenKLContext();
    if (_pKLShaderRoot != nullptr) {
        _pKLProgram->DetachShader(_pKLShaderRoot);
        context->DestroyShader(_pKLShaderRoot);
        _pKLShaderRoot = nullptr;
    }
    // What fails here can't be mended: the effect gives up its program and its graph.
    const auto fail = [this](const char* text) {
        Shutdown();
        ConsolePrint("%s", text);
        return false;
    };
    _pKLShaderRoot = context->CreateShader(PolicyCompiler::kType);
    if (_pKLShaderRoot == nullptr) {
        return fail("Effect::Init CreateShader\n");
    }
    _pKLShaderRoot->SetName(_name);
    if (!_pKLProgram->AddShader(_pKLShaderRoot)) {
        return fail("Effect::Init AddShader\n");
    }
    if (!_pKLProgram->AddShader(_pGraph->GetKLShader())) {
        return fail("Effect::InitGraph AddShader\n");
    }
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_CompileGraphsForeign(Result* result) {
    // Every compile tells listeners, who may destroy graphs or bring in others, so that the list is
    // asked for again after each; a graph that does not stay compiled ends the search.
    std::set<std::uint64_t> tried;
    const auto isDirty = [](Graph* graph) { return !graph->IsCompiled(); };
    while (_pGraph != nullptr) {
        const std::vector<Graph*> graphs = _pGraph->GetGraphsForeign();
        const auto dirty = std::find_if(graphs.begin(), graphs.end(), isDirty);
        if (dirty == graphs.end()) {
            return true;
        }
        if (!tried.insert((*dirty)->GetCreationNumber()).second || !(*dirty)->Compile(result)) {
            return false;
        }
    }
    return false;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_LinkWithForeign(Result* result) {
    std::set<IKLShader*> foreign;
    bool good = true;
    // cppcheck-suppress nullPointerRedundantCheck ; only compiling, below, may end the graph
    for (Graph* graph : _pGraph->GetGraphsForeign()) {
        good = good && _pKLProgram->AddShader(graph->GetKLShader());
        foreign.insert(graph->GetKLShader());
    }
    auto compiler = PolicyCompiler::CreateCompiler(_pMgrEffects, _policyVertex.GetShaderVertex(),
                                                   _pReferenceGraph, _pKLShaderRoot);
    good = good && compiler.Compile(result) && _policyVertex.Compile(this) && _Link(result);
    if (_pGraph == nullptr || foreign.empty()) {
        return good;
    }
    // Shaders of other graphs may go at any time, so they stay no longer than for the link. Those
    // that went in the meantime have left the program by that.
    for (Graph* graph : _pGraph->GetGraphsForeign()) {
        if (foreign.count(graph->GetKLShader()) != 0) {
            _pKLProgram->DetachShader(graph->GetKLShader());
        }
    }
    return good;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_Link(Result* result) {
    const ProfileScope scope("Effect Init CreateProgram", _pMgrEffects->GetProfiler());
    if (_pKLProgram->Link(result)) {
        return true;
    }
    ConsolePrint("Effect::_Compile Link\n");
    return false;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_CheckCompileProblems(Result*) {
    ConsolePrint("Effect::Apply Not Compiled for %s\n", _name.c_str());
    if (_isCompiled) {
        return true;
    }
    if (_pMgrEffects == nullptr) {
        ConsolePrint("MgrEffects pointer is NULL\n");
    }
    if (_pGraph == nullptr) {
        ConsolePrint("There is no graph in Effect %s\n", _name.c_str());
        return false;
    }
    IShader* root = nullptr;
    if (!GetRoot(root) || root == nullptr) {
        ConsolePrint("Effect %s doesn't have a root shader\n", _name.c_str());
        return false;
    }
    if (!CheckCompileProblems(root)) {
        return false;
    }
    ConsolePrint("Could not find any problems for the Effect %s\n", _name.c_str());
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_OnChangeOutputIndices() {
    if (!_isCompiled) {
        return true;
    }
    std::set<std::string> names = _pGraph->GetOutputsUsed();
    for (const Graph* graph : _pGraph->GetGraphsForeign()) {
        names.insert(graph->GetOutputsUsed().begin(), graph->GetOutputsUsed().end());
    }
    for (const std::string& name : names) {
        _UpdateOutputAttachmentIndexForOutput(name);
    }
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_UpdateOutputAttachmentIndexForOutput(
    const std::string& name) {
    int index = -1;
    if (!_pMgrEffects->GetOutputAttachmentIndex(index, name) || index < 0 ||
        !_pMgrEffects->HasOutput(name)) {
        return false;
    }
    const std::string uniform = "__outputAttachmentIndex_" + name;
    const int location = _pKLProgram->GetUniformLocation(uniform);
    if (location < 0) {
        return true;
    }
    if (_pKLPrimitiveApply != nullptr) {
        return _pKLPrimitiveApply->SetUniform(uniform, location, index);
    }
    bool all = true;
    for (const auto& reference : _referenceEffects) {
        IKLPrimitive* const primitive =
            reference == nullptr ? nullptr : reference->GetKLPrimitive();
        if (primitive != nullptr) {
            all = primitive->SetUniform(uniform, location, index) && all;
        }
    }
    return all;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_OnChangeValueGraph(IReferenceGraph*,
                                                               DelegateUpdate& update) {
    ActionUpdate action(this, update);
    return _listenersChangeValue.Fire(this, action);
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_OnChangeStructureGraph(IReferenceGraph*) {
    _isCompiled = false;
    if (_pGraph != nullptr && _pGraph->GetReferenceShader() == nullptr) {
        _pReferenceShaderRoot = nullptr;
    }
    _listenersChangeStructure.Fire(this);
    return true;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_OnCompileGraph(IReferenceGraph* graph) {
    const std::shared_ptr<const void> hold = _Hold();
    IMgrEffects* const manager = _pMgrEffects;
    Result r;
    if (!TOLEN_CHECK_TEXT(graph->GetGraph()->IsComplete(&r), "pGraph->GetGraph()->IsComplete( &r )",
                          "Source/Effect") ||
        !TOLEN_CHECK_TEXT(graph->GetGraph()->IsCompiled(), "pGraph->GetGraph()->IsCompiled()",
                          "Source/Effect")) {
        return false;
    }
    if (_Compile(&r)) {
        return true;
    }
    r.ReportToConsole(manager->GetConsole());
    return false;
}

template <class PolicyVertex, class PolicyCompiler>
bool Effect<PolicyVertex, PolicyCompiler>::_OnForgetUpdates(const void* object) {
    for (const auto& reference : _referenceEffects) {
        if (reference != nullptr) {
            static_cast<ReferenceEffect*>(reference.get())->ForgetUpdates(object);
        }
    }
    return true;
}

template class Effect<PolicyVertexSurface, PolicyCompilerRay>;
template class Effect<PolicyVertexNull, PolicyCompilerFrame>;
template class Effect<PolicyVertexNull, PolicyCompilerPrefixRay>;

} // namespace Tolen::Effects

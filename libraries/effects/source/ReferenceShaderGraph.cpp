#include "ReferenceShaderGraph.h"

#include "GeneratedCode.h"
#include "Graph.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <algorithm>

namespace Tolen::Effects {

ReferenceShaderGraph::~ReferenceShaderGraph() { Shutdown(); }

bool ReferenceShaderGraph::Init(IGraph* graph, IGraph* graphOwner) {
    _pGraph = graph;
    _pGraphOwner = graphOwner;
    _pUser = static_cast<Graph*>(graphOwner);

    // A new user changes the other graph's text, so this comes before we listen to it.
    _pUser->AddGraphForeign(static_cast<Graph*>(graph));
    auto onDelete = MakeDelegate(this, &ReferenceShaderGraph::_OnDeleteGraph);
    auto onChangeValue = MakeDelegate(this, &ReferenceShaderGraph::_OnChangeValueGraph);
    auto onChangeStructure = MakeDelegate(this, &ReferenceShaderGraph::_OnChangeStructureGraph);
    auto onAddAttribute = MakeDelegate(this, &ReferenceShaderGraph::_AcquireAttribute);
    auto onRemoveAttribute = MakeDelegate(this, &ReferenceShaderGraph::_ReleaseAttribute);
    _pGraph->AddListenerDelete(onDelete);
    _pGraph->AddListenerChangeValue(onChangeValue);
    _pGraph->AddListenerChangeStructure(onChangeStructure);
    _pGraph->AddListenerAddAttribute(onAddAttribute);
    _pGraph->AddListenerRemoveAttribute(onRemoveAttribute);
    // Updates of the other graph are queued by those who apply the using one.
    auto onForget = MakeDelegate(this, &ReferenceShaderGraph::_OnForgetUpdates);
    static_cast<Graph*>(_pGraph)->AddListenerForgetUpdates(onForget);

    FastDelegate1<Module*, bool> collect(this, &ReferenceShaderGraph::CollectShader);
    auto apply = MakeDelegate(this, &ReferenceShaderGraph::_Apply);
    _pGraphOwner->AddDelegateCollectShader(collect);
    _pGraphOwner->AddDelegateApply(apply);
    return _pGraph->VisitAttributes(onAddAttribute);
}

void ReferenceShaderGraph::Shutdown() {
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    if (_pUser == nullptr) {
        return;
    }
    if (_IsGraphAlive()) {
        _LeaveGraph();
    }
    _ReleaseAttributes();
    FastDelegate1<Module*, bool> collect(this, &ReferenceShaderGraph::CollectShader);
    auto apply = MakeDelegate(this, &ReferenceShaderGraph::_Apply);
    _pUser->RemoveDelegateCollectShader(collect);
    _pUser->RemoveDelegateApply(apply);
    _pGraph = nullptr;
    _pGraphOwner = nullptr;
    _pUser = nullptr;
}

void ReferenceShaderGraph::_LeaveGraph() {
    auto onDelete = MakeDelegate(this, &ReferenceShaderGraph::_OnDeleteGraph);
    auto onChangeValue = MakeDelegate(this, &ReferenceShaderGraph::_OnChangeValueGraph);
    auto onChangeStructure = MakeDelegate(this, &ReferenceShaderGraph::_OnChangeStructureGraph);
    auto onAddAttribute = MakeDelegate(this, &ReferenceShaderGraph::_AcquireAttribute);
    auto onRemoveAttribute = MakeDelegate(this, &ReferenceShaderGraph::_ReleaseAttribute);
    auto onForget = MakeDelegate(this, &ReferenceShaderGraph::_OnForgetUpdates);
    _pGraph->RemoveListenerDelete(onDelete);
    _pGraph->RemoveListenerChangeValue(onChangeValue);
    _pGraph->RemoveListenerChangeStructure(onChangeStructure);
    _pGraph->RemoveListenerAddAttribute(onAddAttribute);
    _pGraph->RemoveListenerRemoveAttribute(onRemoveAttribute);
    static_cast<Graph*>(_pGraph)->RemoveListenerForgetUpdates(onForget);
    _pUser->RemoveGraphForeign(static_cast<Graph*>(_pGraph));
    _pGraphOwner = nullptr;
}

bool ReferenceShaderGraph::Release() { return false; }

bool ReferenceShaderGraph::AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool ReferenceShaderGraph::RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool ReferenceShaderGraph::CollectShader(Module* module) {
    IShader* const shader = GetShader();
    if (shader == nullptr) {
        return true;
    }
    auto collect = [this, module](const FunctionDefinition* definition) {
        return _CollectDeclaration(module, definition);
    };
    auto visit = FastDelegate1<const FunctionDefinition*, bool>::Borrow(collect);
    if (!shader->VisitMethods(visit)) {
        return false;
    }
    // The constructors of the shaders that use this one call its constructor.
    if (shader->HasConstructor()) {
        DeclareFunctionVoid(module, shader->GetConstructorName());
    }
    return true;
}

bool ReferenceShaderGraph::_CollectDeclaration(Module* module,
                                               const FunctionDefinition* definition) {
    auto* const prototype =
        static_cast<FunctionPrototype*>(definition->GetFunctionPrototype()->Clone(module));
    if (prototype == nullptr) {
        ConsolePrint("CollectDeclarationsMethod Clone Failed\n");
        return false;
    }
    module->AddFunctionDeclaration(prototype);
    return true;
}

bool ReferenceShaderGraph::CollectDeclarationMethod(Module* module, const std::string& method) {
    IShader* const shader = GetShader();
    return shader != nullptr && shader->CollectDeclarationMethod(module, method);
}

bool ReferenceShaderGraph::HasMethod(const std::string& method) const {
    IShader* const shader = _IsGraphAlive() ? _pGraph->GetShader() : nullptr;
    return shader != nullptr && shader->HasMethod(method);
}

std::string ReferenceShaderGraph::GetMethodMangled(const std::string& method) const {
    IShader* const shader = _IsGraphAlive() ? _pGraph->GetShader() : nullptr;
    return shader == nullptr ? std::string() : shader->GetMethodNameMangled(method);
}

bool ReferenceShaderGraph::IsComplete(Result*) const { return true; }

bool ReferenceShaderGraph::HasConstructor() const { return false; }

std::string ReferenceShaderGraph::GetConstructor() const { return "ReferenceShaderGraph"; }

bool ReferenceShaderGraph::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    return !_IsGraphAlive() || _pGraph->Apply(primitive, program, nullptr);
}

bool ReferenceShaderGraph::AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceShaderGraph::RemoveListenerChangeValue(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceShaderGraph::AddListenerChangeStructure(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool ReferenceShaderGraph::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

IReferenceParameter* ReferenceShaderGraph::GetParameter(const std::string&) { return nullptr; }

bool ReferenceShaderGraph::VisitParameters(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>&, Result*) const {
    return true;
}

int ReferenceShaderGraph::GetCountParameters() const { return 0; }

IReferenceMember* ReferenceShaderGraph::GetMember(const std::string&) { return nullptr; }

bool ReferenceShaderGraph::VisitMembers(
    FastDelegate2<const std::string&, IReferenceMember*, bool>&) const {
    return true;
}

int ReferenceShaderGraph::GetCountMembers() const { return 0; }

IReferenceParameter* ReferenceShaderGraph::GetCoord(const std::string&) { return nullptr; }

bool ReferenceShaderGraph::VisitCoords(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>&, Result*) const {
    return true;
}

int ReferenceShaderGraph::GetCountCoords() const { return 0; }

IShader* ReferenceShaderGraph::GetShader() {
    return _IsGraphAlive() ? _pGraph->GetShader() : nullptr;
}

ReferencePrototypeShader* ReferenceShaderGraph::GetReferencePrototype() { return nullptr; }

IGraph* ReferenceShaderGraph::GetGraph() { return _IsGraphAlive() ? _pGraph : nullptr; }

bool ReferenceShaderGraph::AddListenerChangeImpl(FastDelegate0<bool>& listener) {
    return _listenersChangeImpl.Add(listener);
}

bool ReferenceShaderGraph::RemoveListenerChangeImpl(FastDelegate0<bool>& listener) {
    return _listenersChangeImpl.Remove(listener);
}

int ReferenceShaderGraph::GetIndex() const { return -1; }

bool ReferenceShaderGraph::_Apply(IKLPrimitive* primitive, IKLProgram* program) {
    return Apply(primitive, program);
}

bool ReferenceShaderGraph::_AcquireAttribute(IGraph::Attribute attribute) {
    if (!_pUser->AcquireAttribute(attribute.type, attribute.name, attribute.transformation)) {
        return false;
    }
    _attributes.push_back(attribute.name);
    return true;
}

bool ReferenceShaderGraph::_ReleaseAttribute(IGraph::Attribute attribute) {
    const auto found = std::find(_attributes.begin(), _attributes.end(), attribute.name);
    if (found == _attributes.end()) {
        return true;
    }
    _attributes.erase(found);
    return _pUser->ReleaseAttribute(attribute.name);
}

void ReferenceShaderGraph::_ReleaseAttributes() {
    const std::vector<std::string> attributes = std::move(_attributes);
    _attributes.clear();
    for (const std::string& name : attributes) {
        _pUser->ReleaseAttribute(name);
    }
}

bool ReferenceShaderGraph::_OnDeleteGraph(IGraph*) {
    // A graph must not go while it is used elsewhere; where it does, this object goes on without,
    // and whoever owns it may have a better one.
    TOLEN_CHECK(false, "Source/ReferenceShaderGraph");
    _LeaveGraph();
    return _listenersChangeImpl.Fire();
}

bool ReferenceShaderGraph::_OnForgetUpdates(const void* object) {
    _pUser->ForgetUpdates(object);
    return true;
}

bool ReferenceShaderGraph::_OnChangeValueGraph(IGraph*, DelegateUpdate& update) {
    const LifeToken::Watch alive = _life.GetWatch();
    const bool heard = _listenersChangeValue.Fire(this);
    return alive && _IsGraphAlive() && _pGraphOwner->AddDelegateUpdate(update) && heard;
}

bool ReferenceShaderGraph::_OnChangeStructureGraph(IGraph*) {
    TOLEN_CHECK(false, "Source/ReferenceShaderGraph");
    const LifeToken::Watch alive = _life.GetWatch();
    const bool heard = _listenersChangeStructure.Fire(this);
    // Changes of shaders are heard there in any case, those of the graph alone only by this way.
    if (alive && _IsGraphAlive() && _pUser->IsCompiled()) {
        _pUser->OnChangeReference();
    }
    return heard;
}

} // namespace Tolen::Effects

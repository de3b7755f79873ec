#include "ReferenceShader.h"

#include "Graph.h"
#include "ReferenceShaderGraph.h"
#include "ReferenceShaderNode.h"
#include "Shader.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

IGraph* FindGraphForeign(IShader* shader, IGraph* graph) {
    IShader* const root = graph->GetShader();
    if (shader == root || shader == Shader::GetBase(root)) {
        return nullptr;
    }
    switch (graph->GetType()) {
    case IKLShader::kType_Ray:
        return shader->GetGraphKind0();
    case IKLShader::kType_Frame:
        return shader->GetGraphKind2();
    case IKLShader::kType_PrefixRay:
        return shader->GetGraphKind3();
    default:
        return nullptr;
    }
}

ReferenceShader::~ReferenceShader() { Shutdown(); }

bool ReferenceShader::Init(IShader* shader, IGraph* graph) {
    _pShader = shader;
    _pGraph = graph;
    auto onDelete = MakeDelegate(this, &ReferenceShader::_OnDelete);
    return _pShader->AddListenerDelete(onDelete) && _InitImpl(shader, graph);
}

void ReferenceShader::Shutdown() {
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    if (_pShader != nullptr) {
        auto onDelete = MakeDelegate(this, &ReferenceShader::_OnDelete);
        _pShader->RemoveListenerDelete(onDelete);
    }
    _ShutdownImpl();
    _pShader = nullptr;
    _pGraph = nullptr;
}

bool ReferenceShader::Release() { return _pShader != nullptr && _pShader->ReleaseReference(this); }

bool ReferenceShader::AddListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Add(listener);
}

bool ReferenceShader::RemoveListenerDelete(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersDelete.Remove(listener);
}

bool ReferenceShader::CollectShader(Module* module) {
    return _pImpl != nullptr && _pImpl->CollectShader(module);
}

bool ReferenceShader::CollectDeclarationMethod(Module* module, const std::string& method) {
    return _pImpl != nullptr && _pImpl->CollectDeclarationMethod(module, method);
}

bool ReferenceShader::HasMethod(const std::string& method) const {
    return _pImpl != nullptr && _pImpl->HasMethod(method);
}

std::string ReferenceShader::GetMethodMangled(const std::string& method) const {
    return _pImpl == nullptr ? std::string() : _pImpl->GetMethodMangled(method);
}

bool ReferenceShader::IsComplete(Result* result) const {
    return _pImpl != nullptr && _pImpl->IsComplete(result);
}

bool ReferenceShader::HasConstructor() const {
    return _pImpl != nullptr && _pImpl->HasConstructor();
}

std::string ReferenceShader::GetConstructor() const {
    return _pImpl == nullptr ? std::string() : _pImpl->GetConstructor();
}

bool ReferenceShader::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    return _pImpl != nullptr && _pImpl->Apply(primitive, program);
}

bool ReferenceShader::AddListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceShader::RemoveListenerChangeValue(FastDelegate1<IReferenceShader*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceShader::AddListenerChangeStructure(FastDelegate1<IReferenceShader*, bool>& listener) {
    const bool isFirst = _listenersChangeStructure.IsEmpty();
    _listenersChangeStructure.Add(listener);
    if (isFirst) {
        _ListenToImpl(true);
    }
    return true;
}

bool ReferenceShader::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceShader*, bool>& listener) {
    _listenersChangeStructure.Remove(listener);
    if (_listenersChangeStructure.IsEmpty()) {
        _ListenToImpl(false);
    }
    return true;
}

IReferenceParameter* ReferenceShader::GetParameter(const std::string& name) {
    return _pImpl == nullptr ? nullptr : _pImpl->GetParameter(name);
}

bool ReferenceShader::VisitParameters(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
    Result* result) const {
    return _pImpl != nullptr && _pImpl->VisitParameters(visit, result);
}

int ReferenceShader::GetCountParameters() const {
    return _pImpl == nullptr ? 0 : _pImpl->GetCountParameters();
}

IReferenceMember* ReferenceShader::GetMember(const std::string& name) {
    return _pImpl == nullptr ? nullptr : _pImpl->GetMember(name);
}

bool ReferenceShader::VisitMembers(
    FastDelegate2<const std::string&, IReferenceMember*, bool>& visit) const {
    return _pImpl != nullptr && _pImpl->VisitMembers(visit);
}

int ReferenceShader::GetCountMembers() const {
    return _pImpl == nullptr ? 0 : _pImpl->GetCountMembers();
}

IReferenceParameter* ReferenceShader::GetCoord(const std::string& name) {
    return _pImpl == nullptr ? nullptr : _pImpl->GetCoord(name);
}

bool ReferenceShader::VisitCoords(
    FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>& visit,
    Result* result) const {
    return _pImpl != nullptr && _pImpl->VisitCoords(visit, result);
}

int ReferenceShader::GetCountCoords() const {
    return _pImpl == nullptr ? 0 : _pImpl->GetCountCoords();
}

IShader* ReferenceShader::GetShader() { return _pImpl == nullptr ? nullptr : _pImpl->GetShader(); }

ReferencePrototypeShader* ReferenceShader::GetReferencePrototype() {
    return _pImpl == nullptr ? nullptr : _pImpl->GetReferencePrototype();
}

IGraph* ReferenceShader::GetGraph() { return _pImpl == nullptr ? nullptr : _pImpl->GetGraph(); }

bool ReferenceShader::_InitImpl(IShader* shader, IGraph* graph) {
    if (shader == graph->GetShader()) {
        return _InitImplRoot(shader, graph);
    }
    if (graph->GetType() == IKLShader::kType_Vertex) {
        TOLEN_CHECK(false, "Source/ReferenceShader");
    }
    IGraph* const own = FindGraphForeign(shader, graph);
    return own == nullptr ? _InitImplNode(shader, graph) : _InitImplGraph(own, graph);
}

bool ReferenceShader::_InitImplNode(IShader* shader, IGraph* graph) {
    auto node = std::make_unique<ReferenceShaderNode>();
    if (!node->Init(shader, graph)) {
        return false;
    }
    auto onChangeValue = MakeDelegate(this, &ReferenceShader::_OnChangeValue);
    static_cast<IImplReferenceShader*>(node.get())->AddListenerChangeValue(onChangeValue);
    if (!TOLEN_CHECK(_pImpl == NULL, "Source/ReferenceShader")) {
        return false;
    }
    _pNode = node.get();
    _pImpl = std::move(node);
    if (!_listenersChangeStructure.IsEmpty()) {
        _ListenToImpl(true);
    }
    return true;
}

bool ReferenceShader::_InitImplRoot(IShader* shader, IGraph* graph) {
    return _InitImplNode(shader, graph);
}

bool ReferenceShader::_InitImplGraph(IGraph* graph, IGraph* graphOwner) {
    auto implementation = std::make_unique<ReferenceShaderGraph>();
    if (!implementation->Init(graph, graphOwner)) {
        return false;
    }
    if (!TOLEN_CHECK(_pImpl == NULL, "Source/ReferenceShader")) {
        return false;
    }
    _pImpl = std::move(implementation);
    // When its graph goes, the shader comes into this one.
    auto onChangeImpl = MakeDelegate(this, &ReferenceShader::_OnChangeImpl);
    _pImpl->AddListenerChangeImpl(onChangeImpl);
    if (!_listenersChangeStructure.IsEmpty()) {
        _ListenToImpl(true);
    }
    return true;
}

void ReferenceShader::_ShutdownImpl() {
    // Out of the fields first, so that nobody is forwarded to an object that is going away.
    _pNode = nullptr;
    const std::unique_ptr<IImplReferenceShader> implementation = std::move(_pImpl);
}

void ReferenceShader::_ListenToImpl(bool listen) {
    if (_pImpl == nullptr) {
        return;
    }
    // Of a node this is a change of its shader; of another graph, one that makes the program stale
    // which links it.
    auto onChange = MakeDelegate(this, &ReferenceShader::_OnChangeStructure);
    if (listen) {
        _pImpl->AddListenerChangeStructure(onChange);
    } else {
        _pImpl->RemoveListenerChangeStructure(onChange);
    }
}

bool ReferenceShader::_OnChangeValue(IReferenceShader*) { return _listenersChangeValue.Fire(this); }

bool ReferenceShader::_OnChangeStructure(IReferenceShader*) {
    return _listenersChangeStructure.Fire(this);
}

bool ReferenceShader::_OnChangeImpl() {
    if (_pShader == nullptr) {
        return true;
    }
    _ShutdownImpl();
    const bool initialized = _InitImpl(_pShader, _pGraph);
    static_cast<Graph*>(_pGraph)->OnChangeReference();
    return initialized;
}

bool ReferenceShader::_OnDelete(IShader*) {
    // The shader deletes this object in a moment; it must not be asked for anything any more.
    _pShader = nullptr;
    _ShutdownImpl();
    return true;
}

} // namespace Tolen::Effects

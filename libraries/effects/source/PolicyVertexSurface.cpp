#include "PolicyVertexSurface.h"

#include "ProfileScope.h"
#include "ShaderVertex.h"
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IMgrEffects.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

namespace Tolen::Effects {

PolicyVertexSurface::PolicyVertexSurface() = default;

PolicyVertexSurface::~PolicyVertexSurface() { Shutdown(); }

bool PolicyVertexSurface::Init(IEffect* effect, IKLProgram* program) {
    if (!TOLEN_CHECK(_pVertex == NULL, "Source/PolicyVertexSurface")) {
        return false;
    }
    _pEffect = effect;
    _pProgram = program;
    _pVertex = std::make_unique<ShaderVertex>();
    if (!_pVertex->Init(effect->GetMgrEffects(), program)) {
        return false;
    }
    auto onProgramChange = MakeDelegate(_pVertex.get(), &ShaderVertex::OnProgramChange);
    program->AddListenerLink(onProgramChange);
    if (!program->AddShader(_pVertex->GetKLShader())) {
        ConsolePrint("PolicyVertexSurface::Init Add Shader\n");
        return false;
    }
    return true;
}

bool PolicyVertexSurface::InitGraph(IGraph* graph) {
    if (_pGraph != nullptr) {
        _ReleaseGraph();
    }
    if (graph == nullptr) {
        return true;
    }
    if (!TOLEN_CHECK(_pGraph == NULL, "Source/PolicyVertexSurface")) {
        return false;
    }
    _pGraph = graph;
    auto onAdd = MakeDelegate(this, &PolicyVertexSurface::_OnAddAttribute);
    if (!_pGraph->VisitAttributes(onAdd)) {
        // Nobody would tell of the graph's end, so it is not kept.
        auto onRemove = MakeDelegate(this, &PolicyVertexSurface::_OnRemoveAttribute);
        if (_pGraph != nullptr) {
            _pGraph->VisitAttributes(onRemove);
        }
        _pGraph = nullptr;
        return false;
    }
    if (_pGraph == nullptr) {
        // A listener has shut the effect down.
        return false;
    }
    auto onDelete = MakeDelegate(this, &PolicyVertexSurface::_OnDeleteGraph);
    auto onRemove = MakeDelegate(this, &PolicyVertexSurface::_OnRemoveAttribute);
    return _pGraph->AddListenerDelete(onDelete) && _pGraph->AddListenerAddAttribute(onAdd) &&
           _pGraph->AddListenerRemoveAttribute(onRemove);
}

bool PolicyVertexSurface::Compile(IEffect* effect) {
    const ProfileScope scope("Effect::_CompileShaderVertex",
                             effect->GetMgrEffects()->GetProfiler());
    return _pVertex->Compile();
}

void PolicyVertexSurface::Shutdown() {
    InitGraph(nullptr);
    // Forgotten in any case: releasing keeps the pointer when a listener objects.
    _pGraph = nullptr;
    if (_pVertex != nullptr && _pProgram != nullptr) {
        auto onProgramChange = MakeDelegate(_pVertex.get(), &ShaderVertex::OnProgramChange);
        _pProgram->RemoveListenerLink(onProgramChange);
    }
    _pVertex.reset();
    _pProgram = nullptr;
    _pEffect = nullptr;
}

void PolicyVertexSurface::SetName(const std::string& name) {
    if (_pVertex != nullptr) {
        _pVertex->SetName(name);
    }
}

bool PolicyVertexSurface::VisitAttributes(
    FastDelegate2<const std::string&, IAttributeVertex*, bool>& visit) {
    return _pVertex != nullptr && _pVertex->VisitAttributes(visit);
}

bool PolicyVertexSurface::AddListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) {
    return _listenersChangeAttribute.Add(listener);
}

bool PolicyVertexSurface::RemoveListenerChangeAttribute(FastDelegate1<IEffect*, bool>& listener) {
    return _listenersChangeAttribute.Remove(listener);
}

bool PolicyVertexSurface::_ReleaseGraph() {
    if (!TOLEN_CHECK(_pGraph != NULL, "Source/PolicyVertexSurface")) {
        return false;
    }
    auto onDelete = MakeDelegate(this, &PolicyVertexSurface::_OnDeleteGraph);
    auto onAdd = MakeDelegate(this, &PolicyVertexSurface::_OnAddAttribute);
    auto onRemove = MakeDelegate(this, &PolicyVertexSurface::_OnRemoveAttribute);
    _pGraph->RemoveListenerDelete(onDelete);
    _pGraph->RemoveListenerAddAttribute(onAdd);
    _pGraph->RemoveListenerRemoveAttribute(onRemove);
    const bool released = _pGraph->VisitAttributes(onRemove);
    if (released) {
        _pGraph = nullptr;
    }
    return released;
}

bool PolicyVertexSurface::_OnAddAttribute(IGraph::Attribute attribute) {
    if (_pVertex == nullptr) {
        return false;
    }
    // The vertex stage hands the normal on in any case.
    if (attribute.name == "Normal" && attribute.type == kType_Vec3) {
        return _listenersChangeAttribute.Fire(_pEffect);
    }
    return _pVertex->AcquireAttribute(attribute.type, attribute.name, attribute.transformation) &&
           _listenersChangeAttribute.Fire(_pEffect);
}

bool PolicyVertexSurface::_OnRemoveAttribute(IGraph::Attribute attribute) {
    if (_pVertex == nullptr) {
        return true;
    }
    _pVertex->ReleaseAttribute(attribute.name);
    return _listenersChangeAttribute.Fire(_pEffect);
}

bool PolicyVertexSurface::_OnDeleteGraph(IGraph*) {
    if (_pGraph == nullptr) {
        return true;
    }
    auto onRemove = MakeDelegate(this, &PolicyVertexSurface::_OnRemoveAttribute);
    const bool released = _pGraph->VisitAttributes(onRemove);
    // The graph is gone in a moment, whatever the listeners say.
    _pGraph = nullptr;
    return released;
}

} // namespace Tolen::Effects

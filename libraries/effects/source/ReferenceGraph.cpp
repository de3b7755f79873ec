#include "ReferenceGraph.h"

#include "TolenEffects/IGraph.h"

namespace Tolen::Effects {

ReferenceGraph::~ReferenceGraph() {
    if (_pGraph == nullptr) {
        return;
    }
    auto onChangeValue = MakeDelegate(this, &ReferenceGraph::_OnChangeValue);
    auto onChangeStructure = MakeDelegate(this, &ReferenceGraph::_OnChangeStructure);
    auto onCompile = MakeDelegate(this, &ReferenceGraph::_OnCompile);
    _pGraph->RemoveListenerChangeValue(onChangeValue);
    _pGraph->RemoveListenerChangeStructure(onChangeStructure);
    _pGraph->RemoveListenerCompile(onCompile);
}

bool ReferenceGraph::Init(IGraph* graph) {
    _pGraph = graph;
    auto onChangeValue = MakeDelegate(this, &ReferenceGraph::_OnChangeValue);
    auto onChangeStructure = MakeDelegate(this, &ReferenceGraph::_OnChangeStructure);
    auto onCompile = MakeDelegate(this, &ReferenceGraph::_OnCompile);
    return _pGraph->AddListenerChangeValue(onChangeValue) &&
           _pGraph->AddListenerChangeStructure(onChangeStructure) &&
           _pGraph->AddListenerCompile(onCompile);
}

bool ReferenceGraph::AddListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) {
    return _listenersCompile.Add(listener);
}

bool ReferenceGraph::RemoveListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) {
    return _listenersCompile.Remove(listener);
}

bool ReferenceGraph::Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) {
    return _pGraph->Apply(primitive, program, result);
}

bool ReferenceGraph::AddListenerChangeValue(
    FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ReferenceGraph::RemoveListenerChangeValue(
    FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ReferenceGraph::AddListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool ReferenceGraph::RemoveListenerChangeStructure(
    FastDelegate1<IReferenceGraph*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

IGraph* ReferenceGraph::GetGraph() { return _pGraph; }

bool ReferenceGraph::_OnChangeValue(IGraph*, DelegateUpdate& update) {
    return _listenersChangeValue.Fire(this, update);
}

bool ReferenceGraph::_OnChangeStructure(IGraph*) { return _listenersChangeStructure.Fire(this); }

bool ReferenceGraph::_OnCompile(IGraph*) { return _listenersCompile.Fire(this); }

} // namespace Tolen::Effects

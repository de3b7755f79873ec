#pragma once

#include "TolenEffects/IReferenceGraph.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

/// Passes on what happens in a graph. Owned by the graph.
class ReferenceGraph : public IReferenceGraph, public CreationOrder {
public:
    ~ReferenceGraph() override;

    /// @param graph borrowed, owns this object
    bool Init(IGraph* graph);

    bool AddListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) override;
    bool RemoveListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) override;
    bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) override;
    bool
    AddListenerChangeValue(FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) override;
    bool RemoveListenerChangeValue(
        FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) override;
    bool AddListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) override;
    IGraph* GetGraph() override;

private:
    bool _OnChangeValue(IGraph* graph, DelegateUpdate& update);
    bool _OnChangeStructure(IGraph* graph);
    bool _OnCompile(IGraph* graph);

    IGraph* _pGraph = nullptr; ///< borrowed
    ListenerSet<FastDelegate1<IReferenceGraph*, bool>> _listenersCompile;
    ListenerSet<FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<IReferenceGraph*, bool>> _listenersChangeStructure;
};

} // namespace Tolen::Effects

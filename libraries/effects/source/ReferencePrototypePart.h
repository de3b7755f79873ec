#pragma once

#include "ReferencePrototypeShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

/// What the graph's references of a class's inputs and member variables have in common: the
/// prototype that made them, the class in the graph, and listeners.
///
/// @tparam Base  IReferencePrototypeParameter or IReferencePrototypeMember
/// @tparam Owner the prototype
template <class Base, class Owner>
class ReferencePrototypePart : public Base, public CreationOrder {
public:
    ~ReferencePrototypePart() override { Shutdown(); }

    /// @param owner  borrowed, owns this object
    /// @param parent borrowed
    bool Init(Owner* owner, ReferencePrototypeShader* parent) {
        _pOwner = owner;
        _pParent = parent;
        _pGraph = parent->GetGraph();
        return true;
    }

    virtual void Shutdown() {
        _listenersChangeStructure.Clear();
        _pOwner = nullptr;
        _pParent = nullptr;
    }

    bool AddListenerChangeStructure(FastDelegate1<Base*, bool>& listener) override {
        return _listenersChangeStructure.Add(listener);
    }
    bool RemoveListenerChangeStructure(FastDelegate1<Base*, bool>& listener) override {
        return _listenersChangeStructure.Remove(listener);
    }

    /// Stays after Shutdown, since owners find their references by it.
    IGraph* GetGraph() override { return _pGraph; }

protected:
    Owner* _pOwner = nullptr;
    ReferencePrototypeShader* _pParent = nullptr;
    IGraph* _pGraph = nullptr;
    ListenerSet<FastDelegate1<Base*, bool>> _listenersChangeStructure;
};

} // namespace Tolen::Effects

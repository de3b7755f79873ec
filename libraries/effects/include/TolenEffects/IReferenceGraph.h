#pragma once

#include "TolenEffects/ActionUpdate.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;

/// The relay through which an effect hears of its graph without the graph knowing the effect. Owned
/// by the graph, which passes its notices on while the relay lives.
class TOLEN_EXPORT IReferenceGraph {
public:
    virtual ~IReferenceGraph() = default;

    /// Adds a listener that is called after every good compile of the graph.
    /// @return true
    virtual bool AddListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    /// Takes a listener of AddListenerCompile() off. @return true
    virtual bool RemoveListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    /// Writes all values of the graph on @p primitive. @return as IGraph::Apply
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) = 0;
    /// Adds a listener that is called with the write of a value that has changed.
    /// @return true
    virtual bool
    AddListenerChangeValue(FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) = 0;
    /// Adds a listener that is called when what was compiled has become stale.
    /// @return true
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    /// The graph that this is a relay of.
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

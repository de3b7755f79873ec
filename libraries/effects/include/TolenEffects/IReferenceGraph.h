#pragma once

#include "TolenEffects/ActionUpdate.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;

/// The relay through which an effect hears of its graph without the graph knowing the effect.
class TOLEN_EXPORT IReferenceGraph {
public:
    virtual ~IReferenceGraph() = default;

    virtual bool AddListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    virtual bool RemoveListenerCompile(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    /// Writes all values of the graph on @p primitive.
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, Result* result) = 0;
    virtual bool
    AddListenerChangeValue(FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeValue(FastDelegate2<IReferenceGraph*, DelegateUpdate&, bool>& listener) = 0;
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeStructure(FastDelegate1<IReferenceGraph*, bool>& listener) = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

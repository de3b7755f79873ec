#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IGraph;
class ILocalParameter;
class IParameter;

/// One parameter of a shader as it is used in one graph: it writes the value to a primitive on
/// request, keeps the values that hold for single primitives, and passes changes on to the graph.
class TOLEN_EXPORT IReferenceParameter {
public:
    virtual ~IReferenceParameter() = default;

    virtual bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    virtual bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    virtual bool AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;

    virtual bool IsComplete(Result* result) const = 0;
    /// Writes the value, or the primitive's own one, to @p primitive.
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;

    /// The value for one primitive alone, made at the first call; null where there can be none.
    virtual ILocalParameter* AcquireLocal(IKLPrimitive* primitive) = 0;
    virtual void ReleaseLocal(ILocalParameter* parameter) = 0;

    virtual IParameter* GetParameter() = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

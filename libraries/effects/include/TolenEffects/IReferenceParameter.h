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

    /// Adds a listener that is called after a change of the parameter's value.
    /// @return true
    virtual bool AddListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeValue() off. @return true
    virtual bool RemoveListenerChangeValue(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    /// Adds a listener that is called after a change for which code has to be made again.
    /// @return true
    virtual bool
    AddListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;
    /// Takes a listener of AddListenerChangeStructure() off. @return true
    virtual bool
    RemoveListenerChangeStructure(FastDelegate1<IReferenceParameter*, bool>& listener) = 0;

    /// Whether everything is set that code needs.
    /// @param result takes what is missing; may be null
    virtual bool IsComplete(Result* result) const = 0;
    /// Writes the value, or the primitive's own one, to @p primitive, where @p program has it.
    /// @return false when that fails
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program) = 0;

    /// The value for one primitive alone, made at the first call.
    /// @param primitive borrowed until ReleaseLocal
    /// @return owned by this object; null where there can be none, as for arrays, coords and inputs
    ///         that take shaders
    virtual ILocalParameter* AcquireLocal(IKLPrimitive* primitive) = 0;
    /// Ends a local value, which tells its delete listeners; passes over null and strangers.
    virtual void ReleaseLocal(ILocalParameter* parameter) = 0;

    /// The parameter that this stands for.
    virtual IParameter* GetParameter() = 0;
    /// The graph in which it is used.
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

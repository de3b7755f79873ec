#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IKLPrimitive;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IEffect;
class ILocalParameter;
class IShader;

/// One effect on one primitive: what is due to be written there, and the values that hold for this
/// primitive alone. Owned by the effect.
class TOLEN_EXPORT IReferenceEffect {
public:
    virtual ~IReferenceEffect() = default;

    /// Called first thing when the reference shuts down.
    virtual bool AddListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// Writes all values on the primitive.
    virtual bool Apply(Result* result) = 0;
    virtual bool AddListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// Writes what is due: everything after a compile, otherwise the values that have changed, in
    /// the order of the changes. A write that fails leaves the queue for the next time.
    virtual bool Update(Result* result) = 0;
    /// While stopped, Update does nothing and changes queue up.
    virtual void SetStopUpdate(bool stop) = 0;
    virtual bool AddListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    virtual bool RemoveListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// The value of a parameter for this primitive alone, made at the first call. A new value shows
    /// at the next full apply.
    /// @return owned by the library; null for an unknown name, a shader that isn't in the effect,
    ///         or a parameter that can't be local
    virtual ILocalParameter* AcquireParameterLocal(IShader* shader, const std::string& name) = 0;
    virtual void ReleaseParameterLocal(ILocalParameter* parameter) = 0;
    virtual void ReleaseParameterLocalAll() = 0;
    virtual bool ExistsParameterLocal(IShader* shader, const std::string& name) const = 0;

    /// Null once the effect is gone.
    virtual IEffect* GetEffect() = 0;
    virtual IKLPrimitive* GetKLPrimitive() = 0;
};

} // namespace Tolen::Effects

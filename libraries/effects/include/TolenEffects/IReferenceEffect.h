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

    /// Adds a listener that is called first thing when the reference shuts down.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// Makes the primitive shaded by the effect's program and writes all values on it; then calls
    /// the apply listeners.
    /// @return false when a write fails and once the effect is gone; an effect that is not compiled
    ///         answers true
    virtual bool Apply(Result* result) = 0;
    /// Adds a listener that is called after every Apply() that has succeeded.
    /// @return true
    virtual bool AddListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerApply() off. @return true
    virtual bool RemoveListenerApply(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// Writes what is due: everything after a compile, otherwise the values that have changed, in
    /// the order of the changes. A write that fails leaves the queue for the next time.
    /// @return false when a write fails and once the effect is gone; true while stopped
    virtual bool Update(Result* result) = 0;
    /// While stopped, Update does nothing and changes queue up. A new reference is not stopped.
    virtual void SetStopUpdate(bool stop) = 0;
    /// Adds a listener that is called after every Update() that has written changed values, or
    /// found none. One that applies everything calls the apply listeners instead.
    /// @return true
    virtual bool AddListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;
    /// Takes a listener of AddListenerUpdate() off. @return true
    virtual bool RemoveListenerUpdate(FastDelegate1<IReferenceEffect*, bool>& listener) = 0;

    /// The value of a parameter for this primitive alone, made at the first call. A new value shows
    /// at the next full apply, which Apply() is.
    /// @param shader the shader in the effect that has the parameter
    /// @param name   the name of the parameter
    /// @return owned by the library until it is released or the shader leaves the effect; null for
    ///         an unknown name, a shader that isn't in the effect, or a parameter that can't be
    ///         local
    virtual ILocalParameter* AcquireParameterLocal(IShader* shader, const std::string& name) = 0;
    /// Gives a local parameter back, whose shared value shows again at the next full apply;
    /// strangers are passed over.
    virtual void ReleaseParameterLocal(ILocalParameter* parameter) = 0;
    /// Gives all local parameters of this primitive back.
    virtual void ReleaseParameterLocalAll() = 0;
    /// Whether the parameter @p name of @p shader has a value for this primitive alone.
    virtual bool ExistsParameterLocal(IShader* shader, const std::string& name) const = 0;

    /// The effect that is on the primitive; null once it is gone.
    virtual IEffect* GetEffect() = 0;
    /// The primitive that the effect is on; null once the reference is shut down.
    virtual IKLPrimitive* GetKLPrimitive() = 0;
};

} // namespace Tolen::Effects

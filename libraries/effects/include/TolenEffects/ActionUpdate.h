#pragma once

/// @file
/// Value updates on their way from shaders to primitives.

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class IEffect;

/// The write of one changed value to one primitive, with the primitive and the program to follow.
using DelegateUpdate = FastDelegate2<IKLPrimitive*, IKLProgram*, bool>;

/// A value update on its way to the primitives of an effect: the effect, and the write.
class TOLEN_EXPORT ActionUpdate {
public:
    /// An action that writes nothing.
    ActionUpdate() = default;
    /// The write @p update for the program of @p effect, which is borrowed.
    ActionUpdate(IEffect* effect, const DelegateUpdate& update)
        : _pEffect(effect), _update(update) {}

    /// Writes the value on @p primitive with the effect's program. An empty action answers true.
    /// @return whether the primitive took the value
    bool Run(IKLPrimitive* primitive) const;

    /// The effect whose value has changed; null for an empty action. Borrowed.
    IEffect* GetEffect() const { return _pEffect; }
    /// The write; it holds as long as the parameter that it came from.
    const DelegateUpdate& GetDelegate() const { return _update; }

private:
    IEffect* _pEffect = nullptr; ///< borrowed
    DelegateUpdate _update;
};

} // namespace Tolen::Effects

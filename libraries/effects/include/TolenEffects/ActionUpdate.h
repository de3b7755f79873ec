#pragma once

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
    ActionUpdate() = default;
    ActionUpdate(IEffect* effect, const DelegateUpdate& update) : _pEffect(effect), _update(update) {}

    /// Writes the value on @p primitive with the effect's program. An empty action answers true.
    bool Run(IKLPrimitive* primitive) const;

    IEffect* GetEffect() const { return _pEffect; }
    const DelegateUpdate& GetDelegate() const { return _update; }

private:
    IEffect* _pEffect = nullptr; ///< borrowed
    DelegateUpdate _update;
};

} // namespace Tolen::Effects

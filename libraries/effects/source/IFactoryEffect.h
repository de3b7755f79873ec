#pragma once

#include "TolenCore/FastDelegate.h"

namespace Tolen::Effects {

class IEffect;

/// Makes, owns and destroys the effects of one kind.
class IFactoryEffect {
public:
    virtual ~IFactoryEffect() = default;

    /// @return owned by the factory; null on failure
    virtual IEffect* CreateEffect() = 0;
    /// Destroys an effect of this factory; a line on the console for any other.
    virtual void DestroyEffect(IEffect* effect) = 0;
    /// Calls @p visit for every effect in the order of their making, null for one whose making
    /// failed. @return whether all calls answered true
    virtual bool VisitEffects(FastDelegate1<IEffect*, bool>& visit) = 0;
};

} // namespace Tolen::Effects

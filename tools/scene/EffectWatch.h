#pragma once

#include "TolenEffects/ActionUpdate.h"

#include "TolenCore/CreationOrder.h"

#include <string>

namespace Tolen::Effects {
class IEffect;
}

namespace Tolen::Scene {

/// What an effect has cost so far.
struct EffectCount {
    std::string name;
    int compiles = 0;
    int valueUpdates = 0;
};

/// Counts what happens to one effect.
class EffectWatch : public CreationOrder {
public:
    /// @param effect borrowed; outlives this
    EffectWatch(const std::string& name, Effects::IEffect* effect);
    ~EffectWatch();
    EffectWatch(const EffectWatch&) = delete;
    EffectWatch& operator=(const EffectWatch&) = delete;

    const EffectCount& GetCount() const { return _count; }

private:
    bool _OnCompile(Effects::IEffect* effect);
    bool _OnChangeValue(Effects::IEffect* effect, Effects::ActionUpdate& update);

    Effects::IEffect* _pEffect;
    EffectCount _count;
};

} // namespace Tolen::Scene

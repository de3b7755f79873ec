#include "scene/EffectWatch.h"

#include "TolenEffects/IEffect.h"

#include "TolenCore/FastDelegate.h"

namespace Tolen::Scene {

EffectWatch::EffectWatch(const std::string& name, Effects::IEffect* effect) : _pEffect(effect) {
    _count.name = name;
    auto onCompile = MakeDelegate(this, &EffectWatch::_OnCompile);
    auto onChangeValue = MakeDelegate(this, &EffectWatch::_OnChangeValue);
    _pEffect->AddListenerCompile(onCompile);
    _pEffect->AddListenerChangeValue(onChangeValue);
}

EffectWatch::~EffectWatch() {
    auto onCompile = MakeDelegate(this, &EffectWatch::_OnCompile);
    auto onChangeValue = MakeDelegate(this, &EffectWatch::_OnChangeValue);
    _pEffect->RemoveListenerCompile(onCompile);
    _pEffect->RemoveListenerChangeValue(onChangeValue);
}

bool EffectWatch::_OnCompile(Effects::IEffect*) {
    ++_count.compiles;
    return true;
}

bool EffectWatch::_OnChangeValue(Effects::IEffect*, Effects::ActionUpdate&) {
    ++_count.valueUpdates;
    return true;
}

} // namespace Tolen::Scene

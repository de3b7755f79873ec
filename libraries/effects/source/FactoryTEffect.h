#pragma once

#include "IFactoryEffect.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"
#include "TolenCore/LifeToken.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace Tolen::Effects {

/// Makes and owns the effects of one kind. An effect that could not be made leaves an empty place,
/// which visits pass on as null.
///
/// @tparam T an instance of Effect
template <class T>
class FactoryTEffect : public IFactoryEffect {
public:
    FactoryTEffect() = default;
    FactoryTEffect(const FactoryTEffect&) = delete;
    FactoryTEffect& operator=(const FactoryTEffect&) = delete;

    /// @param manager borrowed
    bool Init(IMgrEffects* manager) {
        _pMgrEffects = manager;
        return true;
    }

    ~FactoryTEffect() override {
        // Shut down one by one, as an effect whose operation is in progress outlives its factory.
        const std::vector<std::shared_ptr<T>> effects = std::move(_effects);
        _effects.clear();
        for (const std::shared_ptr<T>& effect : effects) {
            if (effect != nullptr) {
                effect->Shutdown();
            }
        }
    }

    IEffect* CreateEffect() override {
        auto effect = std::make_shared<T>();
        if (!effect->Init(_pMgrEffects)) {
            effect.reset();
        }
        _effects.push_back(std::move(effect));
        return _effects.back().get();
    }

    void DestroyEffect(IEffect* pEffect) override {
        if (!TOLEN_CHECK(pEffect != NULL, "Source/FactoryEffectT")) {
            return;
        }
        const auto found = _Find(pEffect);
        if (found == _effects.end()) {
            ConsolePrint("FactoryTEffect::DestroyEffect Effect Not Found\n");
            return;
        }
        // Out of the list first, so that nobody whom its end calls finds it there.
        const std::shared_ptr<T> effect = std::move(*found);
        _effects.erase(found);
        ++_countDestroyed;
        effect->Shutdown();
    }

    bool VisitEffects(FastDelegate1<IEffect*, bool>& visit) override {
        std::vector<IEffect*> effects;
        for (const auto& effect : _effects) {
            effects.push_back(effect.get());
        }
        const unsigned long long destroyedBefore = _countDestroyed;
        const LifeToken::Watch alive = _life.GetWatch();
        bool all = true;
        for (IEffect* effect : effects) {
            // One that a visit before this has destroyed is passed over.
            if (effect == nullptr || _countDestroyed == destroyedBefore ||
                _Find(effect) != _effects.end()) {
                all = visit(effect) && all;
            }
            if (!alive) {
                // The manager is shut down.
                return false;
            }
        }
        return all;
    }

private:
    auto _Find(const IEffect* effect) {
        return std::find_if(_effects.begin(), _effects.end(),
                            [effect](const auto& owned) { return owned.get() == effect; });
    }

    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    /// Nobody else keeps one for longer than an operation of the effect takes.
    std::vector<std::shared_ptr<T>> _effects;
    unsigned long long _countDestroyed = 0;
    LifeToken _life;
};

} // namespace Tolen::Effects

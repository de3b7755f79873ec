#include "EffectFactories.h"

#include "Effect.h"
#include "FactoryTEffect.h"

#include "TolenEffects/IMgrEffects.h"

namespace Tolen::Effects {

namespace {

template <class T>
std::unique_ptr<IFactoryEffect> CreateFactory(IMgrEffects* mgrEffects) {
    auto factory = std::make_unique<FactoryTEffect<T>>();
    if (mgrEffects->GetOpenKLContext() == nullptr || !factory->Init(mgrEffects)) {
        return nullptr;
    }
    return factory;
}

} // namespace

std::unique_ptr<IFactoryEffect> CreateFactoryEffectSurface(IMgrEffects* mgrEffects) {
    return CreateFactory<Effect<PolicyVertexSurface, PolicyCompilerRay>>(mgrEffects);
}

std::unique_ptr<IFactoryEffect> CreateFactoryEffectRenderer(IMgrEffects* mgrEffects) {
    return CreateFactory<Effect<PolicyVertexNull, PolicyCompilerFrame>>(mgrEffects);
}

std::unique_ptr<IFactoryEffect> CreateFactoryEffectPrefix(IMgrEffects* mgrEffects) {
    return CreateFactory<Effect<PolicyVertexNull, PolicyCompilerPrefixRay>>(mgrEffects);
}

} // namespace Tolen::Effects

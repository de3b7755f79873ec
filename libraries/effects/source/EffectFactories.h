#pragma once

#include <memory>

namespace Tolen::Effects {

class IFactoryEffect;
class IMgrEffects;

/// Make the factories of the three kinds of effect.
/// @param mgrEffects the manager that the effects are to know; borrowed
/// @return null on failure, as without an OpenKL context
/// @{
std::unique_ptr<IFactoryEffect> CreateFactoryEffectSurface(IMgrEffects* mgrEffects);
std::unique_ptr<IFactoryEffect> CreateFactoryEffectRenderer(IMgrEffects* mgrEffects);
std::unique_ptr<IFactoryEffect> CreateFactoryEffectPrefix(IMgrEffects* mgrEffects);
/// @}

} // namespace Tolen::Effects

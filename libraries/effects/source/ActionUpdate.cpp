#include "TolenEffects/ActionUpdate.h"

#include "TolenEffects/IEffect.h"

namespace Tolen::Effects {

bool ActionUpdate::Run(IKLPrimitive* primitive) const {
    return _update.IsEmpty() || _update(primitive, _pEffect->GetKLProgram());
}

} // namespace Tolen::Effects

#include "EndingShader.h"

#include "TolenEffects/IShader.h"

namespace Tolen::Effects {

void EndingShader::_FireEnd(IShader* shader) {
    _listenersEnd.FireAll(shader);
    _listenersEnd.Clear();
}

bool AddListenerEnd(IShader* shader, FastDelegate1<IShader*, bool>& listener) {
    auto* const ending = dynamic_cast<EndingShader*>(shader);
    return ending == nullptr ? shader->AddListenerDelete(listener)
                             : ending->AddListenerEnd(listener);
}

bool RemoveListenerEnd(IShader* shader, FastDelegate1<IShader*, bool>& listener) {
    auto* const ending = dynamic_cast<EndingShader*>(shader);
    return ending == nullptr ? shader->RemoveListenerDelete(listener)
                             : ending->RemoveListenerEnd(listener);
}

} // namespace Tolen::Effects

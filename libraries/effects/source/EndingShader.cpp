#include "EndingShader.h"

#include "TolenEffects/IShader.h"

#include <utility>

namespace Tolen::Effects {

bool EndingShader::AddListenerEnd(FastDelegate1<IShader*, bool>& listener) {
    if (_pListeners == nullptr) {
        _pListeners = std::make_unique<ListenerSet<FastDelegate1<IShader*, bool>>>();
    }
    return _pListeners->Add(listener);
}

bool EndingShader::RemoveListenerEnd(FastDelegate1<IShader*, bool>& listener) {
    return _pListeners == nullptr || _pListeners->Remove(listener);
}

void EndingShader::_FireEnd(IShader* shader) {
    if (_pListeners != nullptr) {
        _pListeners->FireAll(shader);
        _pListeners->Clear();
    }
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

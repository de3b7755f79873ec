#include "ParameterStorageListeners.h"

namespace Tolen::Effects {

bool ParameterStorageListeners::AddListenerChangeValue(FastDelegate0<bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ParameterStorageListeners::RemoveListenerChangeValue(FastDelegate0<bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ParameterStorageListeners::AddListenerChangeLength(FastDelegate1<int, bool>& listener) {
    return _listenersChangeLength.Add(listener);
}

bool ParameterStorageListeners::RemoveListenerChangeLength(FastDelegate1<int, bool>& listener) {
    return _listenersChangeLength.Remove(listener);
}

void ParameterStorageListeners::_ClearListeners() {
    _listenersChangeValue.Clear();
    _listenersChangeLength.Clear();
}

} // namespace Tolen::Effects

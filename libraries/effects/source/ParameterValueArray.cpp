#include "ParameterValueArray.h"

namespace Tolen::Effects {

bool ParameterValueArray::AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeValue.Add(listener);
}

bool ParameterValueArray::RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeValue.Remove(listener);
}

bool ParameterValueArray::AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeStructure.Add(listener);
}

bool ParameterValueArray::RemoveListenerChangeStructure(
    FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

bool ParameterValueArray::AddListenerChangeLength(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeLength.Add(listener);
}

bool ParameterValueArray::RemoveListenerChangeLength(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeLength.Remove(listener);
}

} // namespace Tolen::Effects

#pragma once

#include "IStorage.h"

#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

/// The listeners of a storage.
class ParameterStorageListeners : public IStorage {
public:
    bool AddListenerChangeValue(FastDelegate0<bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate0<bool>& listener) override;
    bool AddListenerChangeLength(FastDelegate1<int, bool>& listener) override;
    bool RemoveListenerChangeLength(FastDelegate1<int, bool>& listener) override;

protected:
    bool _FireChangeValue() const { return _listenersChangeValue.Fire(); }
    bool _FireChangeLength(int length) const { return _listenersChangeLength.Fire(length); }
    void _ClearListeners();

private:
    ListenerSet<FastDelegate0<bool>> _listenersChangeValue;
    ListenerSet<FastDelegate1<int, bool>> _listenersChangeLength;
};

} // namespace Tolen::Effects

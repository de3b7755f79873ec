#pragma once

#include "TolenEffects/IShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

/// Listeners to a shader that were added through a view of it: they hear what the shader tells, as
/// long as the view is there.
template <class... Args>
class ListenerRelay final : public CreationOrder {
public:
    using Delegate = fastdelegate::FastDelegate<bool, Args...>;
    /// How the shader's own listeners are added and removed.
    using Operation = bool (IShader::*)(Delegate&);

    /// @param shader null when it is gone
    /// @return false without a shader
    bool Add(IShader* shader, Operation add, Delegate& listener) {
        if (shader == nullptr) {
            return false;
        }
        if (_listeners.IsEmpty()) {
            Delegate onNotice = MakeDelegate(this, &ListenerRelay::_OnNotice);
            if (!(shader->*add)(onNotice)) {
                return false;
            }
        }
        return _listeners.Add(listener);
    }

    bool Remove(IShader* shader, Operation remove, Delegate& listener) {
        if (!_listeners.IsEmpty()) {
            _listeners.Remove(listener);
            if (_listeners.IsEmpty()) {
                _Detach(shader, remove);
            }
        }
        return shader != nullptr;
    }

    /// Lets all listeners go.
    void Clear(IShader* shader, Operation remove) {
        if (!_listeners.IsEmpty()) {
            _listeners.Clear();
            _Detach(shader, remove);
        }
    }

private:
    void _Detach(IShader* shader, Operation remove) {
        if (shader != nullptr) {
            Delegate onNotice = MakeDelegate(this, &ListenerRelay::_OnNotice);
            (shader->*remove)(onNotice);
        }
    }

    bool _OnNotice(Args... args) { return _listeners.Fire(args...); }

    ListenerSet<Delegate> _listeners;
};

} // namespace Tolen::Effects

#pragma once

#include "TolenEffects/Key.h"

#include "TolenCore/Console.h"
#include "TolenCore/FastDelegate.h"
#include "TolenCore/ListenerSet.h"

#include <map>
#include <mutex>
#include <utility>
#include <vector>

namespace Tolen::Effects {

/// Hands out keys, each with a payload that it remembers. The key given back last is handed out
/// first; fresh keys count up from 1.
///
/// Safe from any thread. Listeners run with the lock held, which the thread that holds it may take
/// again: a listener may make and give back keys. Their answers are not looked at.
template <class T>
class MgrKeys {
public:
    using Listener = FastDelegate2<const Key&, const T&, bool>;

    MgrKeys() = default;
    virtual ~MgrKeys() = default;
    MgrKeys(const MgrKeys&) = delete;
    MgrKeys& operator=(const MgrKeys&) = delete;

    /// Listeners that hear of every key that is given back. Always true.
    virtual bool AddListenerDestroy(const Listener& listener) {
        const Lock lock(_mutex);
        return _listenersDestroy.Add(listener);
    }
    virtual bool RemoveListenerDestroy(const Listener& listener) {
        const Lock lock(_mutex);
        return _listenersDestroy.Remove(listener);
    }

    /// Listeners that hear of every key that is handed out. Always true.
    bool AddListenerCreate(const Listener& listener) {
        const Lock lock(_mutex);
        return _listenersCreate.Add(listener);
    }
    bool RemoveListenerCreate(const Listener& listener) {
        const Lock lock(_mutex);
        return _listenersCreate.Remove(listener);
    }

    /// Hands out a key for @p payload, which is copied. Never the null key.
    Key Create(const T& payload) {
        const Lock lock(_mutex);
        Key key = _next;
        if (_returned.empty()) {
            _next = Key(_next.GetNumber() + 1);
        } else {
            key = _returned.back();
            _returned.pop_back();
        }
        _keys.emplace(key, payload);
        _listenersCreate.FireAll(std::as_const(key), payload);
        return key;
    }

    /// Takes a key back. @return false, with a line on the console, when it isn't in use
    bool Destroy(const Key& key) {
        const Lock lock(_mutex);
        const auto found = _keys.find(key);
        if (found == _keys.end()) {
            ConsolePrint("MgrKeys::Destroy Key Not Found\n");
            return false;
        }
        // Copies: the caller's key may be part of what a listener destroys.
        const Key destroyed = found->first;
        const T payload = std::move(found->second);
        _keys.erase(found);
        _listenersDestroy.FireAll(destroyed, payload);
        // Only now may the number come again, so that no listener is handed it under its old
        // meaning.
        _returned.push_back(destroyed);
        return true;
    }

    /// Forgets all keys without telling anyone; the next one is 1. Listeners stay.
    void Clear() {
        const Lock lock(_mutex);
        _keys.clear();
        _returned.clear();
        _next = Key(1);
    }

    std::size_t GetCount() const {
        const Lock lock(_mutex);
        return _keys.size();
    }

private:
    using Mutex = std::recursive_mutex;
    using Lock = std::lock_guard<Mutex>;

    std::map<Key, T> _keys;     ///< in use
    std::vector<Key> _returned; ///< a stack
    Key _next{1};
    ListenerSet<Listener> _listenersCreate;
    ListenerSet<Listener> _listenersDestroy;
    mutable Mutex _mutex;
};

} // namespace Tolen::Effects

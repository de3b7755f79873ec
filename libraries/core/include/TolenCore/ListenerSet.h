#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>

namespace Tolen {

/// The ordered set of delegates behind every pair of AddListener and RemoveListener operations.
///
/// Listeners may do anything while the set fires: add and remove listeners, fire the set again, or
/// destroy the object that owns it. A listener that is removed before its turn is not called; one
/// that is added while the set fires is called from the next time on. When the owner dies, firing
/// stops after the call in progress; the caller must then touch no member of the owner.
///
/// A set that nobody was ever added to holds no memory, as most sets are.
///
/// @tparam Delegate a FastDelegate that answers bool
template <class Delegate>
class ListenerSet {
public:
    ListenerSet() = default;
    ~ListenerSet() { Clear(); }
    ListenerSet(const ListenerSet&) = delete;
    ListenerSet& operator=(const ListenerSet&) = delete;

    /// Enters @p delegate; one that is there already keeps its single place. Always true.
    bool Add(const Delegate& delegate) {
        if (_entries == nullptr) {
            _entries = std::make_shared<Entries>();
        }
        if (_entries->map.emplace(delegate, _entries->stamp + 1).second) {
            ++_entries->stamp;
        }
        return true;
    }

    /// Takes @p delegate out if it is there. Always true.
    bool Remove(const Delegate& delegate) {
        if (_entries != nullptr && _entries->map.erase(delegate) != 0) {
            ++_entries->removals;
        }
        return true;
    }

    /// Takes all delegates out. While the set fires, none of them is called any more.
    void Clear() {
        if (_entries != nullptr) {
            _entries->map.clear();
            ++_entries->removals;
        }
    }

    /// Whether there is no delegate.
    bool IsEmpty() const { return _entries == nullptr || _entries->map.empty(); }
    /// The number of delegates.
    std::size_t GetCount() const { return _entries == nullptr ? 0 : _entries->map.size(); }

    /// Calls the listeners in set order up to the first that answers false.
    /// @return false if one answered false; true otherwise, also for an empty set
    template <class... Args>
    bool Fire(Args&&... args) const {
        return _Walk<true>(args...);
    }

    /// Calls every listener, whatever the others answer.
    /// @return whether all answered true
    template <class... Args>
    bool FireAll(Args&&... args) const {
        return _Walk<false>(args...);
    }

private:
    struct Entries {
        std::map<Delegate, std::uint64_t> map;
        std::uint64_t stamp = 0;
        std::uint64_t removals = 0;
    };

    template <bool stopAtFalse, class... Args>
    bool _Walk(Args&... args) const {
        if (IsEmpty()) {
            return true;
        }
        const std::shared_ptr<Entries> entries = _entries;
        const std::uint64_t newest = entries->stamp;
        bool all = true;
        for (auto it = entries->map.begin(); it != entries->map.end();) {
            if (it->second > newest) {
                ++it;
                continue;
            }
            const Delegate current = it->first;
            const std::uint64_t removals = entries->removals;
            if (!current(args...)) {
                if constexpr (stopAtFalse) {
                    return false;
                }
                all = false;
            }
            if (entries->removals != removals) {
                it = entries->map.upper_bound(current);
            } else {
                ++it;
            }
        }
        return all;
    }

    std::shared_ptr<Entries> _entries; ///< null until the first delegate is added
};

} // namespace Tolen

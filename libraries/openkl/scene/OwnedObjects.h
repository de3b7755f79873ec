#pragma once

#include <cstddef>
#include <iterator>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

namespace Tolen::OpenKL {

/// Objects of one kind that a context made and owns, in the order in which they were made.
///
/// Clients give objects back by the address of an interface, which is looked up before anything is
/// done with it, so that a foreign or dead one is passed over.
template <class T>
class OwnedObjects {
public:
    ~OwnedObjects() { Clear(); }

    T* Add(std::unique_ptr<T> object) {
        T* const added = object.get();
        _orders.emplace(added, _next);
        _objects.emplace(_next++, std::move(object));
        return added;
    }

    /// The object behind the address of one of its bases; null when it isn't here.
    template <class Interface>
    T* Find(const Interface* address) const {
        const auto found = _orders.find(static_cast<const T*>(address));
        return found == _orders.end() ? nullptr : _objects.at(found->second).get();
    }

    /// Destroys the object behind an address if it is here.
    template <class Interface>
    void Remove(const Interface* address) {
        const auto found = _orders.find(static_cast<const T*>(address));
        if (found == _orders.end()) {
            return;
        }
        // The object dies when nobody finds it any more.
        const auto node = _objects.extract(found->second);
        _orders.erase(found);
    }

    std::size_t GetCount() const { return _objects.size(); }

    /// Calls @p function with each object. It must neither add nor remove objects.
    template <class Function>
    void ForEach(Function&& function) const {
        for (const auto& [order, object] : _objects) {
            function(*object);
        }
    }

    /// Destroys all, the newest first.
    void Clear() {
        while (!_objects.empty()) {
            Remove(std::prev(_objects.end())->second.get());
        }
    }

private:
    std::map<std::size_t, std::unique_ptr<T>> _objects;
    std::unordered_map<const T*, std::size_t> _orders;
    std::size_t _next = 0;
};

} // namespace Tolen::OpenKL

#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Tolen::Effects {

/// Pointers in the order in which they were added, where finding and taking out one costs the same
/// however many there are. A place whose pointer was taken out holds null for a while.
///
/// @tparam Pointer T* or std::unique_ptr<T>
template <class Pointer>
class PointerTable {
public:
    using Element = typename std::pointer_traits<Pointer>::element_type;

    /// Adds @p pointer, which is not in the table. Null is kept as a place that nobody can name.
    void Add(Pointer pointer) {
        if (pointer != nullptr) {
            _places.emplace(std::to_address(pointer), _pointers.size());
        }
        _pointers.push_back(std::move(pointer));
    }

    /// Takes @p element out. @return null when it isn't there
    Pointer Take(const Element* element) {
        const auto place = _places.find(element);
        if (place == _places.end()) {
            return Pointer();
        }
        Pointer taken = std::exchange(_pointers[place->second], Pointer());
        _places.erase(place);
        if (_pointers.size() > 2 * _places.size() + kSlack) {
            _Compact();
        }
        return taken;
    }

    /// Takes everything out.
    std::vector<Pointer> TakeAll() {
        _places.clear();
        return std::exchange(_pointers, {});
    }

    bool IsEmpty() const { return _places.empty(); }
    /// Pointers that aren't null.
    std::size_t GetCount() const { return _places.size(); }

    /// All places in order; some may hold null.
    auto begin() const { return _pointers.begin(); }
    auto end() const { return _pointers.end(); }

private:
    static constexpr std::size_t kSlack = 16;

    void _Compact() {
        _pointers.erase(std::remove(_pointers.begin(), _pointers.end(), nullptr), _pointers.end());
        for (std::size_t i = 0; i < _pointers.size(); ++i) {
            _places[std::to_address(_pointers[i])] = i;
        }
    }

    std::vector<Pointer> _pointers;
    std::unordered_map<const Element*, std::size_t> _places; ///< never iterated
};

} // namespace Tolen::Effects

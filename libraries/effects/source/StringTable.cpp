#include "StringTable.h"

#include "TolenEffects/Syntax.h"

#include <algorithm>
#include <cstdint>

namespace Tolen::Effects {

namespace {

constexpr std::size_t kCountSlotsStart = 64;

} // namespace

StringTable::~StringTable() {
    for (const String* string : _slots) {
        delete string;
    }
}

void StringTable::Insert(String* string) {
    if (2 * (_count + 1) > _slots.size()) {
        _Grow();
    }
    _Place(string);
    ++_count;
}

bool StringTable::Remove(const String* string) {
    if (_count == 0 || string == nullptr) {
        return false;
    }
    std::size_t slot = _SlotOf(string);
    while (_slots[slot] != string) {
        if (_slots[slot] == nullptr) {
            return false;
        }
        slot = _Next(slot);
    }

    // Close the gap with the names behind it that it would cut off from their own slots.
    std::size_t gap = slot;
    const std::size_t mask = _slots.size() - 1;
    for (slot = _Next(gap); _slots[slot] != nullptr; slot = _Next(slot)) {
        const std::size_t wanted = _SlotOf(_slots[slot]);
        if (((slot - wanted) & mask) >= ((slot - gap) & mask)) {
            _slots[gap] = _slots[slot];
            gap = slot;
        }
    }
    _slots[gap] = nullptr;
    --_count;
    return true;
}

void StringTable::Swap(StringTable& other) {
    std::swap(_slots, other._slots);
    std::swap(_count, other._count);
}

std::size_t StringTable::_SlotOf(const String* string) const {
    return reinterpret_cast<std::uintptr_t>(string) / sizeof(String) & (_slots.size() - 1);
}

void StringTable::_Place(String* string) {
    std::size_t slot = _SlotOf(string);
    while (_slots[slot] != nullptr) {
        slot = _Next(slot);
    }
    _slots[slot] = string;
}

void StringTable::_Grow() {
    std::vector<String*> slots(std::max(kCountSlotsStart, 2 * _slots.size()), nullptr);
    std::swap(slots, _slots);
    for (String* string : slots) {
        if (string != nullptr) {
            _Place(string);
        }
    }
}

} // namespace Tolen::Effects

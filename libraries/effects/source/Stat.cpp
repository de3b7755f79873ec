#include "TolenEffects/Stat.h"

#include "TolenEffects/IPCWrapper.h"

#include <array>
#include <charconv>
#include <limits>

namespace {

template <class T, class... Format>
void WriteNumber(IPCWrapper* wrapper, T number, Format... format) {
    // Sign, digits, point and six decimals of the largest number, in no locale.
    std::array<char, std::numeric_limits<double>::max_exponent10 + 16> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number, format...).ptr;
    if (wrapper != nullptr) {
        wrapper->Write(text.data(), static_cast<int>(end - text.data()));
    }
}

} // namespace

Stat::Stat(const char* name, int kind, int id, const int* frameIndex)
    : _id(id), _pFrameIndex(frameIndex), _kind(kind), _name(name == nullptr ? "" : name) {}

void Stat::Clear() {
    const std::size_t slot = _ToIndex(*_pFrameIndex);
    _hitCounts[slot] = 0;
    _times[slot] = 0.0;
}

void Stat::DumpHitCount(IPCWrapper* wrapper, int slot) {
    int& count = _hitCounts[_ToIndex(slot)];
    WriteNumber(wrapper, count);
    if (_clearAfterDump) {
        count = 0;
    }
}

void Stat::DumpTime(IPCWrapper* wrapper, int slot) {
    double& time = _times[_ToIndex(slot)];
    WriteNumber(wrapper, time, std::chars_format::fixed, 6);
    if (_clearAfterDump) {
        time = 0.0;
    }
}

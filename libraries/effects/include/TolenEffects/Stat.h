#pragma once

#include "TolenCore/Export.h"

#include <array>
#include <cstddef>
#include <string>

class IPCWrapper;
class MgrStats;

/// A number that a program wants to watch: how often something happens, or how long it takes, in
/// each of the latest 64 frames. MgrStats makes and owns them.
///
/// Trigger it on one thread at a time, the one that calls MgrStats::AdvanceSlot().
class TOLEN_EXPORT Stat {
public:
    /// Which of its numbers a statistic is about.
    enum Kind {
        kKind_HitCount = 0, ///< how often it happens
        kKind_Time = 1,     ///< how long it takes
    };

    /// Frames that are remembered.
    static constexpr int kCountSlots = 64;

    Stat(const Stat&) = delete;
    Stat& operator=(const Stat&) = delete;

    /// Something has happened in the current frame. A count that passes the largest `int` goes on
    /// from the smallest.
    void Trigger() { TriggerTimes(1); }
    /// Something has taken @p seconds of the current frame.
    void Trigger(double seconds) {
        _times[static_cast<std::size_t>(*_pFrameIndex)] += seconds;
        Trigger();
    }
    /// Something has happened @p count times in the current frame, for who counts by himself.
    void TriggerTimes(int count) {
        int& hits = _hitCounts[static_cast<std::size_t>(*_pFrameIndex)];
        hits = static_cast<int>(static_cast<unsigned int>(hits) + static_cast<unsigned int>(count));
    }
    /// Sets both numbers of the current frame to 0.
    void Clear();

    /// Writes the hit count of the frame @p slot as text, and resets it if it is to be cleared so.
    void DumpHitCount(IPCWrapper* wrapper, int slot);
    /// Writes the seconds of the frame @p slot as text, and resets them if they are to be cleared
    /// so.
    void DumpTime(IPCWrapper* wrapper, int slot);

    /// The name that it was made with.
    const std::string& GetName() const { return _name; }
    /// A Kind, or whatever else it was made with.
    int GetKind() const { return _kind; }
    /// The order of creation, from 0.
    int GetId() const { return _id; }
    /// The statistic that was made before this one, null for the first.
    const Stat* GetNext() const { return _pNext; }
    /// How often it has happened in the frame @p slot, which is taken modulo 64.
    int GetHitCount(int slot) const { return _hitCounts[_ToIndex(slot)]; }
    /// The seconds that it has taken in the frame @p slot, which is taken modulo 64.
    double GetTime(int slot) const { return _times[_ToIndex(slot)]; }
    /// Whether dumping a number resets it, as it does at first.
    void SetClearAfterDump(bool clears) { _clearAfterDump = clears; }

private:
    friend class MgrStats;

    static_assert((kCountSlots & (kCountSlots - 1)) == 0, "slots are found by a mask");

    Stat(const char* name, int kind, int id, const int* frameIndex);

    static std::size_t _ToIndex(int slot) {
        return static_cast<std::size_t>(slot & (kCountSlots - 1));
    }

    Stat* _pNext = nullptr;
    bool _clearAfterDump = true;
    int _id;
    const int* _pFrameIndex; ///< the current slot, kept by MgrStats
    int _kind;
    std::array<int, kCountSlots> _hitCounts{};
    std::array<double, kCountSlots> _times{};
    std::string _name;
};

#pragma once

#include "engine/IrBuilder.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace Tolen::OpenKL {

struct Function;

/// Remembers what calls have given and done, so that one which would give and do the same again is
/// left out. Graphs that share shaders come to the same call along many paths.
///
/// A call is the same as an earlier one when function and arguments are the same values, the
/// earlier one has run wherever the new one runs, and no variable outside of functions that it read
/// or wrote has been written since. Calls with further effects, and those whose second run would
/// find its own writes, are never left out.
class CallMemory {
public:
    using CallId = std::uint32_t;

    struct Key {
        const Function* pFunction;
        Values arguments;
        bool operator==(const Key&) const = default;
    };

    struct Call {
        Values result;
        std::vector<Values> outputs; ///< of the parameters that are copied out, in their order
    };

    explicit CallMemory(IrBuilder& builder) : _builder(builder) {}

    /// What an earlier call like this one gave, or null.
    const Call* Find(const Key& key);

    /// A call begins; its Close follows that of every call inside it.
    void Open();
    /// @param call what it gave; valid in the region that is open now
    void Close(Key key, Call call);

    /// The open call does more than write variables.
    void NoteEffect();
    /// The open call reads @p cell, which stands for a variable or an array outside of functions.
    /// @param storedAt the time of the only write that the read can see, or kNone
    void NoteRead(std::uint32_t cell, std::uint32_t storedAt);
    /// The open call writes @p cell.
    /// @return the time of the write
    std::uint32_t NoteWrite(std::uint32_t cell);

private:
    struct Entry {
        Call call;
        std::vector<CallId> users; ///< calls that this one was made in, or left out in
        RegionId region = 0;
        std::uint32_t loop = kNone;
        bool isOpen = true;
        bool isValid = false;
        bool hasCells = false; ///< it or what it calls reads or writes cells
    };

    /// A call that is being made. Calls that began later than `rereadAfter`, or no later than
    /// `rereadUntil`, may read what they write themselves when they run again.
    struct Frame {
        CallId id;
        std::uint32_t start;
        std::uint32_t rereadAfter = kNone;
        std::uint32_t rereadUntil = 0;
        bool hasEffect = false;
    };

    struct Cell {
        std::vector<CallId> touchers; ///< since the last write
        std::uint32_t lastWrite = 0;
        std::uint32_t readAfter = kNone; ///< the write that reads since the last write may see
    };

    struct KeyHash {
        std::size_t operator()(const Key& key) const;
    };

    Cell& _Touch(std::uint32_t cell);
    void _Invalidate(CallId first);

    IrBuilder& _builder;
    std::unordered_map<Key, CallId, KeyHash> _calls;
    std::vector<Entry> _entries;
    std::vector<Frame> _frames;
    std::vector<Cell> _cells;
    std::uint32_t _time = 1;
};

} // namespace Tolen::OpenKL

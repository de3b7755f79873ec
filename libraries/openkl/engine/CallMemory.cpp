#include "engine/CallMemory.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Tolen::OpenKL {

std::size_t CallMemory::KeyHash::operator()(const Key& key) const {
    std::uint64_t hash = std::hash<const void*>()(key.pFunction);
    for (ValueId argument : key.arguments) {
        hash = (hash ^ argument) * 0x9e3779b97f4a7c15ull;
        hash ^= hash >> 29;
    }
    return static_cast<std::size_t>(hash);
}

const CallMemory::Call* CallMemory::Find(const Key& key) {
    auto found = _calls.find(key);
    if (found == _calls.end()) {
        return nullptr;
    }
    Entry& entry = _entries[found->second];
    // A later round of a loop may find cells that the end of the round before has written.
    bool isSameRound = !entry.hasCells || entry.loop == _builder.GetLoop();
    if (!entry.isValid || !isSameRound || !_builder.IsOpen(entry.region)) {
        return nullptr;
    }
    if (!_frames.empty() && entry.hasCells) {
        entry.users.push_back(_frames.back().id);
        _entries[_frames.back().id].hasCells = true;
    }
    return &entry.call;
}

void CallMemory::Open() {
    _frames.push_back({static_cast<CallId>(_entries.size()), _time++});
    _entries.emplace_back();
}

void CallMemory::Close(Key key, Call call) {
    Frame frame = _frames.back();
    _frames.pop_back();
    Entry& entry = _entries[frame.id];
    bool readsItself = frame.start > frame.rereadAfter || frame.start <= frame.rereadUntil;
    entry.isOpen = false;
    entry.isValid = !frame.hasEffect && !readsItself && _builder.IsReachable();
    if (!_frames.empty()) {
        Frame& outer = _frames.back();
        outer.hasEffect |= frame.hasEffect;
        outer.rereadAfter = std::min(outer.rereadAfter, frame.rereadAfter);
        outer.rereadUntil = std::max(outer.rereadUntil, frame.rereadUntil);
        if (entry.hasCells) {
            entry.users.push_back(outer.id);
            _entries[outer.id].hasCells = true;
        }
    }
    if (entry.isValid) {
        entry.call = std::move(call);
        entry.region = _builder.GetRegion();
        entry.loop = _builder.GetLoop();
        _calls.insert_or_assign(std::move(key), frame.id);
    }
}

void CallMemory::NoteEffect() {
    if (!_frames.empty()) {
        _frames.back().hasEffect = true;
    }
}

CallMemory::Cell& CallMemory::_Touch(std::uint32_t cell) {
    if (cell >= _cells.size()) {
        _cells.resize(cell + 1);
    }
    Cell& touched = _cells[cell];
    if (!_frames.empty()) {
        CallId id = _frames.back().id;
        _entries[id].hasCells = true;
        if (touched.touchers.empty() || touched.touchers.back() != id) {
            touched.touchers.push_back(id);
        }
    }
    return touched;
}

void CallMemory::NoteRead(std::uint32_t cell, std::uint32_t storedAt) {
    Cell& read = _Touch(cell);
    if (storedAt == kNone) {
        // The last write may have passed by, so that a call with that write reads what was before.
        storedAt = read.lastWrite;
        if (!_frames.empty()) {
            Frame& frame = _frames.back();
            frame.rereadUntil = std::max(frame.rereadUntil, read.lastWrite);
        }
    }
    read.readAfter = std::min(read.readAfter, storedAt);
}

std::uint32_t CallMemory::NoteWrite(std::uint32_t cell) {
    if (cell < _cells.size()) {
        std::vector<CallId> touchers = std::exchange(_cells[cell].touchers, {});
        for (CallId toucher : touchers) {
            _Invalidate(toucher);
        }
    }
    Cell& written = _Touch(cell);
    if (!_frames.empty()) {
        Frame& frame = _frames.back();
        frame.rereadAfter = std::min(frame.rereadAfter, written.readAfter);
    }
    written.readAfter = kNone;
    written.lastWrite = _time++;
    return written.lastWrite;
}

/// Calls that are being made touch the cell through the innermost of them; they stay users of what
/// they have called, which may have touched other cells.
void CallMemory::_Invalidate(CallId first) {
    std::vector<CallId> open = {first};
    while (!open.empty()) {
        CallId id = open.back();
        open.pop_back();
        Entry& entry = _entries[id];
        if (entry.isOpen) {
            continue;
        }
        entry.isValid = false;
        std::vector<CallId> users = std::exchange(entry.users, {});
        for (CallId user : users) {
            if (_entries[user].isOpen) {
                entry.users.push_back(user);
            } else {
                open.push_back(user);
            }
        }
    }
}

} // namespace Tolen::OpenKL

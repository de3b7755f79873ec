#include "support/RecordingBuffer.h"

#include "support/RecordingBindings.h"
#include "support/RecordingContext.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <cstring>

namespace Tolen::Tests {

RecordingBuffer::~RecordingBuffer() {
    auto& bound = RecordingBindings::Get().buffers;
    for (auto it = bound.begin(); it != bound.end();) {
        it = it->second == this ? bound.erase(it) : std::next(it);
    }
}

bool RecordingBuffer::Init(long offset, long bytes) {
    RecordingLog& log = _context.GetLog();
    bool good = log.Begin("BufferInit");
    if (offset != 0 || bytes <= 0 || _hasStorage) {
        log.AddMisuse("BufferInit " + _id + Format(" %ld %ld", offset, bytes));
        good = false;
    }
    if (good) {
        _bytes.assign(static_cast<std::size_t>(bytes), 0);
        _hasStorage = true;
    }
    return log.End("BufferInit", _id + Format(" %ld", bytes), good);
}

bool RecordingBuffer::Resize(long offset, long bytes, bool keep) {
    RecordingLog& log = _context.GetLog();
    bool good = log.Begin("BufferResize");
    if (offset != 0 || bytes <= 0 || !_hasStorage) {
        log.AddMisuse("BufferResize " + _id + Format(" %ld %ld", offset, bytes));
        good = false;
    }
    if (good) {
        if (!keep) {
            _bytes.clear();
        }
        _bytes.resize(static_cast<std::size_t>(bytes), 0);
    }
    return log.End("BufferResize", _id + Format(" %ld%s", bytes, keep ? " keep" : ""), good);
}

bool RecordingBuffer::Bind(int target) {
    const bool good = _context.GetLog().Record("BindBuffer", _id + Format(" 0x%x", target));
    if (good) {
        RecordingBindings::Get().buffers[target] = this;
    }
    return good;
}

bool RecordingBuffer::Unbind(int target) {
    const bool good = _context.GetLog().Record("UnbindBuffer", Format("0x%x", target));
    if (good) {
        RecordingBindings::Get().buffers.erase(target);
    }
    return good;
}

IKLBuffer* RecordingBuffer::GetBound(int target) const {
    const auto& bound = RecordingBindings::Get().buffers;
    const auto found = bound.find(target);
    return found == bound.end() ? nullptr : found->second;
}

void* RecordingBuffer::Map(int access, int) {
    RecordingLog& log = _context.GetLog();
    bool good = log.Begin("MapBuffer") && _hasStorage;
    if (_isMapped) {
        log.AddMisuse("MapBuffer " + _id + " is mapped already");
        good = false;
    }
    log.End("MapBuffer", _id + (access == 0 ? " read" : " write"), good);
    _isMapped = _isMapped || good;
    return good ? _bytes.data() : nullptr;
}

void RecordingBuffer::Unmap() {
    if (!_isMapped) {
        _context.GetLog().AddMisuse("UnmapBuffer " + _id + " is not mapped");
    }
    _context.GetLog().Record("UnmapBuffer", _id);
    _isMapped = false;
}

void RecordingBuffer::Write(long offset, long bytes, const void* data) {
    const long size = GetSize();
    const bool fits = offset >= 0 && bytes >= 0 && offset <= size && bytes <= size - offset;
    RecordingLog& log = _context.GetLog();
    const bool good = log.Begin("BufferSubData") && fits && data != nullptr;
    if (!fits || data == nullptr) {
        log.AddMisuse("BufferSubData " + _id + Format(" %ld %ld", offset, bytes));
    }
    if (good && bytes > 0) {
        std::memcpy(_bytes.data() + offset, data, static_cast<std::size_t>(bytes));
    }
    log.End("BufferSubData", _id + Format(" %ld %ld", offset, bytes), good);
}

} // namespace Tolen::Tests

#include "scene/Buffer.h"

#include "scene/ObjectRegistry.h"

#include "TolenOpenKLWrapper/Scoped.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <utility>

namespace Tolen::OpenKL {

Buffer::~Buffer() {
    ForgetBoundBuffer(*this);
    _pContent->bytes.clear();
    _pContent->version = MakeStamp();
}

bool Buffer::Init(long offset, long bytes) {
    return offset == 0 && GetSize() == 0 && _Store(bytes, false);
}

bool Buffer::Resize(long offset, long bytes, bool keep) {
    // A mapping must not see the storage move.
    return offset == 0 && GetSize() != 0 && _maps == 0 && _Store(bytes, keep);
}

bool Buffer::_Store(long bytes, bool keep) {
    if (bytes <= 0 || bytes > kMaxBytes) {
        return false;
    }
    try {
        std::vector<std::byte> changed(static_cast<std::size_t>(bytes));
        if (keep) {
            std::copy_n(_pContent->bytes.begin(), std::min(changed.size(), _pContent->bytes.size()),
                        changed.begin());
        }
        _pContent->bytes = std::move(changed);
    } catch (const std::exception&) {
        return false;
    }
    _pContent->version = MakeStamp();
    return true;
}

bool Buffer::Bind(int target) {
    SetBoundBuffer(target, this);
    return true;
}

bool Buffer::Unbind(int target) {
    SetBoundBuffer(target, nullptr);
    return true;
}

IKLBuffer* Buffer::GetBound(int target) const {
    return GetBoundBuffer(target);
}

void* Buffer::Map(int access, int) {
    if (GetSize() == 0) {
        return nullptr;
    }
    ++_maps;
    _isMappedForWriting = _isMappedForWriting || access == KLBufferMapping::kAccess_Write;
    return _pContent->bytes.data();
}

void Buffer::Unmap() {
    if (_maps == 0) {
        return;
    }
    // Which of several maps ends isn't told, so each end may be that of the one that writes.
    if (_isMappedForWriting) {
        _pContent->version = MakeStamp();
    }
    if (--_maps == 0) {
        _isMappedForWriting = false;
    }
}

void Buffer::Write(long offset, long bytes, const void* data) {
    const long size = GetSize();
    if (data == nullptr || offset < 0 || bytes <= 0 || offset > size || bytes > size - offset) {
        return;
    }
    std::memcpy(_pContent->bytes.data() + offset, data, static_cast<std::size_t>(bytes));
    _pContent->version = MakeStamp();
}

} // namespace Tolen::OpenKL

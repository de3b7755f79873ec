#pragma once

#include "TolenOpenKLWrapper/IKLBuffer.h"
#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include <cstddef>
#include <vector>

namespace Tolen {

/// Binds a primitive for a scope; null binds nothing.
class AutoBindKLPrimitive {
public:
    explicit AutoBindKLPrimitive(IKLPrimitive* primitive) : _pPrimitive(primitive) {
        if (_pPrimitive != nullptr) {
            _pPrimitive->Bind();
        }
    }
    ~AutoBindKLPrimitive() {
        if (_pPrimitive != nullptr) {
            _pPrimitive->Unbind();
        }
    }
    AutoBindKLPrimitive(const AutoBindKLPrimitive&) = delete;
    AutoBindKLPrimitive& operator=(const AutoBindKLPrimitive&) = delete;

private:
    IKLPrimitive* _pPrimitive;
};

/// Binds a buffer at a target for a scope and restores the earlier binding at the end.
class AutoBindKLBuffer {
public:
    AutoBindKLBuffer(IKLBuffer* buffer, int target) : _pBuffer(buffer), _target(target) {
        if (_pBuffer != nullptr) {
            _pPrevious = _pBuffer->GetBound(_target);
            _pBuffer->Bind(_target);
        }
    }
    ~AutoBindKLBuffer() {
        if (_pBuffer == nullptr) {
            return;
        }
        if (_pPrevious != nullptr) {
            _pPrevious->Bind(_target);
        } else {
            _pBuffer->Unbind(_target);
        }
    }
    AutoBindKLBuffer(const AutoBindKLBuffer&) = delete;
    AutoBindKLBuffer& operator=(const AutoBindKLBuffer&) = delete;

private:
    IKLBuffer* _pBuffer;
    IKLBuffer* _pPrevious = nullptr;
    int _target;
};

/// Maps a buffer for a scope.
class KLBufferMapping {
public:
    enum Access { kAccess_Read = 0, kAccess_Write = 1 };
    enum BindPoint { kBindPoint_UniformBlock = 4 };

    KLBufferMapping(IKLBuffer* buffer, Access access, BindPoint bindPoint)
        : _pBuffer(buffer), _pMap(buffer == nullptr ? nullptr : buffer->Map(access, bindPoint)) {}
    ~KLBufferMapping() {
        if (_pMap != nullptr) {
            _pBuffer->Unmap();
        }
    }
    KLBufferMapping(const KLBufferMapping&) = delete;
    KLBufferMapping& operator=(const KLBufferMapping&) = delete;

    /// The first byte; null when the buffer could not be mapped.
    void* GetMap() const { return _pMap; }

private:
    IKLBuffer* _pBuffer;
    void* _pMap;
};

/// A mapping seen as an array of T that knows where it ends.
template <class T>
class KLBufferSafeMapping : public KLBufferMapping {
public:
    KLBufferSafeMapping(IKLBuffer* buffer, Access access, BindPoint bindPoint)
        : KLBufferMapping(buffer, access, bindPoint),
          _count(GetMap() == nullptr ? 0 : static_cast<std::size_t>(buffer->GetSize()) / sizeof(T)) {}

    std::size_t GetCount() const { return _count; }
    /// The element at @p index; null behind the end.
    T* Get(std::size_t index) const {
        return index < _count ? static_cast<T*>(GetMap()) + index : nullptr;
    }

private:
    std::size_t _count;
};

/// Maps several buffers for a scope; all or none.
class KLBufferMappingMultiple {
public:
    KLBufferMappingMultiple(const std::vector<IKLBuffer*>& buffers, KLBufferMapping::Access access,
                            KLBufferMapping::BindPoint bindPoint) {
        for (IKLBuffer* buffer : buffers) {
            void* map = buffer == nullptr ? nullptr : buffer->Map(access, bindPoint);
            if (map == nullptr) {
                _Unmap();
                return;
            }
            _buffers.push_back(buffer);
            _maps.push_back(map);
        }
    }
    ~KLBufferMappingMultiple() { _Unmap(); }
    KLBufferMappingMultiple(const KLBufferMappingMultiple&) = delete;
    KLBufferMappingMultiple& operator=(const KLBufferMappingMultiple&) = delete;

    std::size_t GetCount() const { return _maps.size(); }
    void* GetMap(std::size_t index) const { return index < _maps.size() ? _maps[index] : nullptr; }

private:
    void _Unmap() {
        for (IKLBuffer* buffer : _buffers) {
            buffer->Unmap();
        }
        _buffers.clear();
        _maps.clear();
    }

    std::vector<IKLBuffer*> _buffers;
    std::vector<void*> _maps;
};

} // namespace Tolen

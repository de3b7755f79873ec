#pragma once

/// @file
/// Binds and mappings that end with their scope. All of them borrow what they are given.

#include "TolenOpenKLWrapper/IKLBuffer.h"
#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include <cstddef>
#include <vector>

namespace Tolen {

/// Binds a primitive for a scope; null binds nothing.
class AutoBindKLPrimitive {
public:
    /// Binds @p primitive, which must outlive the scope.
    explicit AutoBindKLPrimitive(IKLPrimitive* primitive) : _pPrimitive(primitive) {
        if (_pPrimitive != nullptr) {
            _pPrimitive->Bind();
        }
    }
    /// Ends the bind.
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
    /// Binds @p buffer at @p target; null binds nothing.
    AutoBindKLBuffer(IKLBuffer* buffer, int target) : _pBuffer(buffer), _target(target) {
        if (_pBuffer != nullptr) {
            _pPrevious = _pBuffer->GetBound(_target);
            _pBuffer->Bind(_target);
        }
    }
    /// Binds what was bound before, or leaves nothing bound.
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
    /// What the mapping is for.
    enum Access {
        kAccess_Read = 0,  ///< the content is read only
        kAccess_Write = 1, ///< the content is written, and may be read
    };
    /// What the buffer is bound for.
    enum BindPoint {
        kBindPoint_UniformBlock = 4, ///< a uniform block
    };

    /// Maps @p buffer; null maps nothing.
    KLBufferMapping(IKLBuffer* buffer, Access access, BindPoint bindPoint)
        : _pBuffer(buffer), _pMap(buffer == nullptr ? nullptr : buffer->Map(access, bindPoint)) {}
    /// Unmaps what was mapped.
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
/// @tparam T the type of one element, as it lies in the buffer
template <class T>
class KLBufferSafeMapping : public KLBufferMapping {
public:
    /// Maps @p buffer; null maps nothing.
    KLBufferSafeMapping(IKLBuffer* buffer, Access access, BindPoint bindPoint)
        : KLBufferMapping(buffer, access, bindPoint),
          _count(GetMap() == nullptr ? 0
                                     : static_cast<std::size_t>(buffer->GetSize()) / sizeof(T)) {}

    /// Whole elements in the buffer; 0 when it could not be mapped.
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
    /// Maps @p buffers in their order; when one is null or can't be mapped, those before it are
    /// unmapped.
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
    /// Unmaps what was mapped.
    ~KLBufferMappingMultiple() { _Unmap(); }
    KLBufferMappingMultiple(const KLBufferMappingMultiple&) = delete;
    KLBufferMappingMultiple& operator=(const KLBufferMappingMultiple&) = delete;

    /// The number of buffers; 0 when they could not all be mapped.
    std::size_t GetCount() const { return _maps.size(); }
    /// The first byte of the buffer at @p index; null behind the end.
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

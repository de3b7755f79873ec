#include "ValueBuffer.h"

#include "ValueText.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"
#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Console.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <new>

namespace Tolen::Effects {

template <class T>
ValueBuffer<T>::ValueBuffer(IOpenKLContext* context, int length, bool resizable,
                            const T& defaultValue)
    : _pContext(context), _isResizable(resizable), _length(length), _defaultValue(defaultValue) {
    _SetLength(length);
    if (length < 1 || _pBuffer == nullptr) {
        return;
    }
    const std::unique_ptr<Buffer[]> elements(new (std::nothrow)
                                                 Buffer[static_cast<std::size_t>(length)]);
    if (elements != nullptr) {
        std::fill_n(elements.get(), length, static_cast<Buffer>(_defaultValue));
        _Set(elements.get(), length);
    }
}

template <class T>
ValueBuffer<T>::~ValueBuffer() {
    if (_pBuffer != nullptr) {
        _pContext->DestroyBuffer(_pBuffer);
    }
}

template <class T>
TypeSpecifier ValueBuffer<T>::GetTypeSpecifier() {
    return ElementType<T>::kSpecifier;
}

template <class T>
const char* ValueBuffer<T>::GetTypeName() {
    return ElementType<T>::kName;
}

template <class T>
bool ValueBuffer<T>::SetLength(int length) {
    if (!_isResizable) {
        ConsoleError("ValueBuffer<%s>::SetLength Not Resizable\n", GetTypeName());
        return false;
    }
    return _SetLength(length);
}

template <class T>
bool ValueBuffer<T>::GetValueAsString(std::string& out, int index) {
    if (index >= _length) {
        ConsoleError("ValueBuffer<T>::GetValueAsString Index Out of Bounds\n");
        return false;
    }
    if (index < 0) {
        return false;
    }
    out = ElementToString(Get(index));
    return true;
}

template <class T>
bool ValueBuffer<T>::GetValueAsString(std::string& out) {
    return GetValueAsString(out, 0);
}

template <class T>
T ValueBuffer<T>::Get(int index) const {
    const KLBufferSafeMapping<char> mapping(_pBuffer, KLBufferMapping::kAccess_Read,
                                            KLBufferMapping::kBindPoint_UniformBlock);
    Buffer element = Buffer(T());
    if (mapping.GetMap() != nullptr) {
        const std::size_t offset = static_cast<std::size_t>(index) * sizeof element;
        std::memcpy(&element, mapping.Get(offset), sizeof element);
    }
    return static_cast<T>(element);
}

template <class T>
bool ValueBuffer<T>::Set(const T& value, int index) {
    if (index < 0 || index >= _length) {
        ConsoleError("ValueBuffer<%s>::Set Index (%d) Out of Bounds\n", GetTypeName(), index);
        return false;
    }
    const Buffer element = static_cast<Buffer>(value);
    return _Write(&element, 1, index);
}

template <class T>
bool ValueBuffer<T>::SetArray(const T* values, int count) {
    return SetArray(values, count, 0);
}

template <class T>
bool ValueBuffer<T>::SetArray(const T* values, int count, int offset) {
    const long long end = static_cast<long long>(count) + offset;
    if (count < 0 || offset < 0 || end > _length) {
        ConsoleError("ValueBuffer<T>::SetArray Length Overflow\n");
        return false;
    }
    return _Write(values, count, offset);
}

template <class T>
bool ValueBuffer<T>::_Set(const Buffer* values, int count) {
    return _Write(values, count, 0);
}

template <class T>
bool ValueBuffer<T>::_SetLength(int length) {
    if (_pContext == nullptr) {
        return false;
    }
    const long bytes = std::max(length, 1) * static_cast<long>(sizeof(Buffer));
    bool isSized = false;
    if (_pBuffer != nullptr) {
        isSized = _pBuffer->Resize(0, bytes, true);
    } else {
        _pBuffer = _pContext->CreateBuffer();
        if (_pBuffer == nullptr) {
            ConsoleError("ValueBuffer<T>::_SetLength CreateBuffer\n");
            return false;
        }
        isSized = _pBuffer->Init(0, bytes);
        if (!isSized) {
            // Without storage it would pass for a buffer that can be bound and resized.
            _pContext->DestroyBuffer(_pBuffer);
            _pBuffer = nullptr;
        }
    }
    if (!isSized) {
        ConsoleError("ValueBuffer<T>::_SetLength Buffer Init\n");
        return false;
    }
    _length = length;
    return true;
}

template <class T>
bool ValueBuffer<T>::_Write(const void* values, int count, int offset) {
    if (_pBuffer == nullptr || (values == nullptr && count != 0)) {
        return false;
    }
    if (count == 0) {
        return true;
    }
    const long width = sizeof(Buffer);
    const AutoBindKLBuffer bind(_pBuffer, KL_UNIFORM_BUFFER);
    klBufferSubData(KL_UNIFORM_BUFFER, offset * width, count * width, values);
    return true;
}

#define TOLEN_INSTANTIATE(specifier, T, name, bytes) template class TOLEN_EXPORT ValueBuffer<T>;
TOLEN_ELEMENT_TYPES(TOLEN_INSTANTIATE)
#undef TOLEN_INSTANTIATE

} // namespace Tolen::Effects

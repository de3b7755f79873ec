#pragma once

#include "IValue.h"

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {
class IKLBuffer;
class IOpenKLContext;
} // namespace Tolen

namespace Tolen::Effects {

/// An array of elements in a buffer on the renderer's side, where a `bool` is an `int` of 0 or 1.
///
/// Writes go straight to the buffer, each with one call, and leave no trace in what is bound. Reads
/// map the buffer. The buffer always has room for one element at least, also with a length of 0.
/// Instances exist for the thirteen element types.
template <class T>
class TOLEN_EXPORT ValueBuffer : public IValueBuffer {
public:
    /// @param context      borrowed, makes the buffer; null leaves the value without one
    /// @param defaultValue fills the elements of the construction; what a resize adds is zero
    ValueBuffer(IOpenKLContext* context, int length, bool resizable, const T& defaultValue);
    ~ValueBuffer() override;
    ValueBuffer(const ValueBuffer&) = delete;
    ValueBuffer& operator=(const ValueBuffer&) = delete;

    TypeSpecifier GetTypeSpecifier() override;
    const char* GetTypeName() override;
    int GetLength() override { return _length; }
    bool SetLength(int length) override;
    bool IsResizable() override { return _isResizable; }
    bool GetValueAsString(std::string& out, int index) override;
    bool GetValueAsString(std::string& out) override;
    IKLBuffer* GetBuffer() override { return _pBuffer; }

    /// The element @p index, which must be 0 to the length less 1. Without a buffer to read it is
    /// the identity for matrices and zero for all others.
    T Get(int index) const;

    bool Set(const T& value, int index);
    /// Overwrites @p count elements from the first one, or from @p offset, on.
    /// @param values for `bool` these are @p count integers of four bytes under another type
    bool SetArray(const T* values, int count);
    bool SetArray(const T* values, int count, int offset);

protected:
    using Buffer = typename ElementType<T>::Buffer;

    /// Writes the first @p count elements without a check.
    bool _Set(const Buffer* values, int count);
    /// Gives the buffer its size, and makes it at the first call. A length below 1 counts as 1 for
    /// the size.
    bool _SetLength(int length);

private:
    bool _Write(const void* values, int count, int offset);

    IOpenKLContext* _pContext;     ///< borrowed
    IKLBuffer* _pBuffer = nullptr; ///< owned through the context
    bool _isResizable;
    int _length;
    T _defaultValue;
};

} // namespace Tolen::Effects

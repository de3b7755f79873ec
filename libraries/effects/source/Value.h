#pragma once

#include "IValue.h"

#include "TolenCore/Export.h"

#include <memory>
#include <string>

namespace Tolen::Effects {

/// An array of elements in host memory.
///
/// Instances exist for the thirteen element types, for `std::string` and for `IShader*`. A copy
/// shares the elements with its original until one of the two is resized.
template <class T>
class TOLEN_EXPORT Value : public IValue {
public:
    /// @param length       a negative length is kept, with no elements behind it
    /// @param defaultValue fills every element that the construction or a resize adds
    Value(int length, bool resizable, const T& defaultValue);
    Value(const Value&) = default;
    Value& operator=(const Value&) = delete;

    TypeSpecifier GetTypeSpecifier() override;
    const char* GetTypeName() override;
    int GetLength() override { return _length; }
    bool SetLength(int length) override;
    bool IsResizable() override { return _isResizable; }
    bool GetValueAsString(std::string& out, int index) override;
    bool GetValueAsString(std::string& out) override;

    /// The element @p index, which must be 0 to the length less 1: there is no check.
    T Get(int index) const { return _elements[index]; }
    /// All elements, in storage of this value that lives until the next resize; null before the
    /// first one.
    T* GetData() { return _elements.get(); }

    bool Set(const T& value, int index);
    /// Overwrites the first @p count elements and leaves the others.
    bool SetArray(const T* values, int count);

protected:
    /// Moves the elements to an array of @p length. Changes nothing when there is no memory for it.
    void _Resize(int length);

private:
    std::shared_ptr<T[]> _elements;
    bool _isResizable;
    int _length = 0;
    T _defaultValue;
};

} // namespace Tolen::Effects

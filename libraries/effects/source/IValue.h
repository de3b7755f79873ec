#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen {
class IKLBuffer;
class IOpenKLContext;
} // namespace Tolen

namespace Tolen::Effects {

/// An array of elements of one type, seen without that type.
///
/// Values are used on the thread of the OpenKL context. A failing operation prints a line on the
/// error channel and leaves the value as it was.
class IValue {
public:
    virtual ~IValue() = default;

    /// The type of one element; `kType_UserDefined` for texts and shaders.
    virtual TypeSpecifier GetTypeSpecifier() = 0;
    /// The name of the C++ type of one element.
    virtual const char* GetTypeName() = 0;
    virtual int GetLength() = 0;
    /// Changes the number of elements; those that stay keep their values.
    virtual bool SetLength(int length) = 0;
    virtual bool IsResizable() = 0;
    /// Replaces @p out by the text of the element @p index, or of the first one.
    virtual bool GetValueAsString(std::string& out, int index) = 0;
    virtual bool GetValueAsString(std::string& out) = 0;
};

/// A value that lies in a buffer on the renderer's side.
class IValueBuffer : public IValue {
public:
    /// Null when the context gave no buffer.
    virtual IKLBuffer* GetBuffer() = 0;
};

/// Makes a value in host memory with @p length default elements: zero, null, or the identity.
/// @return owned by the caller; null for a type that is no element type
IValue* CreateValue(IOpenKLContext* context, TypeSpecifier specifier, int length, bool resizable);

} // namespace Tolen::Effects

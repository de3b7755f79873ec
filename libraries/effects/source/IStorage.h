#pragma once

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class IShader;
class IValue;

/// The data of a parameter: it owns the value, takes typed writes, tells its listeners, and brings
/// the value to a primitive when the parameter is applied.
///
/// A storage answers only the Set and Get operations of its own element type, without conversion;
/// all others answer false. A failed Set leaves the value as it was and tells nobody.
class IStorage {
public:
    IStorage() = default;
    virtual ~IStorage() = default;
    IStorage(const IStorage&) = delete;
    IStorage& operator=(const IStorage&) = delete;

    virtual bool SetLength(int length) = 0;
    virtual int GetLength() = 0;

    /// Writes the value to @p primitive.
    /// @param name     the uniform's name
    /// @param location of the uniform, or of the uniform block for values in a buffer
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, const std::string& name,
                       int location) = 0;

    virtual bool AddListenerChangeValue(FastDelegate0<bool>& listener) = 0;
    virtual bool RemoveListenerChangeValue(FastDelegate0<bool>& listener) = 0;
    /// Listeners that hear of the new length.
    virtual bool AddListenerChangeLength(FastDelegate1<int, bool>& listener) = 0;
    virtual bool RemoveListenerChangeLength(FastDelegate1<int, bool>& listener) = 0;

    /// Null before Init and after Shutdown.
    virtual IValue* GetValue() = 0;

    /// Sets the first @p count elements, or the element @p index. @return false when the storage
    /// has refused, or when a listener has answered false to the new value
    virtual bool Set(IShader** values, int count);
    virtual bool Set(IShader* value, int index);
#define TOLEN_DECLARE_SET(specifier, T, name, bytes)                                               \
    virtual bool Set(const T* values, int count);                                                  \
    virtual bool Set(const T& value, int index);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_SET)
#undef TOLEN_DECLARE_SET

    /// Reads the element @p index; an index outside the length answers false.
    virtual bool Get(IShader*& value, int index);
#define TOLEN_DECLARE_GET(specifier, T, name, bytes) virtual bool Get(T& value, int index);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_GET)
#undef TOLEN_DECLARE_GET

    /// Gives up the value and all listeners. Safe to repeat.
    virtual void Shutdown() = 0;
};

} // namespace Tolen::Effects

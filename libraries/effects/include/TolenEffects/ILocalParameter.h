#pragma once

#include "TolenEffects/ElementTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>
#include <type_traits>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class IReferenceParameter;
class IShader;

/// How a local parameter takes one element: everything but numbers by reference.
template <class T>
using LocalArgumentOf = std::conditional_t<std::is_arithmetic_v<T>, T, const T&>;

/// A copy of a value parameter that holds for one primitive alone and takes the place of the shared
/// value there. It starts with the shared value and then goes its own way.
///
/// Acquired and released through the effect's reference to the primitive, which owns it.
class TOLEN_EXPORT ILocalParameter {
public:
    ILocalParameter() = default;
    virtual ~ILocalParameter() = default;
    ILocalParameter(const ILocalParameter&) = delete;
    ILocalParameter& operator=(const ILocalParameter&) = delete;

    /// Adds a listener that is called once, when the local parameter goes.
    /// @return true
    virtual bool AddListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener);
    /// Takes a listener of AddListenerDelete() off. @return true
    virtual bool RemoveListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener);

    /// The parameter in its graph of which this is a copy; null after the shutdown.
    virtual IReferenceParameter* GetReferenceParameter();
    /// The primitive that the value is for; null after the shutdown.
    virtual IKLPrimitive* GetKLPrimitive();

    /// Names can't be local. @return false
    virtual bool Set(const std::string& value);
    /// Shaders can't be local. @return false
    virtual bool Set(IShader** values, int count);
    /// Shaders can't be local. @return false
    virtual bool Set(IShader* value, int index);
    /// Shaders can't be local. @return false
    virtual bool Set(IShader* value);
#define TOLEN_DECLARE_SET(specifier, T, name, bytes)                                               \
    /** Sets the first @p count elements, copied, as IParameter does; the shared value stays. */   \
    virtual bool Set(const T* values, int count);                                                  \
    /** Sets the element @p index as IParameter does; the shared value stays. */                   \
    virtual bool Set(LocalArgumentOf<T> value, int index);                                         \
    /** Sets the first element. @return as for an element with an index */                         \
    virtual bool Set(LocalArgumentOf<T> value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_SET)
#undef TOLEN_DECLARE_SET

    /// Names can't be local. @return false
    virtual bool Get(std::string& value);
    /// Shaders can't be local. @return false
    virtual bool Get(IShader*& value, int index);
    /// Shaders can't be local. @return false
    virtual bool Get(IShader*& value);
#define TOLEN_DECLARE_GET(specifier, T, name, bytes)                                               \
    /** Writes the element @p index to @p value.                                                   \
        @return false, with @p value as it was, for an index outside the length and for another    \
                type than the declared one */                                                      \
    virtual bool Get(T& value, int index);                                                         \
    /** Writes the first element to @p value. @return as for an element with an index */           \
    virtual bool Get(T& value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_GET)
#undef TOLEN_DECLARE_GET

    /// Writes the value to @p primitive at @p location of @p program.
    /// @return whether the primitive took it
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, int location);
};

} // namespace Tolen::Effects

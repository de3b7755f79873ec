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

    /// Listeners that are called once, when the local parameter goes.
    virtual bool AddListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener);
    virtual bool RemoveListenerDelete(FastDelegate1<ILocalParameter*, bool>& listener);

    /// The parameter in its graph of which this is a copy; null after the shutdown.
    virtual IReferenceParameter* GetReferenceParameter();
    virtual IKLPrimitive* GetKLPrimitive();

    /// As the operations of IParameter, without effect on the shared value. Shaders and names can't
    /// be local: their forms answer false.
    virtual bool Set(const std::string& value);
    virtual bool Set(IShader** values, int count);
    virtual bool Set(IShader* value, int index);
    virtual bool Set(IShader* value);
#define TOLEN_DECLARE_SET(specifier, T, name, bytes)                                               \
    virtual bool Set(const T* values, int count);                                                  \
    virtual bool Set(LocalArgumentOf<T> value, int index);                                         \
    virtual bool Set(LocalArgumentOf<T> value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_SET)
#undef TOLEN_DECLARE_SET

    virtual bool Get(std::string& value);
    virtual bool Get(IShader*& value, int index);
    virtual bool Get(IShader*& value);
#define TOLEN_DECLARE_GET(specifier, T, name, bytes)                                               \
    virtual bool Get(T& value, int index);                                                         \
    virtual bool Get(T& value);
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_GET)
#undef TOLEN_DECLARE_GET

    /// Writes the value to @p primitive at @p location.
    virtual bool Apply(IKLPrimitive* primitive, IKLProgram* program, int location);
};

} // namespace Tolen::Effects

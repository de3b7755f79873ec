#pragma once

#include "ParameterStorageTyped.h"

#include <memory>

namespace Tolen {
class IOpenKLContext;
} // namespace Tolen

namespace Tolen::Effects {

class ParameterValueArray;

/// A storage in a buffer on the renderer's side: a write reaches the renderer at once.
/// @tparam Parameter the class of the parameter, asked for its mangled name
template <class Parameter, class T>
class ParameterStorageBuffer : public ParameterStorageTyped<T, ValueBuffer<T>> {
public:
    /// @param context   borrowed; without one the storage has no buffer
    /// @param parameter borrowed
    /// @return false when the context gives no buffer of the size
    bool Init(IOpenKLContext* context, Parameter* parameter, int length, bool resizable);

    void Shutdown() override;

protected:
    Parameter* _GetParameter() const { return _pParameter; }

private:
    IOpenKLContext* _pContext = nullptr; ///< borrowed
    Parameter* _pParameter = nullptr;    ///< borrowed
};

/// Adds the apply to a storage in a buffer: it only lets the uniform block read the buffer, however
/// long the array is.
template <class Storage>
class ParameterStorageApplyBuffer : public Storage {
public:
    bool Apply(IKLPrimitive* primitive, IKLProgram* program, const std::string& name,
               int location) override;
};

/// Makes a storage in a buffer.
/// @return null for a type that is no element type, or without a buffer of the size
std::unique_ptr<IStorage> CreateParameterStorageBuffer(IOpenKLContext* context,
                                                       ParameterValueArray* parameter,
                                                       TypeSpecifier specifier, int length,
                                                       bool resizable);

} // namespace Tolen::Effects

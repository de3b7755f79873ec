#pragma once

#include "ParameterStorageTyped.h"

#include <memory>

namespace Tolen {
class IOpenKLContext;
} // namespace Tolen

namespace Tolen::Effects {

/// A storage in host memory that writes its elements to a uniform, or to a uniform array.
/// @tparam ValueType the template of the value, `Value`
template <class T, template <class> class ValueType>
class ParameterStorage : public ParameterStorageTyped<T, ValueType<T>> {
public:
    /// @param context borrowed, for the value; may be null
    /// @return false when there is no memory for the elements
    bool Init(IOpenKLContext* context, int length, bool resizable);

    /// A length of 1 is written as a single value, any other as an array.
    bool Apply(IKLPrimitive* primitive, IKLProgram* program, const std::string& name,
               int location) override;

    void Shutdown() override;

private:
    IOpenKLContext* _pContext = nullptr; ///< borrowed
};

/// The element type in which values of a declared type are kept: all samplers are textures.
TypeSpecifier GetStorageSpecifier(TypeSpecifier specifier);

/// Makes a storage in host memory.
/// @return null for a type that is no element type, or without memory
std::unique_ptr<IStorage> CreateParameterStorage(IOpenKLContext* context, TypeSpecifier specifier,
                                                 int length, bool resizable);

} // namespace Tolen::Effects

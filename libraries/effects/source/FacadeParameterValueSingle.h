#pragma once

#include "ParameterValueSingleStorageSeparate.h"

namespace Tolen::Effects {

class Expression;
class Variable;
template <class T>
class TIParentSyntax;

/// The outside of a single value input: the typed reads and writes, the apply, and the rewriting of
/// references. @tparam Parameter the class that owns the storage
template <class Parameter>
class FacadeParameterValueSingle : public Parameter {
public:
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    using Parameter::Get;
    using Parameter::Set;

    /// An index other than 0 is outside the length. A type that isn't the declared one is refused.
#define TOLEN_DECLARE_ACCESS(specifier, T, name, bytes)                                            \
    bool Set(ArgumentOf<T> value, int index) override {                                            \
        return _Set<T>(value, index);                                                              \
    }                                                                                              \
    bool Set(ArgumentOf<T> value) override {                                                       \
        return _Set<T>(value, 0);                                                                  \
    }                                                                                              \
    bool Get(T& value, int index) override {                                                       \
        return _Get<T>(value, index);                                                              \
    }                                                                                              \
    bool Get(T& value) override {                                                                  \
        return _Get<T>(value, 0);                                                                  \
    }
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_ACCESS)
#undef TOLEN_DECLARE_ACCESS

    bool Apply(IKLPrimitive* primitive, IKLProgram* program, int location) override;

private:
    template <class T>
    bool _Set(const T& value, int index);
    template <class T>
    bool _Get(T& value, int index);

    bool _HasStorage() const;
    bool _ReplaceReference(Variable* variable, TIParentSyntax<Expression>* slot);
};

/// The single value input of a shader.
using ParameterValueSingleSeparate =
    FacadeParameterValueSingle<ParameterValueSingleStorageSeparate>;

extern template class FacadeParameterValueSingle<ParameterValueSingleStorageSeparate>;

} // namespace Tolen::Effects

#pragma once

#include "ParameterSlots.h"

#include "TolenEffects/IParameter.h"

namespace Tolen::Effects {

/// A parameter that stands in front of a real one and changes what a client sees of it. What a kind
/// of wrapper does not change goes to the real parameter.
///
/// A wrapper lives as long as the view of the shader that it belongs to. When the real shader is
/// gone before, the wrapper is detached, and answers like a parameter that has no operations.
class IParameterWrapper : public IParameter {
public:
    /// @param parameter the real one, borrowed until Detach
    explicit IParameterWrapper(IParameter* parameter) : _pParameter(parameter) {}

    /// Forgets what is about to go with the real shader.
    virtual void Detach() { _pParameter = nullptr; }

#define TOLEN_FORWARD(answer, name, parameters, arguments, qualifier)                              \
    answer name parameters qualifier override;
#define TOLEN_FORWARD_ELEMENT(specifier, T, name, bytes)                                           \
    TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_FORWARD, T, ArgumentOf<T>, const T*)                         \
    TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_FORWARD, T, ArgumentOf<T>)
    TOLEN_PARAMETER_CODE_SLOTS(TOLEN_FORWARD)
    TOLEN_PARAMETER_STATE_SLOTS(TOLEN_FORWARD)
    TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_FORWARD, IShader*, IShader*, IShader**)
    TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_FORWARD, IShader*, IShader*)
    TOLEN_ELEMENT_TYPES(TOLEN_FORWARD_ELEMENT)
#undef TOLEN_FORWARD_ELEMENT
#undef TOLEN_FORWARD

protected:
    IParameter* _pParameter; ///< borrowed; null when detached
};

/// A wrapper that shows one cell of an array.
class IParameterWrapper_ArrayCell : public IParameterWrapper {
public:
    using IParameterWrapper::IParameterWrapper;

    /// Shows another cell from now on.
    /// @param move whether the value of the old cell goes into the new one
    virtual bool SetSubIndex(int index, bool move) = 0;
    virtual int GetSubIndex() const = 0;
};

} // namespace Tolen::Effects

#include "IParameterWrapper.h"

namespace Tolen::Effects {

#define TOLEN_FORWARD(answer, name, parameters, arguments, qualifier)                              \
    answer IParameterWrapper::name parameters qualifier {                                          \
        return _pParameter == nullptr ? IParameter::name arguments : _pParameter->name arguments;  \
    }
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

} // namespace Tolen::Effects

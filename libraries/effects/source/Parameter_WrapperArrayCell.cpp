#include "Parameter_WrapperArrayCell.h"

#include "Shader_LightShader.h"

#include "TolenCore/Assert.h"

#include <type_traits>

namespace Tolen::Effects {

namespace {

/// Whether a light can take values of a type with it to another cell.
template <class T>
constexpr bool kIsMovable = !std::is_same_v<T, KLtexture> && !std::is_same_v<T, KLprimitive>;

} // namespace

Parameter_WrapperArrayCell::Parameter_WrapperArrayCell(Shader_LightShader* shader,
                                                       IParameter* parameter)
    : IParameterWrapper_ArrayCell(parameter), _pShader(shader), _index(shader->GetSubIndex()) {}

bool Parameter_WrapperArrayCell::SetSubIndex(int index, bool move) {
    if (index == _index) {
        return true;
    }
    if (!move) {
        _index = index;
        return true;
    }
    if (_pParameter == nullptr) {
        return false;
    }
    const auto refuse = [] {
        return TOLEN_CHECK_TEXT(false, "don't know what to do",
                                "Source/Parameter_WrapperValueArrayCell");
    };
    bool isKnown = false;
    const bool isMoved = VisitElementType(
        GetTypeSpecifier(), false, [&]<class T>(std::type_identity<T>) {
            isKnown = kIsMovable<T>;
            if constexpr (kIsMovable<T>) {
                return _Move<T>(index);
            } else {
                return false;
            }
        });
    return isKnown ? isMoved : refuse();
}

template <class T>
bool Parameter_WrapperArrayCell::_Move(int index) {
    const LifeToken::Watch alive = _pShader->GetWatch();
    T value{};
    const bool isMoved = _pParameter->Get(value, _index) && _pParameter->Set(value, index);
    if (alive) {
        _index = index;
    }
    return isMoved;
}

bool Parameter_WrapperArrayCell::IsDefault() const {
    return _pParameter != nullptr && _pParameter->IsDefault(_index);
}

bool Parameter_WrapperArrayCell::GetAsString(std::string& out) const {
    return _pParameter != nullptr && _pParameter->GetAsString(out, _index);
}

#define TOLEN_REFUSE(answer, name, parameters, arguments, qualifier)                               \
    answer Parameter_WrapperArrayCell::name parameters qualifier {                                 \
        /* NOLINTNEXTLINE(bugprone-parent-virtual-call): it is IParameter itself that refuses */   \
        return IParameter::name arguments;                                                         \
    }
#define TOLEN_SHOW_CELL(answer, name, parameters, arguments, qualifier)                            \
    answer Parameter_WrapperArrayCell::name parameters qualifier {                                 \
        return _pParameter != nullptr && _pParameter->name(value, _index);                         \
    }
#define TOLEN_DEFINE_ELEMENT(specifier, T, name, bytes)                                            \
    TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_REFUSE, T, ArgumentOf<T>, const T*)                          \
    TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_SHOW_CELL, T, ArgumentOf<T>)
TOLEN_PARAMETER_CODE_SLOTS(TOLEN_REFUSE)
TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_REFUSE, IShader*, IShader*, IShader**)
TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_SHOW_CELL, IShader*, IShader*)
TOLEN_ELEMENT_TYPES(TOLEN_DEFINE_ELEMENT)
#undef TOLEN_DEFINE_ELEMENT
#undef TOLEN_SHOW_CELL
#undef TOLEN_REFUSE

} // namespace Tolen::Effects

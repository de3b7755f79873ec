#pragma once

#include "IParameterWrapper.h"

namespace Tolen::Effects {

class Shader_LightShader;

/// Shows one cell of an array of values as the single value of a light.
///
/// A cell is no place where structure can be changed: it has no length, and answers false to all
/// that deals with arrays, listeners and code.
class Parameter_WrapperArrayCell final : public IParameterWrapper_ArrayCell {
public:
    /// @param shader    the view that this belongs to; its cell is the one to show
    /// @param parameter the array, borrowed until Detach
    Parameter_WrapperArrayCell(Shader_LightShader* shader, IParameter* parameter);

    /// With @p move, a type that can't be moved is a failed check and leaves the cell.
    bool SetSubIndex(int index, bool move) override;
    int GetSubIndex() const override { return _index; }

#define TOLEN_DECLARE(answer, name, parameters, arguments, qualifier)                              \
    answer name parameters qualifier override;
#define TOLEN_DECLARE_ELEMENT(specifier, T, name, bytes)                                           \
    TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_DECLARE, T, ArgumentOf<T>, const T*)                         \
    TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_DECLARE, T, ArgumentOf<T>)
    TOLEN_PARAMETER_CODE_SLOTS(TOLEN_DECLARE)
    TOLEN_PARAMETER_ARRAY_FORMS(TOLEN_DECLARE, IShader*, IShader*, IShader**)
    TOLEN_PARAMETER_SINGLE_FORMS(TOLEN_DECLARE, IShader*, IShader*)
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_ELEMENT)
#undef TOLEN_DECLARE_ELEMENT
#undef TOLEN_DECLARE
    using IParameterWrapper_ArrayCell::Get;
    using IParameterWrapper_ArrayCell::Set;

    bool IsArray() const override { return false; }
    int GetLength() const override { return 1; }
    bool SetLength(int) override { return false; }
    bool IsResizable() const override { return false; }
    bool IsDefault(int) const override { return false; }
    bool IsDefault() const override;
    bool GetAsString(std::string&, int) const override { return false; }
    bool GetAsString(std::string& out) const override;

private:
    template <class T>
    bool _Move(int index);

    Shader_LightShader* _pShader; ///< borrowed, owns this
    int _index;
};

} // namespace Tolen::Effects

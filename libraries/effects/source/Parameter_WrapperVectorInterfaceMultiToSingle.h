#pragma once

#include "BorrowedShader.h"
#include "IParameterWrapper.h"

namespace Tolen::Effects {

class Shader_LightShader;

/// Shows an array of shaders of a class of lights, with its companion of indexers, as the input for
/// one shader of one light.
///
/// The real array has one entry for each real shader that lights of the class are connected to. The
/// indexer of the light says which it is and which cell of it: (-1, -1) when nothing is connected
/// any more, and (-2, -2) in the cells of lights that are gone. Everything but the single Set and
/// Get, the length, which is that of the companion, and the text goes to the real array.
class Parameter_WrapperVectorInterfaceMultiToSingle : public IParameterWrapper_ArrayCell {
public:
    /// @param shader    the view that this belongs to; its cell is the one to show
    /// @param parameter, companion borrowed until Detach
    Parameter_WrapperVectorInterfaceMultiToSingle(Shader_LightShader* shader, IParameter* parameter,
                                                  IParameter* companion);
    ~Parameter_WrapperVectorInterfaceMultiToSingle() override;

    void Detach() override;

    /// With @p move, takes the indexer along. @return also false when it could not be moved
    bool SetSubIndex(int index, bool move) override;
    int GetSubIndex() const override { return _index; }

    using IParameterWrapper_ArrayCell::Get;
    using IParameterWrapper_ArrayCell::GetAsString;
    using IParameterWrapper_ArrayCell::Set;
    int GetLength() const override;
    bool SetLength(int length) override;
    bool Set(IShader* shader) override;
    bool Get(IShader*& shader) override;
    bool GetAsString(std::string& out) const override;

    /// The light that is connected; null when it is another shader, or none.
    Shader_LightShader* GetTargetWrapper() const;

protected:
    /// The connected light is not listened to: it is for the client to connect again what has
    /// another cell.
    bool _StartListeningShaderWrapper(Shader_LightShader* target);
    bool _OnTargetWrapperDelete(IShader* target);
    bool _OnTargetBaseDelete(IShader* base);
    /// Writes the new cell of @p target to the whole companion, which takes nothing but single
    /// cells: the indexer stays as it is.
    bool _OnTargetWrapperIndexChange(Shader_LightShader* target, int iIndexOld);

private:
    IParameter* _pRef;            ///< borrowed, `ivec2`; null when detached
    Shader_LightShader* _pShader; ///< borrowed, owns this
    int _index;
    BorrowedShader _connected;
};

} // namespace Tolen::Effects

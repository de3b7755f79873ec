#pragma once

#include "BorrowedShader.h"
#include "IParameterWrapper.h"
#include "ShaderIndexer.h"

#include "TolenCore/LifeToken.h"

namespace Tolen::Effects {

/// Shows the input for one shader of a receiver, with its companion of cells, as an input for a
/// light, or for several lights when the companion is an array. All of them are of one kind.
class Parameter_WrapperVectorInterfaceSingle final : public IParameterWrapper {
public:
    /// @param parameter, companion borrowed until Detach
    Parameter_WrapperVectorInterfaceSingle(IParameter* parameter, IParameter* companion);

    void Detach() override;

    using IParameterWrapper::Get;
    using IParameterWrapper::GetAsString;
    using IParameterWrapper::Set;
    int GetLength() const override;
    bool SetLength(int length) override;
    /// @return false for a light when the companion is an array, although the light is connected
    bool Set(IShader* shader) override;
    /// Refuses, with a failed check, a shader of another kind than the one that is connected. Null
    /// disconnects all cells.
    bool Set(IShader* shader, int index) override;
    bool Get(IShader*& shader) override;
    bool Get(IShader*& shader, int index) override;
    bool GetAsString(std::string& out) const override;
    bool GetAsString(std::string& out, int index) const override;

private:
    IParameter* _pRef; ///< borrowed, `int`; null when detached
    ShaderCells _shaders;
    BorrowedShader _connected;
    LifeToken _life;
};

} // namespace Tolen::Effects

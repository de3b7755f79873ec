#pragma once

#include "IParameterWrapper.h"
#include "ShaderIndexer.h"

#include "TolenCore/LifeToken.h"

namespace Tolen::Effects {

/// Shows the array of shaders of a receiver, with its companion of indexers, as an array of lights.
///
/// It has a cell for each indexer. The real array has one entry for each kind of light: lights of
/// one kind differ in their indexers only. What is done to all cells at once goes to the real array.
class Parameter_WrapperVectorInterfaceMulti final : public IParameterWrapper {
public:
    /// @param parameter, companion borrowed until Detach
    Parameter_WrapperVectorInterfaceMulti(IParameter* parameter, IParameter* companion);

    void Detach() override;

    using IParameterWrapper::Get;
    using IParameterWrapper::GetAsString;
    using IParameterWrapper::Set;
    bool IsArray() const override { return true; }
    bool IsResizable() const override { return true; }
    int GetLength() const override;
    bool SetLength(int length) override;
    /// Null empties the cell for Get. Its indexer stays as it is.
    bool Set(IShader* shader, int index) override;
    bool Get(IShader*& shader, int index) override;
    bool GetAsString(std::string& out, int index) const override;

private:
    IParameter* _pRef; ///< borrowed, `ivec2`; null when detached
    ShaderCells _shaders;
    LifeToken _life;
};

} // namespace Tolen::Effects

#pragma once

#include "CompilerShaderRoot.h"

#include "TolenOpenKLWrapper/IKLShader.h"

namespace Tolen::Effects {

/// The compile side of effects of the prefix stage.
struct PolicyCompilerPrefixRay {
    static constexpr IKLShader::Type kType = IKLShader::kType_PrefixRay;

    static CompilerShaderRootPrefixRay CreateCompiler(IMgrEffects* manager, ShaderVertex*,
                                                IReferenceGraph* graph, IKLShader* shader) {
        return {manager, graph, shader};
    }
};

} // namespace Tolen::Effects

#pragma once

#include "CompilerShaderRoot.h"

#include "TolenOpenKLWrapper/IKLShader.h"

namespace Tolen::Effects {

/// The compile side of effects of the frame stage.
struct PolicyCompilerFrame {
    static constexpr IKLShader::Type kType = IKLShader::kType_Frame;

    static CompilerShaderRootFrame CreateCompiler(IMgrEffects* manager, ShaderVertex*,
                                                  IReferenceGraph* graph, IKLShader* shader) {
        return {manager, graph, shader};
    }
};

} // namespace Tolen::Effects

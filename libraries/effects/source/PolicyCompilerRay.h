#pragma once

#include "CompilerShaderRoot.h"

#include "TolenOpenKLWrapper/IKLShader.h"

namespace Tolen::Effects {

/// The compile side of surface effects: a ray stage that reads what a vertex stage hands on.
struct PolicyCompilerRay {
    static constexpr IKLShader::Type kType = IKLShader::kType_Ray;

    static CompilerShaderRootRay CreateCompiler(IMgrEffects* manager, ShaderVertex* vertex,
                                                IReferenceGraph* graph, IKLShader* shader) {
        return {manager, vertex, graph, shader};
    }
};

} // namespace Tolen::Effects

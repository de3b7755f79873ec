#include "ParameterInterface.h"

#include "GeneratedCode.h"
#include "Shader.h"

#include "TolenEffects/Statement.h"

/// The code that single inputs and arrays have in common.

namespace Tolen::Effects {

bool ParameterInterface::CollectConstructor(CompoundStatement* body) {
    for (int i = 0; i < GetLength(); ++i) {
        Shader* const shader = GetShaderBase(i);
        if (shader != nullptr && shader->HasConstructor()) {
            AddCallStatement(body->GetModule(), body, shader->GetConstructorName());
        }
    }
    return true;
}

} // namespace Tolen::Effects

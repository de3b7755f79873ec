#include "PrototypeParameterValueArray.h"

#include "ParameterValueArraySeparate.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeParameterValueArray::Init(IMgrEffects* owner,
                                        const VariableDeclaration* declaration) {
    _Init(owner, declaration, declaration->GetIdentifier()->GetString());
    return true;
}

IParameter* PrototypeParameterValueArray::CreateParameter(IShader*, Result* result) {
    auto parameter = std::make_unique<ParameterValueArraySeparate>();
    return parameter->Init(_GetManager(), _pDecl, _nameMangled, result) ? parameter.release()
                                                                        : nullptr;
}

} // namespace Tolen::Effects

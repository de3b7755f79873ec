#include "PrototypeParameterValueSingle.h"

#include "FacadeParameterValueSingle.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeParameterValueSingle::Init(IPrototypeShader* owner,
                                         const VariableDeclaration* declaration) {
    _Init(owner, declaration, declaration->GetIdentifier()->GetString());
    return true;
}

IParameter* PrototypeParameterValueSingle::CreateParameter(IShader*, Result* result) {
    auto parameter = std::make_unique<ParameterValueSingleSeparate>();
    return parameter->Init(_GetManager(), _pDecl, _nameMangled, result) ? parameter.release()
                                                                        : nullptr;
}

} // namespace Tolen::Effects

#include "PrototypeParameterInterfaceSingle.h"

#include "DefaultConstructor.h"
#include "ParameterInterfaceSingle.h"
#include "ReferencePrototypeParameterInterface.h"
#include "Shader.h"

#include "TolenEffects/Module.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeParameterInterfaceSingle::Init(const VariableDeclaration* declaration,
                                             IPrototypeInterface* prototype,
                                             const std::string& name) {
    if (declaration->GetInitializer() != nullptr &&
        GetConstructedType(declaration, "Source/PrototypeParameterInterfaceSingle") == nullptr) {
        return false;
    }
    _Init(declaration, prototype, name);
    _nameIndices = "InterfaceIndices" + _key.ToString();
    return true;
}

bool PrototypeParameterInterfaceSingle::Init(const VariableDeclaration* declaration,
                                             IPrototypeShader* prototype, const std::string& name) {
    _Init(declaration, prototype, name);
    _nameIndices = "InterfaceIndices" + _key.ToString();
    return true;
}

IParameter* PrototypeParameterInterfaceSingle::CreateParameter(IShader* shader, Result* result) {
    auto parameter = std::make_unique<ParameterInterfaceSingle>();
    return parameter->Init(_pMgrEffects, _pDecl, static_cast<Shader*>(shader), result)
               ? parameter.release()
               : nullptr;
}

IReferencePrototypeParameter*
PrototypeParameterInterfaceSingle::CreateReference(ReferencePrototypeShader* shader) {
    auto reference = std::make_unique<ReferencePrototypeParameterInterfaceSingle>();
    return reference->Init(this, shader) ? reference.release() : nullptr;
}

bool PrototypeParameterInterfaceSingle::DestroyReference(IReferencePrototypeParameter* reference) {
    delete reference;
    return true;
}

} // namespace Tolen::Effects

#include "PrototypeParameterInterfaceArray.h"

#include "ParameterInterfaceArray.h"
#include "ReferencePrototypeParameterInterface.h"
#include "Shader.h"

#include <memory>

namespace Tolen::Effects {

bool PrototypeParameterInterfaceArray::Init(const VariableDeclaration* declaration,
                                            IPrototypeInterface* prototype, const std::string& name,
                                            int length) {
    _Init(declaration, prototype, name);
    _InitLength(length);
    return true;
}

bool PrototypeParameterInterfaceArray::Init(const VariableDeclaration* declaration,
                                            IPrototypeShader* prototype, const std::string& name,
                                            int length) {
    _Init(declaration, prototype, name);
    _InitLength(length);
    return true;
}

void PrototypeParameterInterfaceArray::_InitLength(int length) {
    _length = length;
    _isFixedLength = length != 0;
}

IParameter* PrototypeParameterInterfaceArray::CreateParameter(IShader* shader, Result* result) {
    auto parameter = std::make_unique<ParameterInterfaceArray>();
    StructureNode* const owner = static_cast<Shader*>(shader);
    const bool good = _isInterface ? parameter->Init(_pMgrEffects, _pDecl, GetInterfaceDefinition(),
                                                     owner, _length, result)
                                   : parameter->Init(_pMgrEffects, _pDecl, GetClassDefinition(),
                                                     owner, _length, result);
    return good ? parameter.release() : nullptr;
}

IReferencePrototypeParameter*
PrototypeParameterInterfaceArray::CreateReference(ReferencePrototypeShader* shader) {
    auto reference = std::make_unique<ReferencePrototypeParameterInterfaceArray>();
    return reference->Init(this, shader) ? reference.release() : nullptr;
}

bool PrototypeParameterInterfaceArray::DestroyReference(IReferencePrototypeParameter* reference) {
    delete reference;
    return true;
}

} // namespace Tolen::Effects

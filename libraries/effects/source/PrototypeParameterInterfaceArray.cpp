#include "PrototypeParameterInterfaceArray.h"

#include "IReferencePrototypeParameter.h"

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
    _ReportUnsupported(shader, result);
    return nullptr;
}

IReferencePrototypeParameter*
PrototypeParameterInterfaceArray::CreateReference(ReferencePrototypeShader*) {
    return nullptr;
}

bool PrototypeParameterInterfaceArray::DestroyReference(IReferencePrototypeParameter* reference) {
    delete reference;
    return true;
}

} // namespace Tolen::Effects

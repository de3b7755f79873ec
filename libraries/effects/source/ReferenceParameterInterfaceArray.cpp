#include "ReferenceParameterInterfaceArray.h"

#include "ParameterInterfaceArray.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"
#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <string>

namespace Tolen::Effects {

bool ReferenceParameterInterfaceArray::Apply(IKLPrimitive* primitive, IKLProgram* program) {
    if (_pParameter == nullptr) {
        return false;
    }
    const auto* const parameter = static_cast<const ParameterInterfaceArray*>(_pParameter);
    const std::string name = parameter->GetInterfaceNameMangled() + "_Count";
    const int location = program->GetUniformLocation(name);
    if (location < 0) {
        ConsolePrint("ReferenceParameterInterfaceArray::Apply Count LocationUniform\n");
        return false;
    }
    if (!primitive->SetUniform(name, location, GetCountReferences())) {
        ConsolePrint("ReferenceParameterInterfaceArray::Apply Count SetUniform\n");
        return false;
    }
    return true;
}

void ReferenceParameterInterfaceArray::_ReportUnknownReference() const {
    ConsolePrint(
        "ReferenceParameterInterfaceArray::_OnDeleteReferenceShader Reference Not Found\n");
}

bool ReferenceParameterInterfaceArray::_CheckEmpty(const Shader* shader,
                                                   const IReferenceShader* reference) const {
    return TOLEN_CHECK(shader == nullptr && reference == nullptr,
                       "Source/ReferenceParameterInterfaceArray");
}

} // namespace Tolen::Effects

#include "ReferenceParameterInterfaceSingle.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

bool ReferenceParameterInterfaceSingle::Apply(IKLPrimitive*, IKLProgram*) {
    return true;
}

void ReferenceParameterInterfaceSingle::_ReportUnknownReference() const {
    TOLEN_CHECK_TEXT(false, "_pReferenceShader == pReferenceShader",
                     "Source/ReferenceParameterInterfaceSingle");
}

bool ReferenceParameterInterfaceSingle::_CheckEmpty(
    const Shader* _pShader, const IReferenceShader* _pReferenceShader) const {
    return TOLEN_CHECK(_pReferenceShader == NULL, "Source/ReferenceParameterInterfaceSingle") &&
           TOLEN_CHECK(_pShader == NULL, "Source/ReferenceParameterInterfaceSingle");
}

} // namespace Tolen::Effects

#include "DefaultConstructor.h"

#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

const UserType* GetConstructedType(const VariableDeclaration* _pDecl, const char* source) {
    // Each check reads only what the one before allowed.
    if (!TOLEN_CHECK(_pDecl->GetInitializer()->GetClass() == kClass_FunctionCall, source)) {
        return nullptr;
    }
    const auto* pInit = static_cast<const FunctionCall*>(_pDecl->GetInitializer());
    if (!TOLEN_CHECK_TEXT(pInit->GetType() != nullptr &&
                              pInit->GetType()->GetClass() == kClass_UserType,
                          "pInit->GetType()->GetClass() == kClass_UserType", source)) {
        return nullptr;
    }
    const auto* pType = static_cast<const UserType*>(pInit->GetType());
    return TOLEN_CHECK(pType->GetName() != NULL, source) ? pType : nullptr;
}

} // namespace Tolen::Effects

#include "AccessQualifier.h"

#include "TolenEffects/Declaration.h"

namespace Tolen::Effects {

void SetAccessQualifier(VariableDeclaration* declaration, AccessQualifier qualifier) {
    if (qualifier == kAccessQualifier_Uniform) {
        declaration->SetStorageQualifier(kStorageQualifier_Uniform);
    }
    declaration->SetConst(qualifier == kAccessQualifier_Const);
}

} // namespace Tolen::Effects

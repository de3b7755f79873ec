#include "PrototypeParameterInterfaceSingle.h"

#include "IReferencePrototypeParameter.h"

#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

namespace {

/// Whether an initializer is the call of a named class. Each check reads only what the one before
/// allowed.
bool _IsConstructor(const VariableDeclaration* _pDecl) {
    if (!TOLEN_CHECK(_pDecl->GetInitializer()->GetClass() == kClass_FunctionCall,
                     "Source/PrototypeParameterInterfaceSingle")) {
        return false;
    }
    const auto* pInit = static_cast<const FunctionCall*>(_pDecl->GetInitializer());
    if (!TOLEN_CHECK_TEXT(pInit->GetType() != nullptr &&
                              pInit->GetType()->GetClass() == kClass_UserType,
                          "pInit->GetType()->GetClass() == kClass_UserType",
                          "Source/PrototypeParameterInterfaceSingle")) {
        return false;
    }
    const auto* pType = static_cast<const UserType*>(pInit->GetType());
    return TOLEN_CHECK(pType->GetName() != NULL, "Source/PrototypeParameterInterfaceSingle");
}

} // namespace

bool PrototypeParameterInterfaceSingle::Init(const VariableDeclaration* declaration,
                                             IPrototypeInterface* prototype,
                                             const std::string& name) {
    if (declaration->GetInitializer() != nullptr && !_IsConstructor(declaration)) {
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
    _ReportUnsupported(shader, result);
    return nullptr;
}

IReferencePrototypeParameter*
PrototypeParameterInterfaceSingle::CreateReference(ReferencePrototypeShader*) {
    return nullptr;
}

bool PrototypeParameterInterfaceSingle::DestroyReference(IReferencePrototypeParameter* reference) {
    delete reference;
    return true;
}

} // namespace Tolen::Effects

#include "ParameterInterfaceSingle.h"

#include "MissingMethod.h"
#include "PrototypeShader.h"
#include "Shader.h"
#include "SyntaxPieces.h"
#include "VisitReplacing.h"

#include "TolenEffects/IPrototypeInterface.h"
#include "TolenEffects/Module.h"

/// What a single input does to the code of its owner.

namespace Tolen::Effects {

bool ParameterInterfaceSingle::CollectShader(Module*) {
    return true;
}

bool ParameterInterfaceSingle::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    return VisitReplacing<FunctionSelection>(
        visit, kClass_FunctionSelection,
        [this](auto* selection, auto* slot) { return _ReplaceReference(selection, slot); });
}

bool ParameterInterfaceSingle::_ReplaceReference(FunctionSelection* selection,
                                                 TIParentSyntax<Expression>* slot) {
    Shader* const shader = GetShaderBase(0);
    if (shader == nullptr ||
        !IsVariable(selection->GetExpression(), _pDecl->GetIdentifier()->GetString())) {
        return true;
    }
    const std::string method = GetMethodName(selection);
    const std::string interfaceName = shader->GetInterfaceName();
    const IPrototypeInterface* const prototypeInterface =
        static_cast<PrototypeShader*>(shader->GetPrototype())->GetInterface();
    // An input of an interface's type is held to the interface, whatever else its shader can do.
    if (GetType() == interfaceName && prototypeInterface != nullptr &&
        !prototypeInterface->HasMethod(method)) {
        return ReportMissingMethodOfInterface(_pMgrEffects, selection->GetRange(), interfaceName,
                                              method);
    }
    if (!shader->HasMethod(method)) {
        return ReportMissingMethodOfClass(_pMgrEffects, selection->GetRange(),
                                          shader->GetClassName(), method);
    }
    ReplaceVisited(slot, MakeCallOfMethod(selection, shader->GetMethodNameMangled(method)));
    return true;
}

} // namespace Tolen::Effects

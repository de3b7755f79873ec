#include "AccessVariableSeparate.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

bool AccessVariableSeparate::Init(TypeSpecifier specifier, const std::string& name,
                                  const std::string& nameMangled, AccessQualifier qualifier,
                                  const Expression* initializer) {
    _InitNames(specifier, name, nameMangled);
    _qualifier = qualifier;
    _pInitializer = initializer;
    return true;
}

bool AccessVariableSeparate::CollectDeclaration(Module* module) {
    VariableDeclaration* const declaration =
        AddGlobalVariable(module, _GetTypeSpecifier(), _GetNameMangled(),
                          _pInitializer == nullptr ? nullptr : _pInitializer->Clone(module));
    SetAccessQualifier(declaration, _qualifier);
    return true;
}

bool AccessVariableSeparate::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Variable, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &AccessVariableSeparate::_RenameReference));
    return visit(kClass_Variable, &visitor);
}

bool AccessVariableSeparate::_RenameReference(Variable* variable, TIParentSyntax<Expression>*) {
    if (_IsReference(variable)) {
        variable->GetIdentifier()->SetString(_GetNameMangled());
    }
    return true;
}

} // namespace Tolen::Effects

#include "AccessSubscriptSeparate.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

#include "TolenCore/Assert.h"

#include <algorithm>

namespace Tolen::Effects {

bool AccessSubscriptSeparate::Init(TypeSpecifier specifier, const std::string& name,
                                   const std::string& nameMangled, int length,
                                   AccessQualifier qualifier, const Expression* initializer) {
    if (!TOLEN_CHECK_TEXT(qualifier == kAccessQualifier_None || initializer == nullptr,
                          "Internal error: Initializer for the access should be defined only for "
                          "member values.",
                          "Source/AccessSubscriptSeparate")) {
        return false;
    }
    _InitNames(specifier, name, nameMangled);
    _length = length;
    _qualifier = qualifier;
    _pInitializer = initializer;
    return true;
}

bool AccessSubscriptSeparate::CollectDeclaration(Module* module) {
    VariableDeclaration* const declaration =
        AddGlobalVariable(module, _GetTypeSpecifier(), _GetNameMangled(),
                          _pInitializer == nullptr ? nullptr : _pInitializer->Clone(module));
    SetArrayLength(declaration, std::max(_length, 1));
    SetAccessQualifier(declaration, _qualifier);
    return true;
}

bool AccessSubscriptSeparate::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<Subscript, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &AccessSubscriptSeparate::_RenameReference));
    return visit(kClass_Subscript, &visitor);
}

bool AccessSubscriptSeparate::SetLength(int length) {
    _length = length;
    return true;
}

bool AccessSubscriptSeparate::_RenameReference(Subscript* subscript, TIParentSyntax<Expression>*) {
    if (_IsReference(subscript->GetArray())) {
        static_cast<Variable*>(subscript->GetArray())
            ->GetIdentifier()
            ->SetString(_GetNameMangled());
    }
    return true;
}

} // namespace Tolen::Effects

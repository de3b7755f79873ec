#include "AccessLength.h"

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"
#include "TolenEffects/VisitorDelegate.h"

namespace Tolen::Effects {

void AccessLength::Init(const std::string& name, const std::string& nameLength) {
    _name = name;
    _nameLength = nameLength;
}

bool AccessLength::CollectDeclaration(Module* module) {
    AddGlobalVariable(module, kType_Int, _nameLength, nullptr)
        ->SetStorageQualifier(kStorageQualifier_Uniform);
    return true;
}

bool AccessLength::VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) {
    TVisitorSyntaxDelegate<FieldSelection, TIParentSyntax<Expression>> visitor(
        MakeDelegate(this, &AccessLength::_ReplaceReference));
    return visit(kClass_FieldSelection, &visitor);
}

bool AccessLength::_ReplaceReference(FieldSelection* selection, TIParentSyntax<Expression>* slot) {
    if (selection->GetField()->GetString() == "length" &&
        IsVariable(selection->GetExpression(), _name)) {
        ReplaceVisited(slot, MakeVariable(selection->GetModule(), _nameLength));
    }
    return true;
}

} // namespace Tolen::Effects

#include "SyntaxPieces.h"

#include "TolenEffects/Module.h"

namespace Tolen::Effects {

Variable* MakeVariable(Module* module, const std::string& name) {
    return module->CreateVariable(module->CreateString(name.c_str()));
}

VariableDeclaration* AddGlobalVariable(Module* module, TypeSpecifier specifier,
                                       const std::string& name, Expression* initializer) {
    VariableDeclaration* const declaration = module->CreateVariableDeclaration(
        module->CreateType(specifier), module->CreateString(name.c_str()), initializer);
    module->AddVariableDeclaration(module->CreateDeclarationStatement(declaration));
    return declaration;
}

void SetArrayLength(VariableDeclaration* declaration, int length) {
    Type* const type = declaration->GetType();
    type->SetArray(true);
    type->SetLength(declaration->GetModule()->CreateIntConstant(length));
}

void AddAssignment(CompoundStatement* body, Expression* target, Expression* value) {
    Module* const module = body->GetModule();
    body->AddStatement(module->CreateExpressionStatement(
        module->CreateAssignment(kOperator_Assign, target, value)));
}

bool IsVariable(const Expression* expression, const std::string& name) {
    return expression != nullptr && expression->GetClass() == kClass_Variable &&
           static_cast<const Variable*>(expression)->GetIdentifier()->GetString() == name;
}

void ReplaceVisited(TIParentSyntax<Expression>* slot, Expression* node) {
    if (!slot->SetReplacement(node) || slot->GetReplacement() != node) {
        delete node;
    }
}

} // namespace Tolen::Effects

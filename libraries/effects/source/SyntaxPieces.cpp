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

std::string GetMethodName(const FunctionSelection* selection) {
    const FunctionCall* const call = selection->GetFunction();
    return call->GetName() != nullptr ? call->GetName()->GetString()
                                      : TypeSpecifierToString(call->GetType()->GetTypeSpecifier());
}

FunctionCall* MakeCallOfMethod(const FunctionSelection* selection, const std::string& function) {
    Module* const module = selection->GetModule();
    FunctionCall* const call = module->CreateFunctionCall(module->CreateString(function.c_str()));
    for (const Expression* argument : selection->GetFunction()->GetParameters()) {
        call->AddParameter(argument->Clone(module));
    }
    call->SetRange(selection);
    return call;
}

} // namespace Tolen::Effects

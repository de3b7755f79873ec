#include "GeneratedCode.h"

#include "TolenEffects/Module.h"

namespace Tolen::Effects {

namespace {

FunctionPrototype* _CreatePrototypeVoid(Module* module, const std::string& name) {
    return module->CreateFunctionPrototype(kFunctionQualifier_None, module->CreateType(kType_Void),
                                           module->CreateString(name.c_str()));
}

} // namespace

void DeclareGlobal(Module* module, TypeSpecifier type, const std::string& name,
                   StorageQualifier qualifier) {
    VariableDeclaration* const declaration = module->CreateVariableDeclaration(
        module->CreateType(type), module->CreateString(name.c_str()), nullptr);
    declaration->SetStorageQualifier(qualifier);
    module->AddVariableDeclaration(module->CreateDeclarationStatement(declaration));
}

Expression* CreateVariableNamed(Module* module, const std::string& name) {
    return module->CreateVariable(module->CreateString(name.c_str()));
}

FunctionCall* CreateCall(Module* module, const std::string& function) {
    return module->CreateFunctionCall(module->CreateString(function.c_str()));
}

void AddCallStatement(Module* module, CompoundStatement* body, const std::string& function) {
    body->AddStatement(module->CreateExpressionStatement(CreateCall(module, function)));
}

void AddAssignmentStatement(Module* module, CompoundStatement* body, Expression* target,
                            Expression* value) {
    body->AddStatement(module->CreateExpressionStatement(
        module->CreateAssignment(kOperator_Assign, target, value)));
}

void PrependParameterThis(FunctionPrototype* prototype) {
    Module* const module = prototype->GetModule();
    FunctionParameter* const parameter =
        module->CreateFunctionParameter(module->CreateType(kType_Int));
    parameter->SetName(module->CreateString(kNameParameterThis));
    prototype->GetParameters().insert(prototype->GetParameters().begin(), parameter);
}

void DeclareFunctionVoid(Module* module, const std::string& name) {
    module->AddFunctionDeclaration(_CreatePrototypeVoid(module, name));
}

void DefineFunctionVoid(Module* module, const std::string& name, CompoundStatement* body) {
    module->AddFunctionDefinition(
        module->CreateFunctionDefinition(_CreatePrototypeVoid(module, name), body));
}

} // namespace Tolen::Effects

#include "CollectorDeclaration.h"

#include "GeneratedCode.h"
#include "TolenEffects/Module.h"
#include "TolenEffects/IAttributeVertex.h"

namespace Tolen::Effects {

bool CollectorDeclarationRayAttribute::Collect(TypeSpecifier type, const std::string& name) {
    DeclareGlobal(_pModule, type, name, kStorageQualifier_RayAttribute);
    return true;
}

bool CollectorDeclarationVariableGlobal::Collect(TypeSpecifier type, const std::string& name) {
    DeclareGlobal(_pModule, type, name, kStorageQualifier_None);
    return true;
}

bool CollectorDeclarationAttributeRay::Collect(const std::string&, IAttributeVertex* attribute) {
    return attribute->CollectDeclarationsRay(_pModule);
}

bool CollectorDeclarationAttributeRay::CollectAttribute(IGraph::Attribute attribute) {
    DeclareGlobal(_pModule, attribute.type, attribute.name, kStorageQualifier_Varying);
    return true;
}

bool CollectorDeclarationFunctions::Collect() {
    const auto declare = [this](const FunctionDefinition* definition) {
        _pModule->AddFunctionDeclaration(static_cast<FunctionPrototype*>(
            definition->GetFunctionPrototype()->Clone(_pModule)));
    };
    for (const FunctionDefinition* definition : _pModule->GetFunctionDefinitions()) {
        if (definition->GetFunctionPrototype()->GetName()->GetString() != "main") {
            declare(definition);
        }
    }
    for (ClassDefinition* classDefinition : _pModule->GetClassDefinitions()) {
        for (const FunctionDefinition* definition : classDefinition->GetMemberFunctions()) {
            declare(definition);
        }
    }
    return true;
}

} // namespace Tolen::Effects

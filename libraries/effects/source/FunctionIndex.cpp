#include "FunctionIndex.h"

#include "TolenEffects/Module.h"

namespace Tolen::Effects {

FunctionIndex::FunctionIndex(const Module* module) {
    for (FunctionDefinition* definition : module->GetFunctionDefinitions()) {
        _definitions[definition->GetFunctionPrototype()->GetName()->GetString()].push_back(
            definition);
    }
}

const std::vector<FunctionDefinition*>& FunctionIndex::Find(const std::string& name) const {
    static const std::vector<FunctionDefinition*> none;
    const auto found = _definitions.find(name);
    return found == _definitions.end() ? none : found->second;
}

} // namespace Tolen::Effects

#include "compiler/SymbolTable.h"

namespace Tolen::OpenKL {

void SymbolTable::PushScope() {
    _scopes.push_back(_hidden.size());
}

void SymbolTable::PopScope() {
    while (_hidden.size() > _scopes.back()) {
        _variables[_hidden.back().name] = _hidden.back().binding;
        _hidden.pop_back();
    }
    _scopes.pop_back();
}

Variable* SymbolTable::FindVariable(std::string_view name) const {
    const auto found = _variables.find(name);
    return found == _variables.end() ? nullptr : found->second.variable;
}

Variable* SymbolTable::FindVariableInScope(std::string_view name) const {
    const auto found = _variables.find(name);
    return found == _variables.end() || found->second.scope != static_cast<int>(_scopes.size())
               ? nullptr
               : found->second.variable;
}

void SymbolTable::AddVariable(Variable* variable) {
    Binding& binding = _variables[variable->name];
    _hidden.push_back({variable->name, binding});
    binding = {variable, static_cast<int>(_scopes.size())};
}

std::span<Function* const> SymbolTable::FindFunctions(std::string_view name) const {
    const auto found = _functions.find(name);
    return found == _functions.end() ? std::span<Function* const>()
                                     : std::span<Function* const>(found->second);
}

void SymbolTable::AddFunction(Function* function) {
    _functions[function->name].push_back(function);
}

const StructType* SymbolTable::FindStruct(std::string_view name) const {
    const auto found = _structs.find(name);
    return found == _structs.end() ? nullptr : found->second;
}

void SymbolTable::AddStruct(const StructType* structure) {
    _structs.emplace(structure->name, structure);
}

} // namespace Tolen::OpenKL

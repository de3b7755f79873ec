#pragma once

#include "compiler/Symbols.h"

#include <span>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Tolen::OpenKL {

/// What the names of a text mean at the place that is being read. Variables, functions and structs
/// have names of their own, so that a variable may be called like a function.
class SymbolTable {
public:
    /// Opens a scope inside the current one; globals are in the outermost.
    void PushScope();
    /// Closes the current scope and forgets its variables.
    void PopScope();

    /// The innermost variable of that name, or null.
    Variable* FindVariable(std::string_view name) const;
    /// The variable of that name which the current scope itself has, or null.
    Variable* FindVariableInScope(std::string_view name) const;
    void AddVariable(Variable* variable);

    /// The functions of that name, in order of declaration.
    std::span<Function* const> FindFunctions(std::string_view name) const;
    void AddFunction(Function* function);

    /// @return null when there is no such struct
    const StructType* FindStruct(std::string_view name) const;
    void AddStruct(const StructType* structure);

    /// Remembers that a name was reported as unknown. @return whether this is the first time
    bool MarkUnknown(std::string_view name) { return _unknown.insert(name).second; }

private:
    struct Binding {
        Variable* variable = nullptr;
        int scope = 0;
    };
    /// What to restore when a scope ends.
    struct Hidden {
        std::string_view name;
        Binding binding;
    };

    std::unordered_map<std::string_view, Binding> _variables;
    std::vector<Hidden> _hidden;
    std::vector<std::size_t> _scopes; ///< size of `_hidden` where each inner scope began
    std::unordered_map<std::string_view, std::vector<Function*>> _functions;
    std::unordered_map<std::string_view, const StructType*> _structs;
    std::unordered_set<std::string_view> _unknown;
};

} // namespace Tolen::OpenKL

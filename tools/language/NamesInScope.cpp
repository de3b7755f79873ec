#include "NamesInScope.h"

#include "language/Builtins.h"

namespace Tolen::Language {

namespace {

void AddBuiltins(std::vector<std::string>& names, Builtin::Kind kind) {
    for (const Builtin& builtin : GetBuiltins()) {
        if (builtin.kind == kind) {
            names.push_back(builtin.name);
        }
    }
}

} // namespace

std::vector<std::string> GetNames(const Symbol& container, Symbol::Kind kind) {
    std::vector<std::string> names;
    for (const Symbol& child : container.children) {
        if (child.kind == kind) {
            names.push_back(child.name);
        }
    }
    return names;
}

std::vector<const Symbol*> NamesInScope::_FindVariables(const IndexedSource& source,
                                                        std::size_t offset) const {
    const std::vector<const Symbol*> around = source.outline.FindAround(offset);
    std::vector<const Symbol*> found;
    for (auto outer = around.rbegin(); outer != around.rend(); ++outer) {
        for (const Symbol& child : (*outer)->children) {
            const bool isOfClass = child.kind == Symbol::kKind_Input ||
                                   child.kind == Symbol::kKind_Member ||
                                   child.kind == Symbol::kKind_Coord;
            const bool isOfFunction =
                (child.kind == Symbol::kKind_Local || child.kind == Symbol::kKind_Parameter) &&
                child.bodyRange.Contains(offset) && !child.nameRange.Contains(offset);
            if (isOfClass || isOfFunction) {
                found.push_back(&child);
            }
        }
    }
    // cppcheck-suppress returnDanglingLifetime ; the outline has the symbols
    return found;
}

const Symbol* NamesInScope::FindVariable(const IndexedSource& source, std::size_t offset,
                                         const std::string& name) const {
    for (const Symbol* const symbol : _FindVariables(source, offset)) {
        if (symbol->name == name) {
            return symbol;
        }
    }
    return nullptr;
}

std::vector<std::string> NamesInScope::GetVariables(const IndexedSource& source,
                                                    std::size_t offset) const {
    std::vector<std::string> names;
    for (const Symbol* const symbol : _FindVariables(source, offset)) {
        names.push_back(symbol->name);
    }
    for (const std::vector<ClientVariable>* variables : {&_names.rayAttributes, &_names.globals}) {
        for (const ClientVariable& variable : *variables) {
            names.push_back(variable.name);
        }
    }
    AddBuiltins(names, Builtin::kKind_Variable);
    names.insert(names.end(), {"true", "false"});
    return names;
}

std::vector<std::string> NamesInScope::GetFunctions(const IndexedSource& source,
                                                    std::size_t offset) const {
    std::vector<std::string> names;
    for (const Symbol* const symbol : source.outline.FindAround(offset)) {
        const std::vector<std::string> methods = GetNames(*symbol, Symbol::kKind_Method);
        names.insert(names.end(), methods.begin(), methods.end());
    }
    for (const IndexedSource* const other : _index.GetSources()) {
        for (const Symbol& symbol : other->outline.symbols) {
            if (symbol.kind == Symbol::kKind_Function) {
                names.push_back(symbol.name);
            }
        }
    }
    AddBuiltins(names, Builtin::kKind_Function);
    AddBuiltins(names, Builtin::kKind_Type);
    return names;
}

std::vector<std::string> NamesInScope::GetOutputs(const IndexedSource& source,
                                                  std::size_t offset) const {
    std::vector<std::string> names;
    for (const Symbol* const symbol : source.outline.FindAround(offset)) {
        const std::vector<std::string> outputs = GetNames(*symbol, Symbol::kKind_Output);
        names.insert(names.end(), outputs.begin(), outputs.end());
    }
    names.emplace_back("o_color");
    return names;
}

std::vector<std::string> NamesInScope::GetContainers(Symbol::Kind kind) const {
    std::vector<std::string> names;
    for (const IndexedSource* const source : _index.GetSources()) {
        for (const Symbol& symbol : source->outline.symbols) {
            if (symbol.kind == kind) {
                names.push_back(symbol.name);
            }
        }
    }
    return names;
}

std::vector<std::string> NamesInScope::GetTypes() const {
    std::vector<std::string> names;
    AddBuiltins(names, Builtin::kKind_Type);
    AddBuiltins(names, Builtin::kKind_Keyword);
    return names;
}

} // namespace Tolen::Language

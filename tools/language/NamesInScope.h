#pragma once

#include "language/ClientNames.h"
#include "language/SourceIndex.h"

#include <cstddef>
#include <string>
#include <vector>

namespace Tolen::Language {

/// The names that code at a place may use, for what was meant by one that is unknown. Names of
/// what is near come first.
class NamesInScope {
public:
    /// @param index, names borrowed
    NamesInScope(SourceIndex& index, const ClientNames& names) : _index(index), _names(names) {}

    std::vector<std::string> GetVariables(const IndexedSource& source, std::size_t offset) const;
    std::vector<std::string> GetFunctions(const IndexedSource& source, std::size_t offset) const;
    std::vector<std::string> GetOutputs(const IndexedSource& source, std::size_t offset) const;
    std::vector<std::string> GetContainers(Symbol::Kind kind) const;
    /// Types of values, and what else may begin a statement.
    std::vector<std::string> GetTypes() const;

    /// The declaration of a variable that code at a place sees by its name.
    const Symbol* FindVariable(const IndexedSource& source, std::size_t offset,
                               const std::string& name) const;

private:
    std::vector<const Symbol*> _FindVariables(const IndexedSource& source,
                                              std::size_t offset) const;

    SourceIndex& _index;
    const ClientNames& _names;
};

/// The names of the children of a kind.
std::vector<std::string> GetNames(const Symbol& container, Symbol::Kind kind);

} // namespace Tolen::Language

#pragma once

#include <set>
#include <string>

/// What headers declare, as far as a linker asks: by qualified names without arguments, those of
/// templates too, as in "Tolen::ListenerSet::Add".

namespace Tolen::Tests {

struct Declarations {
    /// Those with a body, and members that are only announced.
    std::set<std::string> classes;
    std::set<std::string> functions;
    /// Those of the functions whose code is in no header, so that a library has to have it.
    std::set<std::string> needed;
    /// Classes whose tables of virtual functions a library has to have: one of those is needed.
    std::set<std::string> tables;
};

/// Reads C++ in the way of our headers, after the preprocessor; no more of the language than that.
/// @param text as the preprocessor leaves it, with its marks of where a line is from
/// @param folder what is from files below it counts, all else does not
Declarations ReadDeclarations(const std::string& text, const std::string& folder);

/// What a symbol is of.
struct SymbolOwner {
    std::string name;     ///< qualified, as in Declarations
    bool isClass = false; ///< a table of a class, otherwise a function
};

/// @param symbol demangled, as nm prints it
SymbolOwner FindSymbolOwner(const std::string& symbol);

} // namespace Tolen::Tests

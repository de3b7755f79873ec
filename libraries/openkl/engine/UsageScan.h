#pragma once

#include <unordered_set>

namespace Tolen::OpenKL {

struct Function;
struct LinkedStage;
struct Variable;

/// What the code that an entry function reaches does with its variables.
struct Usage {
    std::unordered_set<const Variable*> written;
    /// Arrays, or structs with arrays, that a subscript reaches whose value is not known.
    std::unordered_set<const Variable*> dynamicallyIndexed;
};

/// Looks through @p entry, which may be null, and everything it calls.
/// @param withInitializers also through the initialisers of the stage's globals
Usage ScanUsage(const LinkedStage& stage, const Function* entry, bool withInitializers);

} // namespace Tolen::OpenKL

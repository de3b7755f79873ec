#pragma once

#include "compiler/Arena.h"
#include "compiler/Diagnostics.h"
#include "compiler/NodeFactory.h"
#include "compiler/SymbolTable.h"

#include <array>
#include <unordered_set>
#include <vector>

namespace Tolen::OpenKL {

/// What the checker gathers about the function whose body is read, or about the initialisers of
/// globals.
struct BodyRecord {
    Function* function = nullptr; ///< null for the initialisers of globals
    std::vector<Variable*> locals;
    std::vector<Function*> callees;
    std::unordered_set<const Function*> knownCallees;

    void AddCallee(Function* callee) {
        if (knownCallees.insert(callee).second) {
            callees.push_back(callee);
        }
    }
};

/// What everybody who takes part in checking one text shares.
struct CheckContext {
    CheckContext(Stage textStage, Arena& textArena)
        : stage(textStage), arena(textArena), nodes(textArena, diagnostics) {}

    Stage stage;
    Arena& arena;
    Diagnostics diagnostics;
    SymbolTable symbols;
    NodeFactory nodes;
    BodyRecord* body = nullptr;                        ///< of the code that is read now
    std::array<Variable*, kVariable_Count> builtins{}; ///< those that the text uses
};

} // namespace Tolen::OpenKL

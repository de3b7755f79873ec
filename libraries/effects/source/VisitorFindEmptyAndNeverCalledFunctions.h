#pragma once

#include "TolenEffects/Visitor.h"

#include <map>
#include <set>
#include <string>

namespace Tolen::Effects {

class IGraph;

/// The dead code pass over the merged module of a graph, run just before it is printed:
/// `module->AcceptVisitor(&pass)`.
///
/// It takes nothing out but marks functions that have no statements and the calls of them, and
/// functions that nothing calls; the printer turns the marks into comments. One pass goes one level
/// deep: what only a removed function calls stays. Names with several signatures stay, and so do
/// functions that return a value, since their calls may be operands.
class VisitorFindEmptyAndNeverCalledFunctions final : public Visitor {
public:
    /// @param graph borrowed; the entry points of its root and its constructors always stay
    explicit VisitorFindEmptyAndNeverCalledFunctions(IGraph* graph);

    /// Lets one more function stay, such as one that another text of the program calls.
    void AddRoot(const std::string& function) { _roots.insert(function); }

    using Visitor::Visit;
    bool Visit(Module* node) override;
    bool Visit(FunctionCall* node, TIParentSyntax<Expression>* slot) override;

private:
    struct FunctionInfo {
        FunctionPrototype* pPrototype = nullptr;
        FunctionDefinition* pDefinition = nullptr;
        bool isUsed = false;
        std::string signature; ///< the types of the parameters
    };

    void _CollectRoots();
    void _CollectPrototypes();
    void _CollectDefinitions();
    void _MarkEmpty();
    void _MarkNeverCalled();
    FunctionInfo* _Find(const String* name);

    Module* _pModule = nullptr; ///< borrowed
    IGraph* _pGraph;            ///< borrowed
    std::map<std::string, FunctionInfo> _functions;
    std::set<std::string> _roots;
};

} // namespace Tolen::Effects

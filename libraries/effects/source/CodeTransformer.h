#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/FastDelegate.h"

#include <map>
#include <string>
#include <unordered_set>
#include <vector>

namespace Tolen::Effects {

class FunctionDefinition;
class Variable;
class Visitor;

/// Rewrites the references to parameters, members and coords in copied code, by the visitors that
/// these offer. What the code doesn't name is passed over without a walk.
class CodeTransformer {
public:
    /// @param code the functions to rewrite, borrowed
    explicit CodeTransformer(std::vector<FunctionDefinition*> code);

    /// Runs the visitors of a parameter or member over the code.
    /// @param name as declared
    /// @return false when a visitor said so
    template <class Source>
    bool Apply(const std::string& name, Source* source) {
        if (_names.count(name) == 0) {
            return true;
        }
        auto visit = MakeDelegate(this, &CodeTransformer::_Walk);
        return source->VisitTransformations(visit);
    }

    /// Runs the visitors of coords, which rename variables in place. Each variable is renamed once,
    /// so that coords may take each other's names.
    /// @param coords by declared name
    template <class Coords>
    bool ApplyCoords(const Coords& coords) {
        _CollectVariables();
        for (const auto& [name, coord] : coords) {
            const auto found = _variables.find(name);
            if (found == _variables.end()) {
                continue;
            }
            _pRenamed = &found->second;
            auto visit = MakeDelegate(this, &CodeTransformer::_VisitVariables);
            if (!coord->VisitTransformations(visit)) {
                return false;
            }
        }
        return true;
    }

private:
    bool _Walk(Class stage, Visitor* visitor);
    void _CollectVariables();
    bool _VisitVariables(Class stage, Visitor* visitor);

    std::vector<FunctionDefinition*> _code; ///< borrowed
    std::unordered_set<std::string> _names; ///< those of all variables at the start
    std::map<std::string, std::vector<Variable*>> _variables; ///< by name, borrowed from the code
    const std::vector<Variable*>* _pRenamed = nullptr;        ///< those of the coord in turn
};

} // namespace Tolen::Effects

#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/FastDelegate.h"

#include <cstddef>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace Tolen::Effects {

class CompoundStatement;
class FunctionDefinition;
class Variable;
class Visitor;

/// Rewrites the references to parameters, members and coords in copied code, by the visitors that
/// these offer.
///
/// Only those statements, right in the bodies of the functions, are walked that speak of what is
/// rewritten, so that the cost doesn't grow with the number of parameters times that of statements.
/// Visitors may replace statements and expressions, not add to the list of a function's statements
/// or take from it, and must not name other parameters than the code did before.
class CodeTransformer {
public:
    /// @param code the functions to rewrite, borrowed
    explicit CodeTransformer(std::vector<FunctionDefinition*> code);

    /// Runs the visitors of a parameter or member over the code, in the order of the functions.
    /// @param name as declared
    /// @return false when a visitor said so
    template <class Source>
    bool Apply(const std::string& name, Source* source) {
        const auto found = _places.find(name);
        if (found == _places.end()) {
            return true;
        }
        _pNamed = &found->second;
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
    /// A statement right in the body of a function.
    struct Place {
        CompoundStatement* body; ///< borrowed
        std::size_t index;

        bool operator==(const Place&) const = default;
    };

    bool _Walk(Class stage, Visitor* visitor);
    void _CollectVariables();
    bool _VisitVariables(Class stage, Visitor* visitor);

    std::vector<FunctionDefinition*> _code; ///< borrowed
    /// Where the code names a variable, each statement once and in order; by name.
    std::unordered_map<std::string, std::vector<Place>> _places;
    const std::vector<Place>* _pNamed = nullptr; ///< the places of the parameter in turn
    std::map<std::string, std::vector<Variable*>> _variables; ///< by name, borrowed from the code
    const std::vector<Variable*>* _pRenamed = nullptr;        ///< those of the coord in turn
};

} // namespace Tolen::Effects

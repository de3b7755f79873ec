#pragma once

#include "ITransformations.h"

#include <string>

namespace Tolen::Effects {

class Expression;
class FieldSelection;
class Module;
template <class T>
class TIParentSyntax;

/// The length of an array as generated code sees it: a uniform of its own, which takes the place of
/// every `x.length`.
class AccessLength : public ITransformations {
public:
    AccessLength() = default;
    /// Bears a name before Init already, which would show in generated text.
    explicit AccessLength(const std::string& nameLength) : _nameLength(nameLength) {}

    /// @param name       of the array, as declared
    /// @param nameLength of the uniform
    void Init(const std::string& name, const std::string& nameLength);

    /// The name of the uniform.
    const std::string& GetName() const { return _nameLength; }

    /// Adds the declaration of the uniform to @p module. Always true.
    bool CollectDeclaration(Module* module);
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

private:
    bool _ReplaceReference(FieldSelection* selection, TIParentSyntax<Expression>* slot);

    std::string _name;
    std::string _nameLength;
};

} // namespace Tolen::Effects

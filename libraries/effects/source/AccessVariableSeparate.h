#pragma once

#include "Access.h"
#include "AccessQualifier.h"

namespace Tolen::Effects {

class Variable;
template <class T>
class TIParentSyntax;

/// A single value that is a global variable of its own in generated code.
class AccessVariableSeparate : public Access {
public:
    /// @param initializer borrowed; null for none
    bool Init(TypeSpecifier specifier, const std::string& name, const std::string& nameMangled,
              AccessQualifier qualifier, const Expression* initializer);

    bool CollectDeclaration(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

private:
    bool _RenameReference(Variable* variable, TIParentSyntax<Expression>* slot);

    AccessQualifier _qualifier = kAccessQualifier_None;
    const Expression* _pInitializer = nullptr; ///< borrowed
};

} // namespace Tolen::Effects

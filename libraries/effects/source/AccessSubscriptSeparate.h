#pragma once

#include "Access.h"
#include "AccessQualifier.h"

namespace Tolen::Effects {

class Subscript;
template <class T>
class TIParentSyntax;

/// An array that is a global variable of its own in generated code, with room for one element at
/// least.
class AccessSubscriptSeparate : public Access {
public:
    /// @param initializer borrowed; null for none
    /// @return false for an initializer together with a qualifier
    bool Init(TypeSpecifier specifier, const std::string& name, const std::string& nameMangled,
              int length, AccessQualifier qualifier, const Expression* initializer);

    bool CollectDeclaration(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    int GetLength() const { return _length; }
    /// The length of the next declaration. Always true.
    bool SetLength(int length);

private:
    bool _RenameReference(Subscript* subscript, TIParentSyntax<Expression>* slot);

    int _length = 0;
    AccessQualifier _qualifier = kAccessQualifier_None;
    const Expression* _pInitializer = nullptr; ///< borrowed
};

} // namespace Tolen::Effects

#pragma once

#include "Access.h"

namespace Tolen::Effects {

class Subscript;
template <class T>
class TIParentSyntax;

/// An array in a uniform block. The code declares a block of the mangled name with one member "a"
/// of length 1, whatever the number of elements, which is that of the buffer bound to it:
/// `x[i]` becomes `x_k1.a[i]`.
class AccessBuffer : public Access {
public:
    bool Init(TypeSpecifier specifier, const std::string& name, const std::string& nameMangled,
              int length);

    bool CollectDeclaration(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    int GetLength() const { return _length; }
    /// Follows the length of the storage. Always true.
    bool SetLength(int length);

private:
    bool _ReplaceReference(Subscript* subscript, TIParentSyntax<Expression>* slot);

    int _length = 0;
};

} // namespace Tolen::Effects

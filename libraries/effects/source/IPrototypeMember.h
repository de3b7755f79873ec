#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::Effects {

class IMember;
class IReferencePrototypeMember;
class IShader;
class ReferencePrototypeShader;

/// A non-static variable of a class that is no input: the template of the member that each of its
/// shaders owns.
///
/// Made and owned by the prototype of the class; outlives every shader made through it.
class IPrototypeMember {
public:
    using Reference = IReferencePrototypeMember;

    virtual ~IPrototypeMember() = default;

    virtual TypeSpecifier GetType() = 0;
    /// The declared name.
    virtual std::string GetName() const = 0;
    /// A name that no other variable of the manager has; the instances' names start with it.
    virtual const std::string& GetNameMangled() const = 0;

    /// Makes the member of one shader. @return owned by the caller; null on failure
    virtual IMember* CreateMember(IShader* shader, Result* result) = 0;

    /// The variable as a graph sees it. @return owned here; null on failure
    virtual IReferencePrototypeMember* CreateReference(ReferencePrototypeShader* shader) = 0;
    /// @return false when the reference isn't one of this variable
    virtual bool DestroyReference(IReferencePrototypeMember* reference) = 0;
};

} // namespace Tolen::Effects

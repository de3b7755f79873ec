#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::Effects {

class IParameter;
class IReferencePrototypeParameter;
class IShader;
class ReferencePrototypeShader;

/// A non-static input of a class: the template of the parameter that each of its shaders owns.
///
/// Made and owned by the prototype of the class; outlives every shader made through it.
class IPrototypeParameter {
public:
    using Reference = IReferencePrototypeParameter;

    virtual ~IPrototypeParameter() = default;

    /// The declared type; void for an input that takes shaders.
    virtual TypeSpecifier GetType() = 0;
    /// The declared name.
    virtual std::string GetName() const = 0;
    /// A name that no other variable of the manager has; the instances' names start with it.
    virtual const std::string& GetNameMangled() const = 0;

    /// Makes the parameter of one shader.
    /// @param result takes the reasons of a failure; may be null
    /// @return owned by the caller; null on failure
    virtual IParameter* CreateParameter(IShader* shader, Result* result) = 0;

    /// The input as a graph sees it. @return owned here; null on failure
    virtual IReferencePrototypeParameter* CreateReference(ReferencePrototypeShader* shader) = 0;
    /// @return false when the reference isn't one of this input
    virtual bool DestroyReference(IReferencePrototypeParameter* reference) = 0;
};

} // namespace Tolen::Effects

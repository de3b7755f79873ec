#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/FastDelegate.h"

namespace Tolen::Effects {

class Module;
class Visitor;

/// The form of a parameter or member in generated code: what the code declares for it, and how
/// references to its declared name are rewritten.
class IAccess {
public:
    IAccess() = default;
    virtual ~IAccess() = default;
    IAccess(const IAccess&) = delete;
    IAccess& operator=(const IAccess&) = delete;

    /// Adds the declarations to @p module. Always true.
    virtual bool CollectDeclaration(Module* module) = 0;
    /// Calls @p visit with the visitor that rewrites references, and with the class of node that it
    /// works on. @return what @p visit answers
    virtual bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) = 0;
};

} // namespace Tolen::Effects

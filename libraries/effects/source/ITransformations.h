#pragma once

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/FastDelegate.h"

namespace Tolen::Effects {

class Visitor;

/// What can be asked for the visitors that rewrite references to it.
class ITransformations {
public:
    virtual ~ITransformations() = default;

    /// Calls @p visit with each visitor, and with the class of node that it works on.
    /// @return false when @p visit answered false
    virtual bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) = 0;
};

} // namespace Tolen::Effects

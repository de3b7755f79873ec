#pragma once

#include "IReferencePrototypeParameter.h"
#include "ReferencePrototypePart.h"

namespace Tolen::Effects {

class PrototypeParameterValueArray;

/// A non-static array input of a class in a graph.
using ReferencePrototypeParameterValueArray =
    ReferencePrototypePart<IReferencePrototypeParameter, PrototypeParameterValueArray>;

} // namespace Tolen::Effects

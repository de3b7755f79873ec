#pragma once

#include "IReferencePrototypeMember.h"
#include "ReferencePrototypePart.h"

namespace Tolen::Effects {

class PrototypeMemberValueArray;

/// A non-static array member variable of a class in a graph.
using ReferencePrototypeMemberValueArray =
    ReferencePrototypePart<IReferencePrototypeMember, PrototypeMemberValueArray>;

} // namespace Tolen::Effects

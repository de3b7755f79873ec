#pragma once

#include "IReferencePrototypeMember.h"
#include "ReferencePrototypePart.h"

namespace Tolen::Effects {

class PrototypeMemberValueSingle;

/// A non-static single member variable of a class in a graph.
using ReferencePrototypeMemberValueSingle =
    ReferencePrototypePart<IReferencePrototypeMember, PrototypeMemberValueSingle>;

} // namespace Tolen::Effects

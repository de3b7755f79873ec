#pragma once

#include "TolenEffects/IReferenceParameter.h"

namespace Tolen::Effects {

/// A value input in a graph.
class ReferenceParameterValue : public IReferenceParameter {};

} // namespace Tolen::Effects

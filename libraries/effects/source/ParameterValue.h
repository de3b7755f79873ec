#pragma once

#include "TolenEffects/IParameter.h"

namespace Tolen::Effects {

/// An input whose value is of a built-in type.
class ParameterValue : public IParameter {};

} // namespace Tolen::Effects

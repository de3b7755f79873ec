#pragma once

#include "engine/Linear.h"

namespace Tolen::OpenKL {

struct Uniformity;

/// Makes control flow and masks explicit.
LinearUnit Lower(const IrUnit& unit, const Uniformity& uniformity);

} // namespace Tolen::OpenKL

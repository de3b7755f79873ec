#pragma once

#include "engine/Ir.h"

namespace Tolen::OpenKL {

/// Removes ops whose values nobody needs, stores that nobody loads, and branches that are empty.
void RemoveDeadCode(IrUnit& unit);

} // namespace Tolen::OpenKL

#pragma once

#include "engine/Linear.h"

namespace Tolen::OpenKL {

/// Takes out moves between registers that may as well be one: copies of a variable that it outlives
/// unchanged, and values that are made only to be stored.
///
/// Before: `t = x; u = t + 1; x = u;`  After: `x = x + 1;`
void RemoveCopies(LinearUnit& unit);

} // namespace Tolen::OpenKL

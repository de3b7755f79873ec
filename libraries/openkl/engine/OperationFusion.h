#pragma once

#include "engine/Ir.h"

namespace Tolen::OpenKL {

/// Joins products that are used once with the sum around them, rounding as before: each operation
/// is a pass over the lanes, and one pass then does both.
///
/// Before: `t = a * b; u = t + c;`  After: `u = FMulAdd(a, b, c);`
void FuseOperations(IrUnit& unit);

} // namespace Tolen::OpenKL

#pragma once

#include "engine/Ir.h"

namespace Tolen::OpenKL {

/// Computes what is constant, computes what is the same once, takes stored values straight to
/// their loads, and turns small branches into selections. What becomes useless stays; see
/// RemoveDeadCode.
///
/// Before: `x = a * b; y = x + a * b;`  After: `x = t; y = t + t;` with t = a * b.
void Simplify(IrUnit& unit);

} // namespace Tolen::OpenKL

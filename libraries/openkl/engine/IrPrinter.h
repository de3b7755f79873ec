#pragma once

#include "engine/Linear.h"

#include <string>

namespace Tolen::OpenKL {

/// The structured form as text, one op a line, for people.
std::string Print(const IrUnit& unit);

/// The linear form as text: rows are r0, r1, ..., scalars s0, s1, ...
std::string Print(const LinearUnit& unit);

} // namespace Tolen::OpenKL

#pragma once

/// @file
/// A clock to measure by, and the way to a debugger.

#include "TolenCore/Export.h"

namespace Tolen {

/// The ticks of a steady high-resolution counter.
TOLEN_EXPORT long long ReadCounter();

/// Ticks for one second.
TOLEN_EXPORT long long CounterFrequency();

/// Writes @p text where a debugger shows it: on this system, stderr. Null is passed over.
TOLEN_EXPORT void WriteDebuggerOutput(const char* text);

} // namespace Tolen

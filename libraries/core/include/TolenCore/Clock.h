#pragma once

#include "TolenCore/Export.h"

namespace Tolen {

/// The ticks of a steady high-resolution counter.
TOLEN_EXPORT long long ReadCounter();

/// Ticks for one second.
TOLEN_EXPORT long long CounterFrequency();

/// Writes @p text where a debugger shows it: on this system, stderr.
TOLEN_EXPORT void WriteDebuggerOutput(const char* text);

} // namespace Tolen

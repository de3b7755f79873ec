#pragma once

/// @file
/// Texts with numbers in them that are the same in every locale.

#include "TolenCore/Export.h"

#include <cstdarg>
#include <string>

namespace Tolen {

/// Formats by the printf rules into a text of the measured size, with "." as the decimal point
/// whatever locale the client has set.
TOLEN_EXPORT std::string Format(const char* format, ...) TOLEN_PRINTF(1, 2);

/// Formats as Format() does, with the arguments from a list, which the call leaves as it was.
TOLEN_EXPORT std::string FormatV(const char* format, std::va_list arguments);

/// Holds the calling thread in the "C" locale for a scope, so that numbers are written and read
/// with a point; other threads keep theirs.
class TOLEN_EXPORT ScopedCLocale {
public:
    /// Changes the locale of the calling thread.
    ScopedCLocale();
    /// Gives the thread its locale back; to be destroyed on the thread that made it.
    ~ScopedCLocale();
    ScopedCLocale(const ScopedCLocale&) = delete;
    ScopedCLocale& operator=(const ScopedCLocale&) = delete;

private:
    void* _previous;
};

/// Reads a float at the start of @p text with a point as the decimal separator, as atof does:
/// 0 when there is none and for null, infinity on overflow.
TOLEN_EXPORT double ParseFloat(const char* text);

} // namespace Tolen

#include "TolenCore/Format.h"

#include <cstdio>
#include <cstdlib>
#include <locale.h> // NOLINT(modernize-deprecated-headers): newlocale is of POSIX

namespace Tolen {

namespace {

locale_t CLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

} // namespace

ScopedCLocale::ScopedCLocale() : _previous(uselocale(CLocale())) {}

ScopedCLocale::~ScopedCLocale() { uselocale(static_cast<locale_t>(_previous)); }

std::string FormatV(const char* format, std::va_list arguments) {
    const ScopedCLocale locale;
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length <= 0) {
        return {};
    }
    // The terminating zero goes into the string's own last byte.
    std::string text(static_cast<std::size_t>(length), '\0');
    std::va_list written;
    va_copy(written, arguments);
    std::vsnprintf(text.data(), text.size() + 1, format, written);
    va_end(written);
    return text;
}

std::string Format(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = FormatV(format, arguments);
    va_end(arguments);
    return text;
}

double ParseFloat(const char* text) {
    return text == nullptr ? 0.0 : strtod_l(text, nullptr, CLocale());
}

} // namespace Tolen

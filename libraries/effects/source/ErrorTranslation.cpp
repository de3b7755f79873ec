#include "ErrorTranslation.h"

#include "LocationText.h"

#include "TolenEffects/VisitorPrintKsl.h"

#include <charconv>
#include <cstddef>
#include <string_view>

namespace Tolen::Effects {

namespace {

constexpr std::string_view kLineMark = "String 0 Line ";

/// One line of the log, with its line feed if it has one.
std::string TranslateLine(std::string_view line, const VisitorPrintKsl& printer) {
    const std::size_t mark = line.find(kLineMark);
    if (mark == std::string_view::npos) {
        return std::string(line);
    }
    const std::size_t number = mark + kLineMark.size();
    const std::size_t rest = line.find_first_not_of("0123456789", number);
    if (rest == std::string_view::npos) {
        return std::string(line);
    }
    int value = 0;
    const auto [end, error] = std::from_chars(line.data() + number, line.data() + rest, value);
    if (error != std::errc() || value < 1) {
        return std::string(line);
    }
    const Syntax* node = printer.GetSyntaxForLine(value);
    const LocationRange range = node == nullptr ? LocationRange() : node->GetRange();
    return LocationText(range).append(line.substr(rest));
}

} // namespace

std::string TranslateErrorMessage(const std::string& log, const VisitorPrintKsl& printer) {
    std::string translated;
    const std::string_view text = log;
    // A line feed at the very start of the log belongs to no line.
    std::size_t start = text.substr(0, 1) == "\n" ? 1 : 0;
    while (start < text.size()) {
        const std::size_t end = text.find('\n', start);
        const std::size_t next = end == std::string_view::npos ? text.size() : end + 1;
        translated += TranslateLine(text.substr(start, next - start), printer);
        start = next;
    }
    return translated;
}

} // namespace Tolen::Effects

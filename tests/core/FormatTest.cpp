#include "TolenCore/Format.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <limits>

namespace Tolen::Tests {
namespace {

/// A locale that writes a comma where "C" writes a point, if the machine has one.
class CommaLocale {
public:
    CommaLocale() : _previous(std::setlocale(LC_ALL, nullptr)) {
        for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "fr_FR"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) {
                break;
            }
        }
    }
    ~CommaLocale() { std::setlocale(LC_ALL, _previous.c_str()); }

private:
    std::string _previous;
};

TEST(Format, TextsOfAnyLength_AreWrittenWhole) {
    EXPECT_EQ(Format("%s", ""), "");
    EXPECT_EQ(Format("%d-%x-%s", 5, 26u, "x"), "5-1a-x");
    const std::string text(1 << 20, 'x');
    EXPECT_EQ(Format("<%s>", text.c_str()), "<" + text + ">");
}

TEST(Format, FormatV_LeavesTheArgumentsToTheCaller) {
    const auto twice = [](const char* format, ...) {
        std::va_list arguments;
        va_start(arguments, format);
        std::string text = FormatV(format, arguments);
        text += FormatV(format, arguments);
        va_end(arguments);
        return text;
    };
    EXPECT_EQ(twice("%d%s;", 1, "a"), "1a;1a;");
}

TEST(Format, Numbers_KeepThePointInAnyLocale) {
    const CommaLocale locale;
    EXPECT_EQ(Format("%#.16g", 0.5), "0.5000000000000000");
    EXPECT_EQ(ParseFloat("2.5"), 2.5);
}

TEST(Format, ParseFloat_ReadsAsFarAsANumberGoes) {
    EXPECT_EQ(ParseFloat(nullptr), 0.0);
    EXPECT_EQ(ParseFloat(""), 0.0);
    EXPECT_EQ(ParseFloat("x"), 0.0);
    EXPECT_EQ(ParseFloat("1.25f"), 1.25);
    EXPECT_EQ(ParseFloat("1e2,5"), 100.0);
    EXPECT_EQ(ParseFloat("1e999"), std::numeric_limits<double>::infinity());
    EXPECT_TRUE(std::signbit(ParseFloat("-0")));
}

} // namespace
} // namespace Tolen::Tests

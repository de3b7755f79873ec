#include "language/Suggestion.h"

#include <gtest/gtest.h>

namespace Tolen::Language {
namespace {

TEST(Suggest, FindsWhatDiffersByASlip) {
    const std::vector<std::string> kNames = {"color", "radius", "normalize", "kl_HitDistance",
                                             "uv"};
    const std::pair<const char*, const char*> kCases[] = {
        {"colr", "color"},          // left out
        {"colour", "color"},        // put in
        {"colot", "color"},         // changed
        {"cloor", "color"},         // swapped
        {"Color", "color"},         // of another case
        {"RADIUS", "radius"},       //
        {"normalise", "normalize"}, //
        {"kl_hitdistanse", "kl_HitDistance"},
        {"UV", "uv"},
    };
    for (const auto& [name, meant] : kCases) {
        EXPECT_EQ(Suggest(name, kNames), meant) << name;
    }
}

TEST(Suggest, FindsNothingForOtherNames) {
    const std::vector<std::string> kNames = {"color", "radius", "x", "uv"};
    for (const char* name : {"", "a", "vu", "coloration", "diameter", "y", "color"}) {
        EXPECT_EQ(Suggest(name, kNames), "") << name;
    }
    EXPECT_EQ(Suggest("color", {}), "");
    EXPECT_EQ(Suggest("ab", {""}), "");
}

TEST(Suggest, PrefersWhatIsNearerAndThenTheFirst) {
    EXPECT_EQ(Suggest("colors", {"colours", "color", "colore"}), "colours");
    EXPECT_EQ(Suggest("Color", {"colon", "color"}), "color");
    EXPECT_EQ(Suggest("color", {"colon", "color"}), "");
}

TEST(Suggest, OfLongNames_IsQuickAndSilent) {
    const std::string longName(1000000, 'a');
    EXPECT_EQ(Suggest(longName, {longName + "b"}), "");
    EXPECT_EQ(Suggest("color", std::vector<std::string>(1000, longName)), "");
    EXPECT_EQ(Suggest(std::string(64, 'a'), {std::string(63, 'a') + "b"}),
              std::string(63, 'a') + "b");
}

} // namespace
} // namespace Tolen::Language

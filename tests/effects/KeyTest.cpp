#include "TolenEffects/Key.h"

#include <gtest/gtest.h>

namespace Tolen::Effects {
namespace {

TEST(Key, TheNullKey_IsZero) {
    EXPECT_EQ(Key(), Key::Null());
    EXPECT_EQ(Key::Null().GetNumber(), 0u);
    EXPECT_EQ(&Key::Null(), &Key::Null());
}

TEST(Key, ToString_IsHexadecimal) {
    EXPECT_EQ(Key().ToString(), "_k0");
    EXPECT_EQ(Key(26).ToString(), "_k1a");
    EXPECT_EQ(Key(0xffffffffu).ToString(), "_kffffffff");
}

TEST(Key, Comparison_IsUnsigned) {
    EXPECT_LT(Key(1), Key(0x80000000u));
    EXPECT_FALSE(Key(0x80000000u) < Key(1));
    EXPECT_TRUE(Key(3) != Key(4));
    const Key copy = Key(7);
    EXPECT_EQ(copy, Key(7));
}

} // namespace
} // namespace Tolen::Effects

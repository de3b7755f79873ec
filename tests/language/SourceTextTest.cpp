#include "language/SourceText.h"

#include <gtest/gtest.h>

namespace Tolen::Language {
namespace {

TEST(SourceText, CountLines_CountsTheEmptyOneBehindTheLastLineFeed) {
    EXPECT_EQ(SourceText().CountLines(), 1);
    EXPECT_EQ(SourceText("a").CountLines(), 1);
    EXPECT_EQ(SourceText("a\n").CountLines(), 2);
    EXPECT_EQ(SourceText("\n\n").CountLines(), 3);
}

TEST(SourceText, GetLine_LeavesOutTheEndOfTheLine) {
    const SourceText text("ab\r\n\ncd\r\r\ne\r");
    EXPECT_EQ(text.GetLine(1), "ab");
    EXPECT_EQ(text.GetLine(2), "");
    EXPECT_EQ(text.GetLine(3), "cd\r");
    EXPECT_EQ(text.GetLine(4), "e");
    EXPECT_EQ(text.GetLineRange(3), (SourceRange{5, 8}));
}

TEST(SourceText, GetLine_IsEmptyWhereThereIsNone) {
    const SourceText text("ab\ncd");
    for (const int line : {-1, 0, 3, 1000}) {
        EXPECT_EQ(text.GetLine(line), "") << line;
        EXPECT_EQ(text.GetLineRange(line), (SourceRange{5, 5})) << line;
    }
}

TEST(SourceText, GetText_IsHeldToTheText) {
    const SourceText text("abc");
    EXPECT_EQ(text.GetText({1, 2}), "b");
    EXPECT_EQ(text.GetText({1, 100}), "bc");
    EXPECT_EQ(text.GetText({100, 200}), "");
    EXPECT_EQ(text.GetText({2, 1}), "");
}

TEST(SourceText, PlacesAndOffsets_LeadToEachOther) {
    const SourceText text("ab\n\r\nc\xc3\xa4 d\n");
    for (std::size_t offset = 0; offset <= text.GetText().size(); ++offset) {
        const SourcePlace place = text.GetPlace(offset);
        if (text.GetText({offset, offset + 1}) != "\n" || place.column == 1) {
            EXPECT_EQ(text.GetOffset(place), offset);
        }
    }
    EXPECT_EQ(text.GetPlace(0), (SourcePlace{1, 1}));
    EXPECT_EQ(text.GetPlace(2), (SourcePlace{1, 3}));
    EXPECT_EQ(text.GetPlace(3), (SourcePlace{2, 1}));
    EXPECT_EQ(text.GetPlace(5), (SourcePlace{3, 1}));
}

TEST(SourceText, PlacesOutside_AreTheNearestInside) {
    const SourceText text("ab\ncd");
    EXPECT_EQ(text.GetPlace(100), (SourcePlace{2, 3}));
    EXPECT_EQ(text.GetOffset({0, 5}), 0u);
    EXPECT_EQ(text.GetOffset({1, -3}), 0u);
    EXPECT_EQ(text.GetOffset({1, 100}), 2u);
    EXPECT_EQ(text.GetOffset({2, 100}), 5u);
    EXPECT_EQ(text.GetOffset({7, 1}), 5u);
}

TEST(SourceText, Columns16_CountCharactersBeyondTheFirstPlaneTwice) {
    // A letter of one byte, of two, of three, of four; one more.
    const SourceText text("x\na\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80z\n");
    const struct {
        std::size_t offset;
        int column;
    } kPlaces[] = {{2, 0}, {3, 1}, {5, 2}, {8, 3}, {12, 5}, {13, 6}};
    for (const auto& place : kPlaces) {
        EXPECT_EQ(text.GetColumn16(place.offset), place.column) << place.offset;
        EXPECT_EQ(text.GetOffset16(2, place.column), place.offset) << place.column;
    }
    EXPECT_EQ(text.GetOffset16(2, 100), 13u);
    EXPECT_EQ(text.GetOffset16(0, 3), 0u);
}

TEST(SourceText, Columns16_CountOneForEachByteThatIsNoUtf8) {
    const SourceText text("\xff\x80\xe2\x82z\xf0\x9f");
    EXPECT_EQ(text.GetColumn16(5), 5);
    EXPECT_EQ(text.GetColumn16(7), 7);
    EXPECT_EQ(text.GetOffset16(1, 6), 6u);
}

} // namespace
} // namespace Tolen::Language

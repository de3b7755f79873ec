#include "PointerTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <numeric>
#include <vector>

namespace Tolen::Effects::Tests {
namespace {

TEST(PointerTableTest, Elements_KeepTheirOrderWhenOthersAreTaken) {
    std::vector<int> values(1000);
    std::iota(values.begin(), values.end(), 0);
    PointerTable<int*> table;
    for (int& value : values) {
        table.Add(&value);
    }
    EXPECT_EQ(table.GetCount(), 1000u);
    for (int& value : values) {
        if (value % 10 != 3) {
            EXPECT_EQ(table.Take(&value), &value);
        }
    }
    EXPECT_EQ(table.GetCount(), 100u);
    int next = 3;
    for (const int* value : table) {
        if (value != nullptr) {
            EXPECT_EQ(*value, next);
            next += 10;
        }
    }
    EXPECT_EQ(next, 1003);
    // What is left is found where it is now.
    EXPECT_EQ(table.Take(&values[3]), &values[3]);
    EXPECT_EQ(table.Take(&values[993]), &values[993]);
    EXPECT_EQ(table.Take(&values[3]), nullptr);
    EXPECT_EQ(table.GetCount(), 98u);
}

TEST(PointerTableTest, Places_AreGivenUpWhenMostAreEmpty) {
    std::vector<int> values(1000);
    PointerTable<int*> table;
    for (int& value : values) {
        table.Add(&value);
    }
    for (int& value : values) {
        table.Take(&value);
    }
    EXPECT_TRUE(table.IsEmpty());
    EXPECT_LT(std::distance(table.begin(), table.end()), 20);
}

TEST(PointerTableTest, WhatIsOwned_GoesToWhoTakesIt) {
    PointerTable<std::unique_ptr<int>> table;
    table.Add(std::make_unique<int>(1));
    table.Add(nullptr);
    table.Add(std::make_unique<int>(2));
    const int* const first = table.begin()->get();
    EXPECT_EQ(table.GetCount(), 2u);
    EXPECT_EQ(table.Take(nullptr), nullptr);
    EXPECT_EQ(*table.Take(first), 1);
    EXPECT_EQ(table.TakeAll().size(), 3u);
    EXPECT_TRUE(table.IsEmpty());
}

} // namespace
} // namespace Tolen::Effects::Tests

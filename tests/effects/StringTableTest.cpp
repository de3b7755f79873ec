#include "StringTable.h"

#include "TolenEffects/Module.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

namespace Tolen::Effects {
namespace {

TEST(StringTable, NamesGoAndStay_InAnyOrder) {
    std::unique_ptr<Module> maker(Module::Create(nullptr));
    std::vector<String*> strings;
    for (int i = 0; i < 5000; ++i) {
        strings.push_back(maker->CreateString("name"));
        ASSERT_TRUE(maker->RemoveString(strings.back()));
    }
    std::mt19937 random(1);
    std::shuffle(strings.begin(), strings.end(), random);

    StringTable table;
    for (String* string : strings) {
        EXPECT_FALSE(table.Remove(string));
        table.Insert(string);
    }
    std::shuffle(strings.begin(), strings.end(), random);
    for (std::size_t i = 0; i < strings.size(); i += 2) {
        EXPECT_TRUE(table.Remove(strings[i]));
        EXPECT_FALSE(table.Remove(strings[i]));
    }
    for (std::size_t i = 1; i < strings.size(); i += 2) {
        EXPECT_TRUE(table.Remove(strings[i]));
    }
    for (String* string : strings) {
        delete string;
    }
}

TEST(StringTable, EmptyTable_HasNothing) {
    StringTable table;
    EXPECT_FALSE(table.Remove(nullptr));
    std::unique_ptr<Module> maker(Module::Create(nullptr));
    EXPECT_FALSE(table.Remove(maker->CreateString("a")));
}

TEST(StringTable, Swap_MovesTheOwnership) {
    std::unique_ptr<Module> maker(Module::Create(nullptr));
    String* string = maker->CreateString("a");
    maker->RemoveString(string);
    StringTable first;
    first.Insert(string);
    StringTable second;
    second.Swap(first);
    EXPECT_FALSE(first.Remove(string));
    EXPECT_TRUE(second.Remove(string));
    second.Insert(string); // deleted with the table
}

} // namespace
} // namespace Tolen::Effects

#include "Definitions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <limits>
#include <random>

namespace Tolen::Effects {
namespace {

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

using Pairs = std::vector<std::pair<std::string, std::string>>;

std::string Substitute(const Pairs& pairs, const std::string& line) {
    Definitions definitions;
    for (const auto& [name, value] : pairs) {
        definitions.Define(name, value);
    }
    std::string text = line;
    EXPECT_TRUE(definitions.Substitute(text, kNoLimit));
    return text;
}

TEST(Definitions, OnlyWhatFollowsAName_DecidesWhetherItCounts) {
    struct Case {
        const char* line;
        const char* expected;
    };
    const Case cases[] = {
        {"", ""},       {"A", "x"},
        {"A;", "x;"},   {"AA", "Ax"},
        {"A A", "x x"}, {"A1", "A1"},
        {"A_", "A_"},   {"AB", "AB"},
        {"_A", "_x"},   {"BA+1", "Bx+1"},
        {"a", "a"},     {"\"A\" // A", "\"x\" // x"},
        {"A\r", "x\r"}, {"A\xc3\xa4", "x\xc3\xa4"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Substitute({{"A", "x"}}, c.line), c.expected) << c.line;
    }
}

TEST(Definitions, NewerPairs_AreReplacedFirst) {
    EXPECT_EQ(Substitute({{"A", "B"}, {"B", "1"}}, "A"), "B");
    EXPECT_EQ(Substitute({{"B", "1"}, {"A", "B"}}, "A"), "1");
    EXPECT_EQ(Substitute({{"A", "A"}, {"A", "A A"}}, "A"), "A A");
    EXPECT_EQ(Substitute({{"A", "1"}, {"A", "2"}}, "A"), "2");
}

TEST(Definitions, ASearchAfterAMatchThatDoesNotCount_GoesOnBehindTheValuesLength) {
    // The match that would count starts within the length of the value.
    EXPECT_EQ(Substitute({{"aa", "12"}}, "aab aaa"), "aab aaa");
    EXPECT_EQ(Substitute({{"aa", "12"}}, "aaa"), "aaa");
    EXPECT_EQ(Substitute({{"aa", "1"}}, "aaa"), "a1");
    EXPECT_EQ(Substitute({{"A", "12345678"}}, "AB A"), "AB A");
    EXPECT_EQ(Substitute({{"A", "123"}}, "AB A"), "AB 123");
}

TEST(Definitions, EmptyNamesAndValues_EndTheSearch) {
    EXPECT_EQ(Substitute({{"", "x"}}, "a b"), "a b");
    EXPECT_EQ(Substitute({{"", ""}}, ""), "");
    EXPECT_EQ(Substitute({{"A", ""}}, "AB A AB"), "AB  AB");
    EXPECT_EQ(Substitute({{"A", ""}}, "AAAB"), "AAAB");
    EXPECT_EQ(Substitute({{"A", "A"}}, "A A"), "A A");
}

TEST(Definitions, NamesOfAnyCharacters_AreReplaced) {
    EXPECT_EQ(Substitute({{"a+b", "1"}}, "a+b"), "1");
    EXPECT_EQ(Substitute({{"+", "-"}}, "a + b"), "a - b");
    EXPECT_EQ(Substitute({{"+", "-"}}, "a+b"), "a+b");
    EXPECT_EQ(Substitute({{"f(x)", "g"}}, "f(x)+f(x)y"), "g+f(x)y");
    EXPECT_EQ(Substitute({{"#", "1"}}, "# #x"), "1 #x");
}

TEST(Definitions, TheSet_AnswersWhetherANameIsDefined) {
    Definitions definitions;
    EXPECT_FALSE(definitions.IsDefined("A"));
    EXPECT_EQ(definitions.FindFirst("A"), nullptr);
    definitions.Define("A", "1");
    definitions.Define("A", "2");
    EXPECT_TRUE(definitions.IsDefined("A"));
    EXPECT_EQ(*definitions.FindFirst("A"), "1");
    definitions.EraseFirst("A");
    EXPECT_FALSE(definitions.IsDefined("A"));
    ASSERT_NE(definitions.FindFirst("A"), nullptr);
    EXPECT_EQ(*definitions.FindFirst("A"), "2");
    std::string line = "A";
    EXPECT_TRUE(definitions.Substitute(line, kNoLimit));
    EXPECT_EQ(line, "2") << "an older copy still substitutes";
    definitions.EraseFirst("A");
    definitions.EraseFirst("A");
    EXPECT_EQ(definitions.FindFirst("A"), nullptr);
    line = "A";
    EXPECT_TRUE(definitions.Substitute(line, kNoLimit));
    EXPECT_EQ(line, "A");
    definitions.Define("", "");
    EXPECT_TRUE(definitions.IsDefined(""));
}

TEST(Definitions, ALineThatOutgrowsTheLimit_IsRefused) {
    Definitions definitions;
    definitions.Define("A", "12345");
    std::string line = "A A";
    EXPECT_TRUE(definitions.Substitute(line, 11));
    EXPECT_EQ(line, "12345 12345");
    line = "A A";
    EXPECT_FALSE(definitions.Substitute(line, 10));
    line = "0123456789";
    EXPECT_FALSE(definitions.Substitute(line, 9));
    for (int i = 0; i < 200; ++i) {
        // The last one doubles sixty-four times over before it would end.
        definitions.Define("B" + std::to_string(199 - i),
                           i == 0 ? "x"
                                  : "B" + std::to_string(200 - i) + " B" + std::to_string(200 - i));
    }
    line = "B0";
    EXPECT_FALSE(definitions.Substitute(line, 1 << 20));
}

/// The same told by its definition alone.
std::string SubstitutePlainly(const Pairs& pairs, std::string line) {
    for (auto pair = pairs.rbegin(); pair != pairs.rend(); ++pair) {
        const auto& [name, value] = *pair;
        if (name.empty()) {
            continue;
        }
        for (std::size_t at = line.find(name); at != std::string::npos;) {
            const std::size_t end = at + name.size();
            const bool counts =
                end == line.size() ||
                (std::isalnum(static_cast<unsigned char>(line[end])) == 0 && line[end] != '_');
            if (counts) {
                line.replace(at, name.size(), value);
            }
            at = line.find(name, at + std::max<std::size_t>(value.size(), counts ? 0 : 1));
        }
    }
    return line;
}

TEST(Definitions, RandomPairsAndLines_GiveWhatTheDefinitionSays) {
    std::mt19937 random(7);
    const auto text = [&](int maxLength) {
        std::string word(random() % static_cast<unsigned>(maxLength + 1), ' ');
        for (char& c : word) {
            c = "aab_+ "[random() % 6];
        }
        return word;
    };
    for (int n = 0; n < 20000; ++n) {
        Pairs pairs(random() % 24);
        for (auto& [name, value] : pairs) {
            name = text(3);
            value = text(3);
        }
        const std::string line = text(16);
        const std::string plain = SubstitutePlainly(pairs, line);
        ASSERT_EQ(Substitute(pairs, line), plain) << "line " << n << ": " << line;
    }
}

TEST(Definitions, ManyPairsAndLongLines_AreSubstituted) {
    // As many pairs as thousands of files bring, and thousands of lines that use few of them.
    Definitions definitions;
    for (int i = 0; i < 20000; ++i) {
        definitions.Define("KL_DIFFERENTIALS_ENABLED", "1");
        definitions.Define("NAME_" + std::to_string(i), std::to_string(i));
    }
    for (int i = 0; i < 20000; ++i) {
        std::string line = "    color += NAME_5 * texture2D(map, uv) + vec3(0.5) * NAME_19999;";
        ASSERT_TRUE(definitions.Substitute(line, kNoLimit));
    }

    // One long line, with a name that nearly matches everywhere.
    Definitions periodic;
    periodic.Define(std::string(1000, 'a'), "1");
    std::string line(1 << 20, 'a');
    line += "b";
    ASSERT_TRUE(periodic.Substitute(line, kNoLimit));

    // One line that uses every name.
    Definitions many;
    std::string all;
    for (int i = 0; i < 2000; ++i) {
        many.Define("N" + std::to_string(i), "x");
        all += "N" + std::to_string(i) + " ";
    }
    ASSERT_TRUE(many.Substitute(all, kNoLimit));
    EXPECT_EQ(all.size(), 4000u);
}

} // namespace
} // namespace Tolen::Effects

#include "KslGrammar.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace Tolen::Effects {
namespace {

TEST(KslGrammar, Automaton_IsOfTheExpectedSizeAndNeverHasTwoRulesToChooseFrom) {
    const KslAutomaton& automaton = GetKslAutomaton();
    EXPECT_EQ(GetKslRules().size(), 291u);
    EXPECT_EQ(automaton.GetCountProductions(), 291u);
    EXPECT_EQ(automaton.GetCountStates(), 471u);
    EXPECT_EQ(automaton.GetCountNonterminals(), 103u);
    EXPECT_EQ(automaton.GetCountAmbiguousStates(), 0u);
    EXPECT_EQ(automaton.GetCountUndefinedSymbols(), 0u);
}

TEST(KslGrammar, InputMayEnd_InExactlyOneState) {
    const KslAutomaton& automaton = GetKslAutomaton();
    int accepting = 0;
    for (std::size_t state = 0; state < automaton.GetCountStates(); ++state) {
        accepting += automaton.IsAccepting(static_cast<std::int16_t>(state)) ? 1 : 0;
    }
    EXPECT_EQ(accepting, 1);
}

/// A grammar in which "class" may begin two things.
TEST(KslAutomaton, TwoFinishedRulesInOneState_AreCounted) {
    constexpr KslRule kRules[] = {{"file: a"}, {"file: b"}, {"a: class"}, {"b: class"}};
    const KslAutomaton automaton(kRules);
    EXPECT_EQ(automaton.GetCountAmbiguousStates(), 1u);
}

TEST(KslAutomaton, SymbolWithoutARule_IsCounted) {
    constexpr KslRule kRules[] = {{"file: a class"}};
    const KslAutomaton automaton(kRules);
    EXPECT_EQ(automaton.GetCountUndefinedSymbols(), 1u);
}

TEST(KslAutomaton, Marks_BecomeTheNestingOfTheStateBeforeThem) {
    constexpr KslRule kRules[] = {
        {"file: list"}, {"list: { @in list @out ; }"}, {"list: ( @group int_constant )"}, {"list:"}};
    const KslAutomaton automaton(kRules);
    const std::int16_t brace = automaton.GetShift(0, kToken_LeftBrace);
    const std::int16_t parenthesis = automaton.GetShift(0, kToken_LeftParenthesis);
    EXPECT_EQ(automaton.GetNesting(0), KslAutomaton::kNesting_Same);
    EXPECT_EQ(automaton.GetNesting(brace), KslAutomaton::kNesting_In);
    EXPECT_EQ(automaton.GetNesting(automaton.GetGoto(brace, automaton.GetProduction(1).left, kToken_Semicolon)),
              KslAutomaton::kNesting_Out);
    EXPECT_EQ(automaton.GetNesting(parenthesis), KslAutomaton::kNesting_Group);
    EXPECT_NE(automaton.GetShift(parenthesis, kToken_IntConstant), KslAutomaton::kNone);
    EXPECT_EQ(automaton.GetShift(parenthesis, kToken_LeftBrace), KslAutomaton::kNone);
    EXPECT_EQ(automaton.GetReduction(0), 3);
}

} // namespace
} // namespace Tolen::Effects

#pragma once

#include "KslToken.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace Tolen::Effects {

class KslReduction;

/// Makes the value of a rule's left side from the values of its right side. None leaves the value
/// of the first symbol in place.
using KslAction = void (*)(KslReduction&);

/// A production of the grammar.
///
/// The text reads "left: right right ..." with tokens by their spelling and one blank between
/// words. Marks say how the nesting of the source deepens:
/// - "@in": what stands behind it is one level deeper than the rule;
/// - "@operand": the same, but a group that stands there opens no level of its own;
/// - "@group": the same for the content of a group, which is a pair of parentheses;
/// - "@over": the rule's first symbol, which stands before the mark, is an operand in this sense;
/// - "@out": what stands behind it is one level up again.
struct KslRule {
    const char* text;
    KslAction action = nullptr;
};

/// The tables of the parsing machine, built from rules.
///
/// They are those of the plain LR(0) automaton, since that is all the language needs: in a state a
/// token is shifted if any item allows it, and otherwise the state's only finished rule is reduced
/// whatever the token is, be it one that turns out to be wrong after further reductions. The rule
/// of the start symbol, which must come first, is reduced at the end of the input only.
class KslAutomaton {
public:
    /// A rule as the machine needs it.
    struct Production {
        KslAction action = nullptr;
        std::int16_t left = 0;         ///< a nonterminal, counted from 0
        std::int16_t length = 0;       ///< symbols on the right
        std::int16_t deeperFrom = 0;   ///< symbols from this one on are a level deeper
        bool isDeeperOperand = false;  ///< they form an operand
        bool isOverFirst = false;      ///< the first symbol is an operand, a level deeper
        bool isGroup = false;          ///< the value is a group
        bool isUnit = false;           ///< one symbol, whose value is passed on
    };

    /// What the symbol of a state does to the nesting of what stands behind it.
    enum Nesting : std::uint8_t {
        kNesting_Same,
        kNesting_In,
        kNesting_Operand,
        kNesting_Group,
        kNesting_Out,
    };

    static constexpr std::int16_t kNone = -1;

    explicit KslAutomaton(std::span<const KslRule> rules);

    /// The state behind @p token in @p state; kNone when it isn't shifted there.
    std::int16_t GetShift(std::int16_t state, int token) const {
        return _shifts[_states[Index(state)].shiftRow + static_cast<std::size_t>(token)];
    }
    /// The production that @p state reduces when a token isn't shifted; kNone for an error.
    std::int16_t GetReduction(std::int16_t state) const { return _states[Index(state)].reduction; }
    /// The state behind the nonterminal @p left in @p state when @p token follows. Units that would
    /// be reduced there, more than a dozen for most operands, count as reduced.
    std::int16_t GetGoto(std::int16_t state, std::int16_t left, int token) const {
        const Goto& target = _gotos[_states[Index(state)].gotoRow + Index(left)];
        return target.unitRow == kNoRow
                   ? target.state
                   : _unitTargets[target.unitRow + static_cast<std::size_t>(token)];
    }
    /// Whether the input may end in @p state.
    bool IsAccepting(std::int16_t state) const { return state == _accepting; }
    Nesting GetNesting(std::int16_t state) const { return _states[Index(state)].nesting; }
    const Production& GetProduction(std::int16_t production) const {
        return _productions[Index(production)];
    }

    std::size_t GetCountStates() const { return _states.size(); }
    std::size_t GetCountProductions() const { return _productions.size(); }
    std::size_t GetCountNonterminals() const { return _countNonterminals; }
    /// States in which two rules are finished, so that one of them could never be reduced.
    std::size_t GetCountAmbiguousStates() const { return _countAmbiguousStates; }
    /// Symbols that are neither tokens nor the left side of a rule.
    std::size_t GetCountUndefinedSymbols() const { return _countUndefinedSymbols; }

private:
    friend class KslAutomatonBuilder;

    static constexpr std::uint32_t kNoRow = UINT32_MAX;

    struct State {
        std::uint32_t shiftRow;
        std::uint32_t gotoRow;
        std::int16_t reduction;
        Nesting nesting;
    };
    struct Goto {
        std::int16_t state = kNone;
        std::uint32_t unitRow = kNoRow; ///< of the states to go on to, where there are units
    };

    static std::size_t Index(std::int16_t number) { return static_cast<std::size_t>(number); }

    std::vector<State> _states;
    std::vector<std::int16_t> _shifts;      ///< rows by token; equal rows are held once
    std::vector<Goto> _gotos;               ///< rows by nonterminal; equal rows are held once
    std::vector<std::int16_t> _unitTargets; ///< rows by token
    std::vector<Production> _productions; ///< by rule
    std::int16_t _accepting = kNone;
    std::size_t _countNonterminals = 0;
    std::size_t _countAmbiguousStates = 0;
    std::size_t _countUndefinedSymbols = 0;
};

} // namespace Tolen::Effects

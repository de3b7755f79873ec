#pragma once

#include "KslAutomaton.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string_view>
#include <vector>

namespace Tolen::Effects {

/// Builds the tables of a KslAutomaton: reads the rules, makes the states as sets of items, and
/// packs their transitions. It serves one automaton, which it fills while it is constructed.
class KslAutomatonBuilder {
public:
    KslAutomatonBuilder(KslAutomaton& automaton, std::span<const KslRule> rules);

private:
    /// A token, or kToken_Count and up for the nonterminals.
    using Symbol = std::int16_t;
    /// A place in the right side of a rule: an index into _items.
    using Item = std::int16_t;
    using Items = std::vector<Item>;
    using Row = std::vector<std::int16_t>;
    using Nesting = KslAutomaton::Nesting;

    struct Place {
        Symbol next; ///< the symbol at the place; kNone behind the last one
        std::int16_t rule;
        Nesting nesting; ///< of what stands from here on
    };

    static constexpr std::int16_t kNone = KslAutomaton::kNone;

    void _ReadRules(std::span<const KslRule> rules);
    void _ReadRule(const KslRule& rule);
    Symbol _SymbolOf(std::string_view name);
    void _CountUndefinedSymbols();

    /// The state whose items, before they are closed, are @p kernel; made when it is new.
    std::int16_t _StateOf(const Items& kernel);
    void _ExpandState(std::int16_t state, const Items& kernel);
    /// @p kernel and the starts of all rules that may begin at one of its places.
    Items _Close(const Items& kernel);

    /// Finds, for each nonterminal in each row of gotos, where units lead on from there.
    void _FollowUnits();
    std::uint32_t _UnitRowOf(std::size_t gotoRow, std::int16_t left);

    KslAutomaton& _automaton;
    std::map<std::string_view, Symbol> _nonterminals;
    std::vector<Items> _starts;              ///< by nonterminal: the starts of its rules
    std::vector<Place> _items;
    std::map<Items, std::int16_t> _states;   ///< by kernel
    std::vector<const Items*> _kernels;      ///< by state; the keys of _states
    std::map<Row, std::uint32_t> _shiftRows; ///< by content: where the row is in the table
    std::map<Row, std::uint32_t> _gotoRows;
    std::vector<std::uint32_t> _closedBy;    ///< by nonterminal: the last _Close that entered it
    std::uint32_t _closures = 0;
};

} // namespace Tolen::Effects

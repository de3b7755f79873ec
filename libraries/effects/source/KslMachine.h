#pragma once

#include "KslAutomaton.h"
#include "KslStackEntry.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace Tolen::Effects {

class KslParser;

/// The parsing machine: takes one token a call, keeps the stack, and runs the actions of the
/// grammar.
///
/// A rule is reduced when the token behind it has arrived. A token that can't stand where it comes
/// is dropped with a report, and further ones are dropped in silence until three have been shifted.
/// Where the source nests deeper than kLimitNesting, the machine reports it and takes nothing more.
/// Nodes that are left on the stack when a parse fails are deleted.
class KslMachine {
public:
    /// @param parser borrowed; makes the nodes and takes the reports
    explicit KslMachine(KslParser* parser);
    ~KslMachine();
    KslMachine(const KslMachine&) = delete;
    KslMachine& operator=(const KslMachine&) = delete;

    /// @param code one of KslToken, with kToken_End for the end of the input
    void Parse(int code, const Token& token);

private:
    using Entry = KslStackEntry;
    using Production = KslAutomaton::Production;

    Entry& _At(std::int32_t index) { return _stack[static_cast<std::size_t>(index)]; }

    bool _Start();
    void _Shift(std::int16_t state, const Token& token);
    bool _Reduce(const Production& production, int code);
    bool _EnterState(std::int16_t state);
    int _MeasureHeight(const Production& production, const Entry* entries) const;
    void _Refuse(int code);
    void _RefuseNesting();
    bool _Push();
    bool _Grow();
    void _PopAll();

    const KslAutomaton& _automaton;
    std::int32_t _top = -1;          ///< index of the last entry; -1 without one
    std::int32_t _errorCounter = -1; ///< tokens to be shifted until errors are reported again
    KslParser* _pParser;             ///< borrowed
    std::int32_t _capacity = 0;
    std::unique_ptr<Entry[]> _stack;
    bool _isStopped = false; ///< the source nests too deep; nothing more is taken
};

} // namespace Tolen::Effects

#include "KslAutomatonBuilder.h"

#include <algorithm>
#include <limits>

namespace Tolen::Effects {

namespace {

/// Cuts words off the front of a rule's text.
class WordReader {
public:
    explicit WordReader(std::string_view text) : _text(text) {}

    /// The next word; empty at the end.
    std::string_view Next() {
        const std::size_t length = std::min(_text.find(' '), _text.size());
        const std::string_view word = _text.substr(0, length);
        _text.remove_prefix(std::min(length + 1, _text.size()));
        return word;
    }

private:
    std::string_view _text;
};

/// Whether a rule calls the token with the text @p text by @p name: blanks become underscores.
bool IsNameOfToken(std::string_view name, std::string_view text) {
    return std::equal(name.begin(), name.end(), text.begin(), text.end(),
                      [](char a, char b) { return a == b || (a == '_' && b == ' '); });
}

KslAutomaton::Nesting NestingOfMark(std::string_view mark) {
    if (mark == "@operand") {
        return KslAutomaton::kNesting_Operand;
    }
    if (mark == "@group") {
        return KslAutomaton::kNesting_Group;
    }
    return mark == "@out" ? KslAutomaton::kNesting_Out : KslAutomaton::kNesting_In;
}

/// Appends @p row to @p table, unless an equal one is there. @return where it starts
template <class Entry>
std::uint32_t EnterRow(std::map<std::vector<std::int16_t>, std::uint32_t>& rows,
                       std::vector<Entry>& table, const std::vector<std::int16_t>& row) {
    const auto [entry, isNew] = rows.emplace(row, static_cast<std::uint32_t>(table.size()));
    if (isNew) {
        for (const std::int16_t state : row) {
            table.push_back(Entry{state});
        }
    }
    return entry->second;
}

} // namespace

KslAutomatonBuilder::KslAutomatonBuilder(KslAutomaton& automaton, std::span<const KslRule> rules)
    : _automaton(automaton) {
    _ReadRules(rules);
    _closedBy.assign(_starts.size(), 0);
    _StateOf(_starts.front());
    for (std::size_t state = 0; state < _kernels.size(); ++state) {
        _ExpandState(static_cast<std::int16_t>(state), *_kernels[state]);
    }
    _FollowUnits();
}

void KslAutomatonBuilder::_ReadRules(std::span<const KslRule> rules) {
    for (const KslRule& rule : rules) {
        _ReadRule(rule);
    }
    _automaton._countNonterminals = _starts.size();
    _CountUndefinedSymbols();
}

void KslAutomatonBuilder::_ReadRule(const KslRule& rule) {
    WordReader words(rule.text);
    std::string_view left = words.Next();
    left.remove_suffix(1); // the colon

    const std::int16_t number = static_cast<std::int16_t>(_automaton._productions.size());
    KslAutomaton::Production production;
    production.action = rule.action;
    production.left = static_cast<std::int16_t>(_SymbolOf(left) - kToken_Count);
    const std::size_t start = _items.size();

    production.deeperFrom = std::numeric_limits<std::int16_t>::max();
    Nesting nesting = KslAutomaton::kNesting_Same;
    for (std::string_view word = words.Next(); !word.empty(); word = words.Next()) {
        if (word == "@over") {
            production.isOverFirst = true;
        } else if (word.front() == '@') {
            nesting = NestingOfMark(word);
            if (nesting != KslAutomaton::kNesting_Out) {
                production.deeperFrom = production.length;
            }
            production.isDeeperOperand = nesting == KslAutomaton::kNesting_Operand;
            production.isGroup = nesting == KslAutomaton::kNesting_Group;
        } else {
            _items.push_back({_SymbolOf(word), number, nesting});
            ++production.length;
            nesting = KslAutomaton::kNesting_Same;
        }
    }
    _items.push_back({kNone, number, nesting});
    production.isUnit = production.length == 1 && production.action == nullptr;
    _automaton._productions.push_back(production);
    _starts[static_cast<std::size_t>(production.left)].push_back(static_cast<Item>(start));
}

KslAutomatonBuilder::Symbol KslAutomatonBuilder::_SymbolOf(std::string_view name) {
    for (int token = kToken_End + 1; token < kToken_Count; ++token) {
        if (IsNameOfToken(name, kTokenTexts[token])) {
            return static_cast<Symbol>(token);
        }
    }
    const std::size_t next = kToken_Count + _nonterminals.size();
    const auto [entry, isNew] = _nonterminals.emplace(name, static_cast<Symbol>(next));
    if (isNew) {
        _starts.emplace_back();
    }
    return entry->second;
}

void KslAutomatonBuilder::_CountUndefinedSymbols() {
    const auto undefined = [](const Items& starts) { return starts.empty(); };
    _automaton._countUndefinedSymbols =
        static_cast<std::size_t>(std::count_if(_starts.begin(), _starts.end(), undefined));
}

std::int16_t KslAutomatonBuilder::_StateOf(const Items& kernel) {
    const auto [entry, isNew] =
        _states.emplace(kernel, static_cast<std::int16_t>(_kernels.size()));
    if (isNew) {
        _kernels.push_back(&entry->first);
    }
    return entry->second;
}

void KslAutomatonBuilder::_ExpandState(std::int16_t state, const Items& kernel) {
    Nesting nesting = KslAutomaton::kNesting_Same;
    for (const Item item : kernel) {
        nesting = std::max(nesting, _items[static_cast<std::size_t>(item)].nesting);
    }

    // Sort the items by what they expect next.
    std::map<Symbol, Items> successors;
    std::int16_t reduction = kNone;
    for (const Item item : _Close(kernel)) {
        const Place& place = _items[static_cast<std::size_t>(item)];
        if (place.next != kNone) {
            successors[place.next].push_back(static_cast<Item>(item + 1));
        } else if (place.rule == 0) {
            _automaton._accepting = state;
        } else {
            _automaton._countAmbiguousStates += reduction != kNone ? 1 : 0;
            reduction = place.rule;
        }
    }

    Row shifts(kToken_Count, kNone);
    Row gotos(_starts.size(), kNone);
    for (auto& [symbol, items] : successors) {
        std::sort(items.begin(), items.end());
        const std::int16_t next = _StateOf(items);
        if (symbol < kToken_Count) {
            shifts[static_cast<std::size_t>(symbol)] = next;
        } else {
            gotos[static_cast<std::size_t>(symbol - kToken_Count)] = next;
        }
    }
    _automaton._states.push_back({EnterRow(_shiftRows, _automaton._shifts, shifts),
                                  EnterRow(_gotoRows, _automaton._gotos, gotos), reduction,
                                  nesting});
}

KslAutomatonBuilder::Items KslAutomatonBuilder::_Close(const Items& kernel) {
    ++_closures;
    Items items = kernel;
    for (std::size_t index = 0; index < items.size(); ++index) {
        const Symbol next = _items[static_cast<std::size_t>(items[index])].next;
        if (next < kToken_Count) {
            continue;
        }
        const std::size_t nonterminal = static_cast<std::size_t>(next - kToken_Count);
        if (_closedBy[nonterminal] != _closures) {
            _closedBy[nonterminal] = _closures;
            const Items& starts = _starts[nonterminal];
            items.insert(items.end(), starts.begin(), starts.end());
        }
    }
    return items;
}

void KslAutomatonBuilder::_FollowUnits() {
    for (const auto& [row, start] : _gotoRows) {
        for (std::size_t left = 0; left < row.size(); ++left) {
            _UnitRowOf(start, static_cast<std::int16_t>(left));
        }
    }
}

std::uint32_t KslAutomatonBuilder::_UnitRowOf(std::size_t gotoRow, std::int16_t left) {
    const std::size_t index = gotoRow + static_cast<std::size_t>(left);
    const auto [state, knownRow] = _automaton._gotos[index];
    if (state == kNone || knownRow != KslAutomaton::kNoRow) {
        return knownRow;
    }
    const std::int16_t reduction = _automaton.GetReduction(state);
    if (reduction == kNone || !_automaton.GetProduction(reduction).isUnit) {
        return KslAutomaton::kNoRow;
    }

    // Tokens that aren't shifted in the state go where they go behind its unit.
    const std::int16_t next = _automaton.GetProduction(reduction).left;
    const std::uint32_t nextRow = _UnitRowOf(gotoRow, next);
    const std::int16_t nextState = _automaton._gotos[gotoRow + static_cast<std::size_t>(next)].state;
    const std::uint32_t row = static_cast<std::uint32_t>(_automaton._unitTargets.size());
    for (int token = 0; token < kToken_Count; ++token) {
        std::int16_t target = state;
        if (_automaton.GetShift(state, token) == kNone) {
            target = nextRow == KslAutomaton::kNoRow
                         ? nextState
                         : _automaton._unitTargets[nextRow + static_cast<std::size_t>(token)];
        }
        _automaton._unitTargets.push_back(target);
    }
    _automaton._gotos[index].unitRow = row;
    return row;
}

} // namespace Tolen::Effects

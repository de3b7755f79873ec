#include "KslMachine.h"

#include "KslGrammar.h"
#include "KslParser.h"
#include "KslReduction.h"

#include "TolenEffects/Limits.h"

#include <algorithm>
#include <new>
#include <string>

namespace Tolen::Effects {

namespace {

constexpr std::int16_t kStateStart = 0;

/// Entries of the first stack.
constexpr std::int32_t kCapacityStart = 100;

/// Tokens to be shifted behind an error before the next one is worth a report.
constexpr std::int32_t kErrorDistance = 3;

} // namespace

KslMachine::KslMachine(KslParser* parser) : _automaton(GetKslAutomaton()), _pParser(parser) {}

KslMachine::~KslMachine() { _PopAll(); }

void KslMachine::Parse(int code, const Token& token) {
    if (_isStopped || (_top < 0 && !_Start())) {
        return;
    }
    for (;;) {
        const std::int16_t state = _At(_top).state;
        const std::int16_t next = _automaton.GetShift(state, code);
        if (next != KslAutomaton::kNone) {
            return _Shift(next, token);
        }
        const std::int16_t reduction = _automaton.GetReduction(state);
        if (reduction == KslAutomaton::kNone) {
            break;
        }
        if (!_Reduce(_automaton.GetProduction(reduction), code)) {
            return;
        }
    }
    if (code == kToken_End && _automaton.IsAccepting(_At(_top).state)) {
        _PopAll();
    } else {
        _Refuse(code);
    }
}

bool KslMachine::_Start() {
    if (!_Push()) {
        return false;
    }
    _At(_top) = Entry();
    _At(_top).state = kStateStart;
    _errorCounter = -1;
    return true;
}

void KslMachine::_Shift(std::int16_t state, const Token& token) {
    if (!_Push()) {
        return;
    }
    Entry& entry = _At(_top);
    entry.token = token;
    entry.ownsNode = false;
    entry.isGroup = false;
    entry.height = 0;
    --_errorCounter;
    _EnterState(state);
}

bool KslMachine::_Reduce(const Production& production, int code) {
    if (production.length == 0) {
        if (!_Push()) {
            return false;
        }
        _At(_top) = Entry();
    } else {
        _top -= production.length - 1;
    }

    // The value takes the place of the first symbol. What stands above it is given up: the action
    // has taken the nodes there.
    Entry* const entries = &_At(_top);
    const int height = _MeasureHeight(production, entries);
    if (production.action != nullptr) {
        KslReduction reduction(*_pParser, entries);
        production.action(reduction);
    }
    entries->height = height;
    entries->isGroup = production.isGroup;

    const Entry& below = _At(_top - 1);
    if (production.isOverFirst && below.depth + height > kLimitNesting) {
        _RefuseNesting();
        return false;
    }
    return _EnterState(_automaton.GetGoto(below.state, production.left, code));
}

bool KslMachine::_EnterState(std::int16_t state) {
    Entry& entry = _At(_top);
    const Entry& below = _At(_top - 1);
    entry.state = state;
    entry.depth = below.depth;
    switch (_automaton.GetNesting(state)) {
    case KslAutomaton::kNesting_Same:
        return true;
    case KslAutomaton::kNesting_Out:
        --entry.depth;
        return true;
    case KslAutomaton::kNesting_Group:
        if (_automaton.GetNesting(below.state) == KslAutomaton::kNesting_Operand) {
            return true;
        }
        break;
    case KslAutomaton::kNesting_In:
    case KslAutomaton::kNesting_Operand:
        break;
    }
    ++entry.depth;
    if (entry.depth > kLimitNesting) {
        _RefuseNesting();
        return false;
    }
    return true;
}

int KslMachine::_MeasureHeight(const Production& production, const Entry* entries) const {
    int height = 0;
    for (int index = 0; index < production.length; ++index) {
        const Entry& entry = entries[index];
        const bool isOperand =
            index >= production.deeperFrom ? production.isDeeperOperand : production.isOverFirst;
        const bool isDeeper = index >= production.deeperFrom ||
                              (index == 0 && production.isOverFirst);
        height = std::max(height, entry.height + (isDeeper && !(isOperand && entry.isGroup)));
    }
    return height;
}

void KslMachine::_Refuse(int code) {
    if (_errorCounter <= 0) {
        std::string message = "Syntax Error.";
        _pParser->Error(message);
    }
    _errorCounter = kErrorDistance;
    if (code == kToken_End) {
        _PopAll();
        std::string message = "Parse Failure.";
        _pParser->Error(message);
    }
}

void KslMachine::_RefuseNesting() {
    std::string message = "The source exceeds the nesting limit of " +
                          std::to_string(kLimitNesting) +
                          " levels of expressions, statements and blocks.";
    _pParser->Error(message);
    _PopAll();
    _isStopped = true;
}

bool KslMachine::_Push() {
    if (_top + 1 == _capacity && !_Grow()) {
        _PopAll();
        return false;
    }
    ++_top;
    return true;
}

bool KslMachine::_Grow() {
    const std::int32_t capacity = 2 * _capacity + kCapacityStart;
    std::unique_ptr<Entry[]> stack(new (std::nothrow) Entry[static_cast<std::size_t>(capacity)]);
    if (stack == nullptr) {
        return false;
    }
    std::copy_n(_stack.get(), _capacity, stack.get());
    _stack = std::move(stack);
    _capacity = capacity;
    return true;
}

void KslMachine::_PopAll() {
    for (; _top >= 0; --_top) {
        if (_At(_top).ownsNode) {
            delete _At(_top).token.value.node;
        }
    }
}

} // namespace Tolen::Effects

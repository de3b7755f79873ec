#pragma once

#include "KslParser.h"
#include "KslStackEntry.h"

#include <cstdint>

namespace Tolen::Effects {

/// What the action of a rule sees: the values of the rule's right side, counted from 0, and the
/// place for the value of its left side, which is that of the first symbol until the action sets
/// it. Read all values before setting the result.
class KslReduction {
public:
    /// @param entries the right side, or a single empty entry when there is none
    KslReduction(KslParser& parser, KslStackEntry* entries)
        : _parser(parser), _pEntries(entries) {}

    KslParser& GetParser() const { return _parser; }

    const LocationRange& GetRange(int index) const { return _pEntries[index].token.range; }
    std::int32_t GetInteger(int index) const { return _pEntries[index].token.value.integer; }
    bool GetBool(int index) const { return _pEntries[index].token.value.boolean; }
    String* GetString(int index) const { return _pEntries[index].token.value.string; }
    template <class Enumeration>
    Enumeration GetEnumerator(int index) const {
        return static_cast<Enumeration>(GetInteger(index));
    }
    /// The node at @p index, which must be a @p Node or null. It goes to whoever takes it.
    template <class Node>
    Node* GetNode(int index) const {
        return static_cast<Node*>(_pEntries[index].token.value.node);
    }

    void SetNothing() { SetNode(nullptr); }
    /// The result is @p node, which goes to the machine, with the range that it has now.
    void SetNode(Syntax* node) {
        _SetValue({.node = node}, node != nullptr);
        _pEntries->token.range = node != nullptr ? node->GetRange() : LocationRange();
    }
    /// The result is @p value with the range of the first symbol, if there is one.
    void SetEnumerator(std::int32_t value) { _SetValue({.integer = value}, false); }
    /// The result is the value of the symbol at @p index.
    void SetValueOf(int index) {
        const KslStackEntry& entry = _pEntries[index];
        _SetValue(entry.token.value, entry.ownsNode);
        _pEntries->token.range = entry.token.range;
    }

private:
    void _SetValue(Token::Value value, bool ownsNode) {
        _pEntries->token.value = value;
        _pEntries->ownsNode = ownsNode;
    }

    KslParser& _parser;
    KslStackEntry* _pEntries;
};

} // namespace Tolen::Effects

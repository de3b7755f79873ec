#pragma once

#include "TolenEffects/Visitor.h"

#include "TolenCore/FastDelegate.h"

#include <type_traits>
#include <utility>

/// Visitors that call a delegate for each node of one kind, children first.
///
/// A delegate that answers false ends the walk of the tree above only as far as the nearest
/// enclosing node of the same kind: that node's own delegate is called still, and its answer
/// counts.

namespace Tolen::Effects {

/// Whether a visitor that overrides the visit of Node alone may follow long lines of nodes.
template <class Node>
constexpr Visitor::ChainWalk ChainWalkBeside() {
    return std::is_same_v<Node, BinaryOperator> || std::is_same_v<Node, SelectionStatement>
               ? Visitor::kChainWalk_EachNode
               : Visitor::kChainWalk_Iterated;
}

/// @tparam Slot TIParentSyntax of Expression or Statement, whichever Node is
template <class Node, class Slot>
class TVisitorSyntaxDelegate final : public Visitor {
public:
    using Delegate = fastdelegate::FastDelegate2<Node*, Slot*, bool>;

    explicit TVisitorSyntaxDelegate(const Delegate& delegate)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate) {}

    using Visitor::Visit;
    bool Visit(Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot);
    }

private:
    Delegate _delegate;
};

/// The same for the reading walk. @tparam Slot TParentSyntaxConst of Expression or Statement
template <class Node, class Slot>
class TVisitorSyntaxConstDelegate final : public Visitor {
public:
    using Delegate = fastdelegate::FastDelegate2<const Node*, Slot*, bool>;

    explicit TVisitorSyntaxConstDelegate(const Delegate& delegate)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate) {}

    using Visitor::Visit;
    bool Visit(const Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot);
    }

private:
    Delegate _delegate;
};

/// As TVisitorSyntaxDelegate, with a value that is handed to the delegate behind the slot.
template <class Node, class Slot, class Extra>
class TVisitorSyntaxDelegate1 final : public Visitor {
public:
    using Delegate = fastdelegate::FastDelegate3<Node*, Slot*, Extra, bool>;

    TVisitorSyntaxDelegate1(const Delegate& delegate, Extra extra)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate), _extra(std::move(extra)) {}

    using Visitor::Visit;
    bool Visit(Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot, _extra);
    }

private:
    Delegate _delegate;
    Extra _extra;
};

} // namespace Tolen::Effects

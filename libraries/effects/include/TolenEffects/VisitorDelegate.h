#pragma once

/// @file
/// Visitors that call a delegate for each node of one kind, children first.
///
/// A delegate that answers false ends the walk of the tree above only as far as the nearest
/// enclosing node of the same kind: that node's own delegate is called still, and its answer
/// counts.

#include "TolenEffects/Visitor.h"

#include "TolenCore/FastDelegate.h"

#include <type_traits>
#include <utility>

namespace Tolen::Effects {

/// How a visitor that overrides the visit of Node alone may follow long lines of nodes.
/// @tparam Node a class of nodes
template <class Node>
constexpr Visitor::ChainWalk ChainWalkBeside() {
    return std::is_same_v<Node, BinaryOperator> || std::is_same_v<Node, SelectionStatement>
               ? Visitor::kChainWalk_EachNode
               : Visitor::kChainWalk_Iterated;
}

/// Calls a delegate for each node of one kind in the mutating walk, after the node's children.
///
/// @tparam Node a class of expressions or statements
/// @tparam Slot TIParentSyntax of Expression or Statement, whichever Node is
template <class Node, class Slot>
class TVisitorSyntaxDelegate final : public Visitor {
public:
    /// What is called with a node, and the slot through which it can be replaced.
    using Delegate = fastdelegate::FastDelegate2<Node*, Slot*, bool>;

    /// A visitor that calls @p delegate, of which it keeps a copy.
    explicit TVisitorSyntaxDelegate(const Delegate& delegate)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate) {}

    using Visitor::Visit;
    /// Visits the children of @p node, then calls the delegate. @return its answer
    bool Visit(Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot);
    }

private:
    Delegate _delegate;
};

/// Calls a delegate for each node of one kind in the reading walk, after the node's children.
///
/// @tparam Node a class of expressions or statements
/// @tparam Slot TParentSyntaxConst of Expression or Statement, whichever Node is
template <class Node, class Slot>
class TVisitorSyntaxConstDelegate final : public Visitor {
public:
    /// What is called with a node, and the slot that tells its parent.
    using Delegate = fastdelegate::FastDelegate2<const Node*, Slot*, bool>;

    /// A visitor that calls @p delegate, of which it keeps a copy.
    explicit TVisitorSyntaxConstDelegate(const Delegate& delegate)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate) {}

    using Visitor::Visit;
    /// Visits the children of @p node, then calls the delegate. @return its answer
    bool Visit(const Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot);
    }

private:
    Delegate _delegate;
};

/// As TVisitorSyntaxDelegate, with a value that is handed to the delegate behind the slot.
///
/// @tparam Node  a class of expressions or statements
/// @tparam Slot  TIParentSyntax of Expression or Statement, whichever Node is
/// @tparam Extra the type of the value
template <class Node, class Slot, class Extra>
class TVisitorSyntaxDelegate1 final : public Visitor {
public:
    /// What is called with a node, the slot through which it can be replaced, and the value.
    using Delegate = fastdelegate::FastDelegate3<Node*, Slot*, Extra, bool>;

    /// A visitor that calls @p delegate, of which it keeps a copy, with @p extra.
    TVisitorSyntaxDelegate1(const Delegate& delegate, Extra extra)
        : Visitor(ChainWalkBeside<Node>()), _delegate(delegate), _extra(std::move(extra)) {}

    using Visitor::Visit;
    /// Visits the children of @p node, then calls the delegate. @return its answer
    bool Visit(Node* node, Slot* slot) override {
        Visitor::Visit(node, slot);
        return _delegate(node, slot, _extra);
    }

private:
    Delegate _delegate;
    Extra _extra;
};

} // namespace Tolen::Effects

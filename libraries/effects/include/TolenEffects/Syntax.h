#pragma once

/// @file
/// The common ground of the syntax tree: source ranges, names and the base of all nodes.
///
/// Nodes are made only by the Create operations of a Module and belong to it; a module never shares
/// a node with another. A parent owns its children. A node that has no parent yet belongs to
/// whoever made it and is then deleted with `delete`; no node may outlive its module.
///
/// Along two lines a tree may be of any depth: the left operands of BinaryOperator (`a + b + c`)
/// and the else branches of SelectionStatement. Everything here that goes through a tree follows
/// these lines without recursion, and trees of every shape are destroyed without it. Elsewhere the
/// depth is bounded by kLimitNesting, which the parser enforces.

#include "TolenEffects/SyntaxTypes.h"

#include "TolenCore/Export.h"
#include "TolenCore/TrivialBase.h"

#include <cstdint>
#include <memory>
#include <string>

namespace Tolen::Effects {

class Module;
class Visitor;
template <class T>
class TIParentSyntax;
template <class T>
class TParentSyntaxConst;

/// Where a node stands in its source file. Lines count from 1; 0 throughout in a range never set.
struct LocationRange {
    const std::string* file = nullptr; ///< the file's name, borrowed from the parser's caller
    std::int32_t firstLine = 0;        ///< of its first character
    std::int32_t firstColumn = 0;      ///< of its first character
    std::int32_t lastLine = 0;         ///< of its last character
    std::int32_t lastColumn = 0;       ///< of its last character

    /// Whether both are the same range of the same text; files are compared by address.
    bool operator==(const LocationRange&) const = default;
};

/// The base of every node.
class TOLEN_EXPORT Syntax : public TrivialBase<AllocationDummy> {
public:
    virtual ~Syntax();
    /// The kind of the node, by which it may be cast down.
    virtual Class GetClass() const = 0;

    Syntax& operator=(const Syntax&) = delete;

    /// Where the node stands.
    LocationRange GetRange() const { return _range; }
    /// Forgets where the node stands.
    void ClearRange() { _range = LocationRange(); }
    /// Lets the node stand at @p range.
    void SetRange(const LocationRange& range) { _range = range; }
    /// Lets the node stand where @p node does.
    void SetRange(const Syntax* node) { _range = node->_range; }

    /// Lets the range go from the start of @p first to the end of @p last. The file is that of
    /// @p last, or that of @p first where @p last has none.
    void SetRange(const LocationRange& first, const LocationRange& last);
    /// Lets the range go from the start of @p first to the end of the node @p last.
    void SetRange(const LocationRange& first, const Syntax* last) { SetRange(first, last->_range); }
    /// Lets the range go from the start of the node @p first to the end of @p last.
    void SetRange(const Syntax* first, const LocationRange& last) { SetRange(first->_range, last); }
    /// Lets the range go from the start of the node @p first to the end of the node @p last.
    void SetRange(const Syntax* first, const Syntax* last) {
        SetRange(first->_range, last->_range);
    }

    /// Lets the range end where @p other ends, in the file of @p other if it has one.
    void ExpandRange(const Syntax* other) { SetRange(_range, other->_range); }

protected:
    Syntax() = default;
    /// A copy of the range.
    Syntax(const Syntax&) = default;

private:
    LocationRange _range;
};

/// A name in a tree, owned by its Module. Each use of a name has a String of its own: two nodes
/// must not hold the same one.
class TOLEN_EXPORT String : public TrivialBase<AllocationDummy> {
public:
    virtual ~String();
    /// A copy that belongs to @p target.
    virtual String* Clone(Module* target) const;

    String(const String&) = delete;
    String& operator=(const String&) = delete;

    /// The text, which may be changed in place.
    std::string& GetString() { return _text; }
    /// The text.
    const std::string& GetString() const { return _text; }
    /// Replaces the text.
    void SetString(const std::string& text) { _text = text; }

    /// Whether @p other, which may be null, has exactly the same text.
    bool Equals(const String* other) const;
    /// Puts @p prefix before the text.
    void AddPrefix(const char* prefix) { _text.insert(0, prefix); }

private:
    friend class Module;
    friend struct StringCreationOrder;

    String(const char* text, std::uint64_t serial) : _text(text), _serial(serial) {}

    std::string _text;
    std::uint64_t _serial; ///< rises with each String of the module
};

/// Orders the strings of one module by their making, so that walks are the same in every run.
struct StringCreationOrder {
    /// Whether @p a was made before @p b.
    bool operator()(const String* a, const String* b) const { return a->_serial < b->_serial; }
};

/// What the concrete nodes of one family answer alike.
///
/// @tparam Node   the node class itself
/// @tparam kClass its kind
/// @tparam Family Expression or Statement, whose visits come with a parent slot
/// @tparam Base   what the node class derives from
template <class Node, Class kClass, class Family, class Base = Family>
class TSlottedNode : public Base {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass; }
    /// The kind of the node.
    Class GetClass() const override { return kClass; }
    /// Calls the reading Visit of @p visitor for this class. @return its answer
    bool AcceptVisitor(Visitor* visitor, TParentSyntaxConst<Family>* slot) const override;
    /// Calls the mutating Visit of @p visitor for this class. @return its answer
    bool AcceptVisitor(Visitor* visitor, TIParentSyntax<Family>* slot) override;

protected:
    using Base::Base;
};

/// What the nodes that are visited without a slot answer alike.
///
/// @tparam Node   the node class itself
/// @tparam kClass its kind
/// @tparam Base   what the node class derives from
template <class Node, Class kClass, class Base>
class TPlainNode : public Base {
public:
    /// The kind that GetClass answers, known without a node.
    static constexpr Class ClassStatic() { return kClass; }
    /// The kind of the node.
    Class GetClass() const override { return kClass; }
    /// Calls the reading Visit of @p visitor for this class. @return its answer
    bool AcceptVisitor(Visitor* visitor) const override;
    /// Calls the mutating Visit of @p visitor for this class. @return its answer
    bool AcceptVisitor(Visitor* visitor) override;

protected:
    using Base::Base;
};

} // namespace Tolen::Effects

#pragma once

/// @file
/// Parent slots: where an expression or a statement hangs while a walk visits it, and how the walk
/// puts another node there. Slots live on the walker's stack for the visit of one child; nobody may
/// keep one.

#include "TolenEffects/Expression.h"
#include "TolenEffects/Statement.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <vector>

namespace Tolen::Effects {

/// What all slots of the mutating walk have in common, whatever they hold.
class TOLEN_EXPORT IParentSyntax {
public:
    /// kClass_Expression or kClass_Statement: which TIParentSyntax this is.
    virtual Class GetClass() const = 0;
    /// The node that holds the child; null for elements of vectors and shared slots.
    virtual Syntax* GetParent() = 0;
    /// The slot through which that node was reached; null at the top and where GetParent is null.
    virtual IParentSyntax* GetParentSlot() = 0;
    /// Whether a replacement is stored and not yet applied.
    virtual bool HasReplacement() const = 0;

protected:
    // Slots are never deleted through their base.
    ~IParentSyntax() = default;
};

/// The slot of an expression or a statement.
/// @tparam T Expression or Statement
template <class T>
class TIParentSyntax : public IParentSyntax {
public:
    /// kClass_Expression or kClass_Statement, whichever T is.
    Class GetClass() const override { return T::ClassStatic(); }

    /// Asks for @p node, which is taken over, to stand where the visited child stands. The walker
    /// deletes the child, with all it owns, when the visit returns; then it visits @p node.
    /// @return false, with @p node still the caller's, when a replacement is pending already
    virtual bool SetReplacement(T* node) = 0;
    /// The stored node; null for none.
    virtual T* GetReplacement() = 0;
    /// Forgets the stored node, which is the caller's then. @return true
    virtual bool ClearReplacement() = 0;
    /// Puts the stored node in its place; for walkers. @return the result of the parent's setter
    virtual bool ApplyReplacement() = 0;
    virtual ~TIParentSyntax() = default;
};

/// The slot of the reading walk: no more than the parent.
/// @tparam T Expression or Statement
template <class T>
class TOLEN_EXPORT TParentSyntaxConst {
public:
    /// A slot below @p parent, borrowed; null at the top.
    explicit TParentSyntaxConst(const Syntax* parent) : _pParent(parent) {}
    virtual ~TParentSyntaxConst() = default;

    /// The node that holds the child; null at the top.
    const Syntax* GetParent() const { return _pParent; }

private:
    const Syntax* _pParent; ///< borrowed
};

/// A slot that stores its replacement until the walker applies it.
/// @tparam T Expression or Statement
template <class T>
class TParentSyntaxStored : public TIParentSyntax<T> {
public:
    /// The node that holds the child; null for elements of vectors.
    Syntax* GetParent() override { return _pParent; }
    /// The slot through which that node was reached; null where GetParent is.
    IParentSyntax* GetParentSlot() override { return _pParentSlot; }
    /// Whether a replacement is stored and not yet applied.
    bool HasReplacement() const override { return _pReplacement != nullptr && !_replaced; }
    /// Stores @p node.
    /// @return false, with a line on the console, when a replacement is pending already
    bool SetReplacement(T* node) override;
    /// The stored node; null for none.
    T* GetReplacement() override { return _pReplacement; }
    /// Forgets the stored node. @return true
    bool ClearReplacement() override {
        _pReplacement = nullptr;
        _replaced = false;
        return true;
    }

protected:
    /// A slot below @p parent, reached through @p parentSlot; both are borrowed and may be null.
    TParentSyntaxStored(Syntax* parent, IParentSyntax* parentSlot)
        : _pParent(parent), _pParentSlot(parentSlot) {}

    Syntax* _pParent;            ///< borrowed
    IParentSyntax* _pParentSlot; ///< borrowed
    T* _pReplacement = nullptr;  ///< owned by the caller of SetReplacement until it is applied
    bool _replaced = false;      ///< the stored node is in its place
};

/// The slot of a single child, replaced by one of its parent's setters.
/// @tparam T Expression or Statement
template <class T>
class TParentSyntaxDelegate final : public TParentSyntaxStored<T> {
public:
    /// A setter of the parent.
    using Setter = fastdelegate::FastDelegate1<T*, bool>;

    /// A slot of a child.
    /// @param parent     the node that holds the child, borrowed
    /// @param parentSlot through which that node was reached, borrowed; null at the top
    /// @param setter     borrowed; bound to the parent's setter of this child
    TParentSyntaxDelegate(Syntax* parent, IParentSyntax* parentSlot, const Setter* setter)
        : TParentSyntaxStored<T>(parent, parentSlot), _pSetter(setter) {}

    /// Calls the setter, which deletes the child.
    /// @return its answer; true when there is nothing to apply
    bool ApplyReplacement() override {
        if (!this->HasReplacement()) {
            return true;
        }
        this->_replaced = true;
        return (*_pSetter)(this->_pReplacement);
    }

private:
    const Setter* _pSetter; ///< borrowed
};

/// The slot of a vector's element. It tells no parent.
/// @tparam T Expression or Statement
template <class T>
class TParentSyntaxVectorElement final : public TParentSyntaxStored<T> {
public:
    /// Where an element is.
    using Iterator = typename std::vector<T*>::iterator;

    /// A slot of an element.
    /// @param position borrowed; the walker's iterator, at the element while it is visited
    explicit TParentSyntaxVectorElement(Iterator* position)
        : TParentSyntaxStored<T>(nullptr, nullptr), _pPosition(position) {}

    /// Stores whatever there is, null too, and deletes the element before. @return true
    bool ApplyReplacement() override;

private:
    Iterator* _pPosition; ///< borrowed
};

/// The slot of nodes that can't be replaced: the statements of a Module and the body of a function.
/// It takes no notice of a replacement, which stays with the caller.
/// @tparam T Expression or Statement
template <class T>
class TParentSyntaxNull final : public TIParentSyntax<T> {
public:
    /// The one there is for T.
    static TParentSyntaxNull* GetInstance();

    /// Null.
    Syntax* GetParent() override { return nullptr; }
    /// Null.
    IParentSyntax* GetParentSlot() override { return nullptr; }
    /// False.
    bool HasReplacement() const override { return false; }
    /// Does nothing. @return true
    bool SetReplacement(T*) override { return true; }
    /// Null, by which a caller sees that the node it gave is still its own.
    T* GetReplacement() override { return nullptr; }
    /// Does nothing. @return true
    bool ClearReplacement() override { return true; }
    /// Does nothing. @return true
    bool ApplyReplacement() override { return true; }
};

/// The slot of a child whose static type is narrower than Expression. A replacement must be of that
/// type; nothing checks it.
/// @tparam P has a type Parent and a static bool Replace(Parent*, Expression*)
template <class P>
class ParentExpressionPolicy final : public TParentSyntaxStored<Expression> {
public:
    /// A slot of a child of @p parent, reached through @p parentSlot; both are borrowed.
    ParentExpressionPolicy(typename P::Parent* parent, IParentSyntax* parentSlot)
        : TParentSyntaxStored<Expression>(parent, parentSlot) {}

    /// Replaces the child by the policy. @return its answer; true when there is nothing to apply
    bool ApplyReplacement() override {
        if (!HasReplacement()) {
            return true;
        }
        _replaced = true;
        return P::Replace(static_cast<typename P::Parent*>(_pParent), _pReplacement);
    }
};

/// Replaces the FunctionCall of a FunctionSelection.
/// @tparam Node FunctionSelection
template <class Node>
struct ReplaceFunction {
    /// The class of the parent.
    using Parent = Node;
    /// Gives @p function, a FunctionCall that is taken over, to @p parent. @return true
    static bool Replace(Node* parent, Expression* function);
};

/// Replaces the Condition of a WhileStatement or a ForStatement.
/// @tparam Node one of the two
template <class Node>
struct ReplaceConditionTyped {
    /// The class of the parent.
    using Parent = Node;
    /// Gives @p condition, a Condition that is taken over, to @p parent. @return true
    static bool Replace(Node* parent, Expression* condition);
};

} // namespace Tolen::Effects

#pragma once

#include "TolenEffects/Expression.h"
#include "TolenEffects/Statement.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <vector>

/// Parent slots: where an expression or a statement hangs while a walk visits it, and how the walk
/// puts another node there. Slots live on the walker's stack for the visit of one child; nobody may
/// keep one.

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
template <class T>
class TIParentSyntax : public IParentSyntax {
public:
    Class GetClass() const override { return T::ClassStatic(); }

    /// Asks for @p node, which is taken over, to stand where the visited child stands. The walker
    /// deletes the child, with all it owns, when the visit returns; then it visits @p node.
    /// @return false, with @p node still the caller's, when a replacement is pending already
    virtual bool SetReplacement(T* node) = 0;
    /// The stored node.
    virtual T* GetReplacement() = 0;
    /// Forgets the stored node, which is the caller's then. @return true
    virtual bool ClearReplacement() = 0;
    /// Puts the stored node in its place; for walkers. @return the result of the parent's setter
    virtual bool ApplyReplacement() = 0;
    virtual ~TIParentSyntax() = default;
};

/// The slot of the reading walk: no more than the parent.
template <class T>
class TOLEN_EXPORT TParentSyntaxConst {
public:
    explicit TParentSyntaxConst(const Syntax* parent) : _pParent(parent) {}
    virtual ~TParentSyntaxConst() = default;

    const Syntax* GetParent() const { return _pParent; }

private:
    const Syntax* _pParent; ///< borrowed
};

/// A slot that stores its replacement until the walker applies it.
template <class T>
class TParentSyntaxStored : public TIParentSyntax<T> {
public:
    Syntax* GetParent() override { return _pParent; }
    IParentSyntax* GetParentSlot() override { return _pParentSlot; }
    bool HasReplacement() const override { return _pReplacement != nullptr && !_replaced; }
    bool SetReplacement(T* node) override;
    T* GetReplacement() override { return _pReplacement; }
    bool ClearReplacement() override {
        _pReplacement = nullptr;
        _replaced = false;
        return true;
    }

protected:
    TParentSyntaxStored(Syntax* parent, IParentSyntax* parentSlot)
        : _pParent(parent), _pParentSlot(parentSlot) {}

    Syntax* _pParent;            ///< borrowed
    IParentSyntax* _pParentSlot; ///< borrowed
    T* _pReplacement = nullptr;  ///< owned by the caller of SetReplacement until it is applied
    bool _replaced = false;
};

/// The slot of a single child, replaced by one of its parent's setters.
template <class T>
class TParentSyntaxDelegate final : public TParentSyntaxStored<T> {
public:
    using Setter = fastdelegate::FastDelegate1<T*, bool>;

    /// @param setter borrowed; bound to the parent's setter of this child
    TParentSyntaxDelegate(Syntax* parent, IParentSyntax* parentSlot, const Setter* setter)
        : TParentSyntaxStored<T>(parent, parentSlot), _pSetter(setter) {}

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
template <class T>
class TParentSyntaxVectorElement final : public TParentSyntaxStored<T> {
public:
    using Iterator = typename std::vector<T*>::iterator;

    /// @param position borrowed; the walker's iterator, at the element while it is visited
    explicit TParentSyntaxVectorElement(Iterator* position)
        : TParentSyntaxStored<T>(nullptr, nullptr), _pPosition(position) {}

    /// Stores whatever there is, null too, and deletes the element before.
    bool ApplyReplacement() override;

private:
    Iterator* _pPosition; ///< borrowed
};

/// The slot of nodes that can't be replaced: the statements of a Module and the body of a function.
/// It takes no notice of a replacement, which stays with the caller.
template <class T>
class TParentSyntaxNull final : public TIParentSyntax<T> {
public:
    /// The one there is for T.
    static TParentSyntaxNull* GetInstance();

    Syntax* GetParent() override { return nullptr; }
    IParentSyntax* GetParentSlot() override { return nullptr; }
    bool HasReplacement() const override { return false; }
    bool SetReplacement(T*) override { return true; }
    T* GetReplacement() override { return nullptr; }
    bool ClearReplacement() override { return true; }
    bool ApplyReplacement() override { return true; }
};

/// The slot of a child whose static type is narrower than Expression. A replacement must be of that
/// type; nothing checks it.
/// @tparam P has a type Parent and a static bool Replace(Parent*, Expression*)
template <class P>
class ParentExpressionPolicy final : public TParentSyntaxStored<Expression> {
public:
    ParentExpressionPolicy(typename P::Parent* parent, IParentSyntax* parentSlot)
        : TParentSyntaxStored<Expression>(parent, parentSlot) {}

    bool ApplyReplacement() override {
        if (!HasReplacement()) {
            return true;
        }
        _replaced = true;
        return P::Replace(static_cast<typename P::Parent*>(_pParent), _pReplacement);
    }
};

/// Replaces the FunctionCall of a FunctionSelection.
template <class Node>
struct ReplaceFunction {
    using Parent = Node;
    static bool Replace(Node* parent, Expression* function);
};

/// Replaces the Condition of a WhileStatement or a ForStatement.
template <class Node>
struct ReplaceConditionTyped {
    using Parent = Node;
    static bool Replace(Node* parent, Expression* condition);
};

} // namespace Tolen::Effects

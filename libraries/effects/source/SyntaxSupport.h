#pragma once

#include "TolenEffects/Module.h"

#include <memory>
#include <string>
#include <vector>

/// What the node classes share in handling their children and names.

namespace Tolen::Effects {

/// Lets @p child own @p node and deletes what it owned, unless that is @p node itself. @return true
template <class T>
bool ReplaceChild(std::unique_ptr<T>& child, T* node) {
    if (child.get() != node) {
        child.reset(node);
    }
    return true;
}

/// Hands a child over for destruction.
template <class T>
void DisposeChild(Module* module, std::unique_ptr<T>& child) {
    module->Dispose(child.release());
}

/// Hands all elements over for destruction.
template <class T>
void DisposeChildren(Module* module, std::vector<T*>& children) {
    for (auto it = children.rbegin(); it != children.rend(); ++it) {
        module->Dispose(*it);
    }
    children.clear();
}

/// A copy of @p node in @p target, null for null.
template <class T>
T* CloneNode(const T* node, Module* target) {
    return node == nullptr ? nullptr : node->Clone(target);
}

template <class T>
T* CloneNode(const std::unique_ptr<T>& node, Module* target) {
    return CloneNode(node.get(), target);
}

/// Gives @p clone the range of @p source.
template <class T>
T* WithRangeOf(const Syntax* source, T* clone) {
    clone->SetRange(source);
    return clone;
}

/// Whether both are null or both are there and equal.
template <class T>
bool AreEqual(const T* a, const T* b) {
    return a == nullptr || b == nullptr ? a == b : a->Equals(b);
}

template <class T>
bool AreEqual(const std::unique_ptr<T>& a, const std::unique_ptr<T>& b) {
    return AreEqual(a.get(), b.get());
}

template <class T>
bool AreEqual(const std::vector<T*>& a, const std::vector<T*>& b) {
    if (a.size() != b.size()) {
        return false;
    }
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (!AreEqual(a[i], b[i])) {
            return false;
        }
    }
    return true;
}

/// @p other cast to the class of @p self, null when it is null or of another class.
template <class Node>
const Node* SameClass(const Node* self, const Syntax* other) {
    return other != nullptr && other->GetClass() == self->GetClass()
               ? static_cast<const Node*>(other)
               : nullptr;
}

/// The text of a name, empty for null.
inline const std::string& TextOf(const String* name) {
    static const std::string empty;
    return name == nullptr ? empty : name->GetString();
}

} // namespace Tolen::Effects

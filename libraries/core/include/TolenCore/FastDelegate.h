#pragma once

/// @file
/// Bound callbacks, with which listeners and visits are handed over.

#include "TolenCore/CreationOrder.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <type_traits>

/// Bound callbacks: an object and one of its member functions, or a free function, held by value.
///
/// A delegate neither owns its object nor knows when it dies: whoever binds an object takes the
/// delegate back before the object goes. Delegates are small, trivially copyable and ordered, so
/// that a set of them finds an equal one again.
namespace fastdelegate {

/// The delegate of `R(Args...)`. Clients spell it FastDelegate0 to FastDelegate3.
template <class R, class... Args>
class FastDelegate {
public:
    /// A free function that a delegate can be bound to.
    using FreeFunction = R (*)(Args...);

    /// An empty delegate; calling it answers `R(true)` where that exists, otherwise `R()`.
    FastDelegate() = default;

    /// Binds @p object and its member @p function. Both may come from one of the object's bases.
    template <class X, class Y>
    FastDelegate(X* object, R (Y::*function)(Args...)) {
        _BindMember<Y>(static_cast<Y*>(object), _OrderOf(object), function);
    }

    /// The same for a const member function.
    template <class X, class Y>
    FastDelegate(const X* object, R (Y::*function)(Args...) const) {
        _BindMember<const Y>(const_cast<Y*>(static_cast<const Y*>(object)), _OrderOf(object),
                             function);
    }

    /// Binds a free function.
    FastDelegate(FreeFunction function) {
        if (function == nullptr) {
            return;
        }
        std::memcpy(_function, &function, sizeof function);
        _stub = [](const FastDelegate& self, Args... args) -> R {
            FreeFunction bound;
            std::memcpy(&bound, self._function, sizeof bound);
            return bound(static_cast<Args>(args)...);
        };
    }

    /// Binds a callable that the caller keeps alive, for visits that end before it does.
    template <class F>
    static FastDelegate Borrow(F& callable) {
        FastDelegate delegate;
        delegate._object = const_cast<void*>(static_cast<const void*>(&callable));
        delegate._stub = [](const FastDelegate& self, Args... args) -> R {
            return (*static_cast<F*>(self._object))(static_cast<Args>(args)...);
        };
        return delegate;
    }

    /// Calls what is bound.
    R operator()(Args... args) const {
        if (_stub == nullptr) {
            if constexpr (std::is_same_v<R, bool>) {
                return true;
            } else {
                return R();
            }
        }
        return _stub(*this, static_cast<Args>(args)...);
    }

    /// Whether nothing is bound.
    bool IsEmpty() const { return _stub == nullptr; }
    /// Whether something is bound.
    explicit operator bool() const { return _stub != nullptr; }

    /// The bound object, null for an empty delegate or a free function.
    const void* GetObject() const { return _object; }

    /// Whether both are bound to the same function of the same object, or both are empty. Those of
    /// Borrow() are the same for the same callable.
    friend bool operator==(const FastDelegate& a, const FastDelegate& b) {
        return a._Compare(b) == 0;
    }
    /// Whether they are bound to different things.
    friend bool operator!=(const FastDelegate& a, const FastDelegate& b) {
        return a._Compare(b) != 0;
    }

    /// Objects that carry a creation number come first, in the order in which they were made; then
    /// all others by address. Functions of one object are ordered by their bytes.
    friend bool operator<(const FastDelegate& a, const FastDelegate& b) {
        return a._Compare(b) < 0;
    }

private:
    static constexpr std::size_t kFunctionSize = 2 * sizeof(void*);
    using Stub = R (*)(const FastDelegate&, Args...);

    template <class X>
    static std::uint64_t _OrderOf(const X* object) {
        if constexpr (std::is_base_of_v<Tolen::CreationOrder, X>) {
            return object == nullptr ? 0 : object->GetCreationNumber();
        } else {
            return 0;
        }
    }

    template <class Y, class Function>
    void _BindMember(std::remove_const_t<Y>* object, std::uint64_t order, Function function) {
        static_assert(sizeof function <= kFunctionSize, "member function pointers have two words");
        _object = const_cast<std::remove_cv_t<Y>*>(object);
        _order = order;
        std::memcpy(_function, &function, sizeof function);
        _stub = [](const FastDelegate& self, Args... args) -> R {
            Function bound;
            std::memcpy(&bound, self._function, sizeof bound);
            return (static_cast<Y*>(self._object)->*bound)(static_cast<Args>(args)...);
        };
    }

    int _Compare(const FastDelegate& other) const {
        if (_order != other._order) {
            // Zero stands for "no number" and sorts last.
            return _order - 1 < other._order - 1 ? -1 : 1;
        }
        if (_object != other._object) {
            return std::less<const void*>()(_object, other._object) ? -1 : 1;
        }
        const int bytes = std::memcmp(_function, other._function, kFunctionSize);
        if (bytes != 0) {
            return bytes;
        }
        if (_stub != other._stub) {
            return std::less<Stub>()(_stub, other._stub) ? -1 : 1;
        }
        return 0;
    }

    void* _object = nullptr;
    std::uint64_t _order = 0;
    unsigned char _function[kFunctionSize] = {};
    Stub _stub = nullptr;
};

/// A delegate without arguments.
template <class R = void>
using FastDelegate0 = FastDelegate<R>;
/// A delegate of one argument: the argument first, the answer last.
template <class A, class R = void>
using FastDelegate1 = FastDelegate<R, A>;
/// A delegate of two arguments: the arguments first, the answer last.
template <class A, class B, class R = void>
using FastDelegate2 = FastDelegate<R, A, B>;
/// A delegate of three arguments: the arguments first, the answer last.
template <class A, class B, class C, class R = void>
using FastDelegate3 = FastDelegate<R, A, B, C>;

/// Binds @p object and @p function with the types deduced.
template <class X, class Y, class R, class... Args>
FastDelegate<R, Args...> MakeDelegate(X* object, R (Y::*function)(Args...)) {
    return FastDelegate<R, Args...>(object, function);
}
/// Binds @p object and a @p function that leaves it as it is, with the types deduced.
template <class X, class Y, class R, class... Args>
FastDelegate<R, Args...> MakeDelegate(const X* object, R (Y::*function)(Args...) const) {
    return FastDelegate<R, Args...>(object, function);
}

} // namespace fastdelegate

namespace Tolen {
using fastdelegate::FastDelegate0;
using fastdelegate::FastDelegate1;
using fastdelegate::FastDelegate2;
using fastdelegate::FastDelegate3;
using fastdelegate::MakeDelegate;
} // namespace Tolen

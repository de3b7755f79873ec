#pragma once

#include "TolenCore/CreationOrder.h"
#include "TolenCore/FastDelegate.h"

#include <functional>
#include <utility>

namespace Tolen::Effects::Tests {

/// A listener that does something at its first call.
template <class... Args>
class Once : public CreationOrder {
public:
    explicit Once(std::function<void()> action) : _action(std::move(action)) {}
    fastdelegate::FastDelegate<bool, Args...>& operator*() { return _delegate; }
    bool HasRun() const { return _action == nullptr; }

private:
    bool _OnCall(Args...) {
        if (_action != nullptr) {
            std::exchange(_action, nullptr)();
        }
        return true;
    }
    std::function<void()> _action;
    fastdelegate::FastDelegate<bool, Args...> _delegate{this, &Once::_OnCall};
};

} // namespace Tolen::Effects::Tests

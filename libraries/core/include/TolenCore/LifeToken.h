#pragma once

#include <memory>

namespace Tolen {

/// Tells whether its owner is still there, for code that calls listeners which may destroy it:
///
///     const LifeToken::Watch alive = _life.GetWatch();
///     listeners.Fire(this);
///     if (!alive) return false;
class LifeToken {
public:
    /// Answers true as long as the token lives that gave it out; it may outlive the token.
    class Watch {
    public:
        /// Whether the token is still there.
        explicit operator bool() const { return *_alive; }

    private:
        friend class LifeToken;
        explicit Watch(std::shared_ptr<const bool> alive) : _alive(std::move(alive)) {}
        std::shared_ptr<const bool> _alive;
    };

    LifeToken() = default;
    ~LifeToken() {
        if (_alive != nullptr) {
            *_alive = false;
        }
    }
    LifeToken(const LifeToken&) = delete;
    LifeToken& operator=(const LifeToken&) = delete;

    /// A watch over this token, to be taken while it lives. Token and watches are used by one
    /// thread.
    Watch GetWatch() const {
        if (_alive == nullptr) {
            _alive = std::make_shared<bool>(true);
        }
        return Watch(_alive);
    }

private:
    mutable std::shared_ptr<bool> _alive; ///< null until somebody watches
};

} // namespace Tolen

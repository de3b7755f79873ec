#pragma once

#include <vector>

namespace Tolen::Effects {

/// The blocks of #ifdef and #ifndef that are open in one file.
class ConditionStack {
public:
    /// Whether lines count here.
    bool IsActive() const { return _stack.back(); }
    /// Whether every block is closed and nothing else was.
    bool IsBalanced() const { return !_isMismatched && _stack.size() == 1; }
    /// Whether an #else or #endif stood outside of a block.
    bool IsMismatched() const { return _isMismatched; }

    /// Opens a block; inside one that doesn't count, it doesn't count either.
    void Push(bool condition) { _stack.push_back(IsActive() && condition); }

    /// Turns the block round, as often as it comes, if what is around it counts.
    void Else() {
        if (_stack.size() < 2) {
            _isMismatched = true;
        } else if (_stack[_stack.size() - 2]) {
            _stack.back() = !_stack.back();
        }
    }

    void Endif() {
        if (_stack.size() == 1) {
            _isMismatched = true;
        } else {
            _stack.pop_back();
        }
    }

private:
    std::vector<bool> _stack{true}; ///< the file itself, then the open blocks
    bool _isMismatched = false;
};

} // namespace Tolen::Effects

#pragma once

#include "MgrEffectsImpl.h"
#include "PendingEnds.h"

#include <memory>

namespace Tolen::Effects {

/// Puts off, for a scope, the end of shaders and graphs and the shutdown of the manager. After the
/// scope, what its code has used may be gone.
class ScopedHold {
public:
    /// @param manager may be null, then nothing is held
    explicit ScopedHold(IMgrEffects* manager) : _pEnds(_GetEnds(manager)) {
        if (_pEnds != nullptr) {
            _pEnds->Hold();
        }
    }
    ~ScopedHold() {
        if (_pEnds != nullptr) {
            _pEnds->LetGo();
        }
    }
    ScopedHold(const ScopedHold&) = delete;
    ScopedHold& operator=(const ScopedHold&) = delete;

    /// Whether there is a hold further up the stack.
    static bool IsHeld(IMgrEffects* manager) {
        const PendingEnds* const ends = _GetEnds(manager);
        return ends != nullptr && ends->IsHeld();
    }

private:
    static PendingEnds* _GetEnds(IMgrEffects* manager) {
        MgrEffectsImpl* const implementation =
            manager == nullptr ? nullptr : manager->GetImplementation();
        return implementation == nullptr ? nullptr : implementation->GetPendingEnds();
    }

    PendingEnds* _pEnds; ///< borrowed; null when nothing is held
};

} // namespace Tolen::Effects

#pragma once

#include "MgrEffectsImpl.h"

namespace Tolen::Effects {

/// Makes a Result the manager's current one for a scope and puts the one before back at its end, so
/// that code without a Result of its own reports to the outermost caller that gave one.
class ScopedResult {
public:
    ScopedResult(IMgrEffects* manager, Result* result)
        : _pImplementation(manager->GetImplementation()),
          _pPrevious(_pImplementation->GetResult()) {
        _pImplementation->SetResult(result);
    }
    ~ScopedResult() { _pImplementation->SetResult(_pPrevious); }
    ScopedResult(const ScopedResult&) = delete;
    ScopedResult& operator=(const ScopedResult&) = delete;

private:
    MgrEffectsImpl* _pImplementation; ///< borrowed
    Result* _pPrevious;               ///< borrowed
};

} // namespace Tolen::Effects

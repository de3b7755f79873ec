#pragma once

#include "TolenCore/LifeToken.h"

#include <optional>
#include <string>

namespace Tolen::Effects {

class Profiler;

/// Adds the milliseconds between its making and its end to a profiler.
class ProfileScope {
public:
    /// @param name     copied
    /// @param profiler borrowed; null takes no time
    ProfileScope(const std::string& name, Profiler* profiler);
    ~ProfileScope();
    ProfileScope(const ProfileScope&) = delete;
    ProfileScope& operator=(const ProfileScope&) = delete;

private:
    std::string _name;
    Profiler* _pProfiler; ///< borrowed
    std::optional<LifeToken::Watch> _isProfilerAlive; ///< the scope's end may come after it
    long long _start = 0;
};

} // namespace Tolen::Effects

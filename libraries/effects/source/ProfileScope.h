#pragma once

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
    long long _start;
};

} // namespace Tolen::Effects

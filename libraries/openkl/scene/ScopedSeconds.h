#pragma once

#include <chrono>

namespace Tolen::OpenKL {

/// Adds the seconds of a scope to a counter.
class ScopedSeconds {
public:
    explicit ScopedSeconds(double& seconds) : _seconds(seconds) {}
    ~ScopedSeconds() { _seconds += std::chrono::duration<double>(Clock::now() - _start).count(); }
    ScopedSeconds(const ScopedSeconds&) = delete;
    ScopedSeconds& operator=(const ScopedSeconds&) = delete;

private:
    using Clock = std::chrono::steady_clock;

    double& _seconds;
    Clock::time_point _start = Clock::now();
};

} // namespace Tolen::OpenKL

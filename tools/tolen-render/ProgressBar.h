#pragma once

#include <chrono>
#include <cstdint>
#include <string>

namespace Tolen::Render {

/// Shows how far a render has come on stderr: a bar with rate and time left on a terminal, a line
/// for each tenth elsewhere.
class ProgressBar {
public:
    /// @param label what is being rendered
    /// @param unit  what is counted, in the plural
    /// @param total the units of the whole
    ProgressBar(std::string label, std::string unit, double total);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// @param fraction 0 to 1
    void Show(double fraction);

private:
    using Clock = std::chrono::steady_clock;

    void _ShowBar(double fraction, double seconds);
    void _ShowLine(double fraction, double seconds);

    std::string _label;
    std::string _unit;
    double _total;
    bool _isTerminal;
    Clock::time_point _start;
    Clock::time_point _last;
    int _tenths = 0;
    bool _isShown = false;
};

} // namespace Tolen::Render

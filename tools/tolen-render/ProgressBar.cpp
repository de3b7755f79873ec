#include "ProgressBar.h"

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace Tolen::Render {

namespace {

constexpr int kBarWidth = 30;
constexpr auto kBetween = std::chrono::milliseconds(100);

/// "1.23 M", with the prefix that keeps the number short.
std::string _Shorten(double value) {
    static constexpr std::pair<double, const char*> kPrefixes[] = {
        {1e9, " G"}, {1e6, " M"}, {1e3, " k"}};
    for (const auto& [size, prefix] : kPrefixes) {
        if (value >= size) {
            char text[32];
            std::snprintf(text, sizeof text, "%.2f%s", value / size, prefix);
            return text;
        }
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.0f ", value);
    return text;
}

std::string _ToClock(double seconds) {
    const long whole = static_cast<long>(seconds + 0.5);
    char text[32];
    std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
    return text;
}

} // namespace

ProgressBar::ProgressBar(std::string label, std::string unit, double total)
    : _label(std::move(label)), _unit(std::move(unit)), _total(total),
      _isTerminal(isatty(STDERR_FILENO) != 0), _start(Clock::now()), _last(_start) {}

ProgressBar::~ProgressBar() {
    if (_isTerminal && _isShown) {
        std::fputc('\n', stderr);
    }
}

void ProgressBar::Show(double fraction) {
    const Clock::time_point now = Clock::now();
    const double seconds = std::chrono::duration<double>(now - _start).count();
    if (!_isTerminal) {
        _ShowLine(fraction, seconds);
    } else if (now - _last >= kBetween || fraction >= 1.0) {
        _last = now;
        _ShowBar(fraction, seconds);
    }
}

void ProgressBar::_ShowBar(double fraction, double seconds) {
    std::string bar(kBarWidth, ' ');
    for (int i = 0; i < static_cast<int>(fraction * kBarWidth); ++i) {
        bar[static_cast<std::size_t>(i)] = '#';
    }
    const double rate = seconds > 0.0 ? fraction * _total / seconds : 0.0;
    const double left = fraction > 0.0 ? seconds * (1.0 - fraction) / fraction : 0.0;
    std::fprintf(stderr, "\r%s [%s] %3.0f%%  %s%s/s  %s left   ", _label.c_str(), bar.c_str(),
                 fraction * 100.0, _Shorten(rate).c_str(), _unit.c_str(), _ToClock(left).c_str());
    std::fflush(stderr);
    _isShown = true;
}

void ProgressBar::_ShowLine(double fraction, double seconds) {
    const int tenths = static_cast<int>(fraction * 10.0);
    if (tenths <= _tenths) {
        return;
    }
    _tenths = tenths;
    const double rate = seconds > 0.0 ? fraction * _total / seconds : 0.0;
    const double left = fraction > 0.0 ? seconds * (1.0 - fraction) / fraction : 0.0;
    std::fprintf(stderr, "%s: %d%%, %s%s/s, %s left\n", _label.c_str(), tenths * 10,
                 _Shorten(rate).c_str(), _unit.c_str(), _ToClock(left).c_str());
}

} // namespace Tolen::Render

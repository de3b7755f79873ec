#include "ProfileScope.h"

#include "TolenEffects/Profiler.h"

#include "TolenCore/Clock.h"

namespace Tolen::Effects {

ProfileScope::ProfileScope(const std::string& name, Profiler* profiler)
    : _name(name), _pProfiler(profiler) {
    if (_pProfiler != nullptr) {
        _isProfilerAlive = _pProfiler->GetWatch();
    }
    _start = ReadCounter();
}

ProfileScope::~ProfileScope() {
    if (_pProfiler == nullptr || !*_isProfilerAlive) {
        return;
    }
    const auto ticks = static_cast<double>(ReadCounter() - _start);
    const auto frequency = static_cast<double>(CounterFrequency());
    _pProfiler->AddTimeSample(_name, static_cast<float>(ticks * 1000.0 / frequency));
}

} // namespace Tolen::Effects

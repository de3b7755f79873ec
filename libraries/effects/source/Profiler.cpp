#include "TolenEffects/Profiler.h"

#include "TolenCore/Clock.h"
#include "TolenCore/Format.h"

namespace Tolen::Effects {

void Profiler::AddTimeSample(const std::string& name, float milliseconds) {
    _samples[name].push_back(milliseconds);
}

void Profiler::Dump() const {
    for (const auto& [name, samples] : _samples) {
        std::string line = name + " (ms):";
        const char* separator = "";
        for (const float sample : samples) {
            line += separator;
            line += Format("%g", static_cast<double>(sample));
            separator = ", ";
        }
        line += '\n';
        WriteDebuggerOutput(line.c_str());
    }
}

} // namespace Tolen::Effects

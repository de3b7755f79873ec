#include "TolenCore/Clock.h"

#include <chrono>
#include <cstdio>

namespace Tolen {

namespace {
using Counter = std::chrono::steady_clock;
}

long long ReadCounter() { return Counter::now().time_since_epoch().count(); }

long long CounterFrequency() { return Counter::period::den / Counter::period::num; }

void WriteDebuggerOutput(const char* text) {
    if (text != nullptr) {
        std::fputs(text, stderr);
    }
}

} // namespace Tolen

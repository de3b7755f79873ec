#pragma once

#include "TolenEffects/MgrStats.h"

#include <cstdlib>

/// Sets or clears the variables that statistics look at, and puts things back.
class StatsEnvironment {
public:
    StatsEnvironment(const char* tcpip, const char* file) {
        Set("MGR_STATS_DUMP_TCPIP", tcpip);
        Set("MGR_STATS_DUMP_FILE", file);
    }
    ~StatsEnvironment() {
        Set("MGR_STATS_DUMP_TCPIP", nullptr);
        Set("MGR_STATS_DUMP_FILE", nullptr);
    }
    StatsEnvironment(const StatsEnvironment&) = delete;
    StatsEnvironment& operator=(const StatsEnvironment&) = delete;

private:
    static void Set(const char* name, const char* value) {
        if (value == nullptr) {
            unsetenv(name);
        } else {
            setenv(name, value, 1);
        }
    }
};

/// Statistics beside those of the process.
class StatsUnderTest : private StatsEnvironment, public MgrStats {
public:
    explicit StatsUnderTest(const char* tcpip = nullptr, const char* file = nullptr)
        : StatsEnvironment(tcpip, file) {}

    using MgrStats::HasThread;

    void AdvanceTo(int slot) {
        while (GetSlot() != slot) {
            AdvanceSlot();
        }
    }
};

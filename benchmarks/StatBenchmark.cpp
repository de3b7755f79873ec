#include "TolenEffects/MgrStats.h"

#include <benchmark/benchmark.h>

#include <iterator>

/// What it costs a program to be watched.

namespace {

void TriggerHitCount(benchmark::State& state) {
    Stat* const stat =
        MgrStats::GetMgrStats()->CreateNewStat("hits", "benchmark", Stat::kKind_HitCount);
    for (auto _ : state) {
        stat->Trigger();
        benchmark::ClobberMemory();
    }
}
BENCHMARK(TriggerHitCount);

void TriggerTime(benchmark::State& state) {
    Stat* const stat =
        MgrStats::GetMgrStats()->CreateNewStat("time", "benchmark", Stat::kKind_Time);
    for (auto _ : state) {
        stat->Trigger(1.0e-6);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(TriggerTime);

/// Statistics in turn, as programs do it: none waits for the addition before.
void TriggerTimesInTurn(benchmark::State& state) {
    Stat* stats[8];
    for (Stat*& stat : stats) {
        stat = MgrStats::GetMgrStats()->CreateNewStat("time", "benchmark", Stat::kKind_Time);
    }
    for (auto _ : state) {
        for (Stat* const stat : stats) {
            stat->Trigger(1.0e-6);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * std::ssize(stats));
}
BENCHMARK(TriggerTimesInTurn);

} // namespace

#include "MgrLightShaders.h"
#include "effects/LightLibraryText.h"
#include "support/RecordingContext.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenCore/Console.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <vector>

/// What one light costs beside others of its kind: to add and to remove it, to set a value, and to
/// close the holes that removed ones leave. Each light has an intensity and one of two decays.

namespace Tolen::Effects {
namespace {

/// Where what the managers tell at their end goes.
class Silence : public IConsoleSink {
public:
    void Write(Channel, const std::string&) override {}
};

class Lights {
public:
    explicit Lights(int count) : _pConsoleBefore(SetMgrConsole(&_console)) {
        _manager.Init(&_console, &_context, nullptr);
        _manager.AddLibrary("lights", Tests::LightLibraryText::Make(), nullptr);
        _lights.Init(&_manager, &_console);
        for (int i = 0; i < 2; ++i) {
            _decays.push_back(_lights.CreateShader("LightDecayInvSquareArray", nullptr));
        }
        for (int i = 0; i < count; ++i) {
            Add();
        }
        _context.GetLog().Clear();
    }
    ~Lights() {
        _lights.Shutdown();
        _manager.Shutdown();
        SetMgrConsole(_pConsoleBefore);
    }

    void Add() {
        IShader* const light = _lights.CreateShader("LightPointArray", nullptr);
        light->SetParameter(nullptr, "intensity", 2.0f);
        light->SetParameter(nullptr, "decay", _decays[_all.size() % 2]);
        _all.push_back(light);
    }
    void RemoveLast() {
        _lights.DestroyShader(_all.back());
        _all.pop_back();
    }
    void Shuffle() { std::shuffle(_all.begin(), _all.end(), std::mt19937(1)); }
    bool Update() { return _lights.Update(false); }
    IShader* GetLast() { return _all.back(); }
    void ClearLog() { _context.GetLog().Clear(); }

private:
    Silence _silence;
    MgrConsole _console{&_silence};
    IMgrConsole* _pConsoleBefore;
    Tolen::Tests::RecordingContext _context;
    MgrEffects _manager;
    MgrLightShaders _lights;
    std::vector<IShader*> _decays;
    std::vector<IShader*> _all;
};

template <class Work>
void Time(benchmark::State& state, int works, Work work) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    for (int i = 0; i < works; ++i) {
        work();
    }
    const std::chrono::duration<double> elapsed = Clock::now() - start;
    state.SetIterationTime(elapsed.count() / works);
    state.SetComplexityN(state.range(0));
}

constexpr int kWorks = 10;

void AddLight(benchmark::State& state) {
    for (auto _ : state) {
        Lights lights(static_cast<int>(state.range(0)));
        Time(state, kWorks, [&] { lights.Add(); });
    }
}

void RemoveLight(benchmark::State& state) {
    for (auto _ : state) {
        Lights lights(static_cast<int>(state.range(0)));
        lights.Shuffle();
        Time(state, kWorks, [&] { lights.RemoveLast(); });
    }
}

void SetValueOfLight(benchmark::State& state) {
    for (auto _ : state) {
        Lights lights(static_cast<int>(state.range(0)));
        Time(state, kWorks,
             [&] { lights.GetLast()->SetParameter(nullptr, "intensity", 3.0f); });
    }
}

/// Half of the lights have gone, here and there.
void Update(benchmark::State& state) {
    for (auto _ : state) {
        Lights lights(static_cast<int>(state.range(0)) * 2);
        lights.Shuffle();
        for (int i = 0; i < state.range(0); ++i) {
            lights.RemoveLast();
        }
        lights.ClearLog();
        Time(state, 1, [&] { benchmark::DoNotOptimize(lights.Update()); });
    }
}

/// @tparam order what the time is expected to grow with
template <benchmark::BigO order>
void Growth(benchmark::internal::Benchmark* family) {
    family->RangeMultiplier(10)
        ->Range(10, 10000)
        ->Iterations(5)
        ->Unit(benchmark::kMicrosecond)
        ->UseManualTime()
        ->Complexity(order);
}
BENCHMARK(AddLight)->Apply(Growth<benchmark::oLogN>);
BENCHMARK(RemoveLight)->Apply(Growth<benchmark::oLogN>);
BENCHMARK(SetValueOfLight)->Apply(Growth<benchmark::oLogN>);
BENCHMARK(Update)->Apply(Growth<benchmark::oN>);

} // namespace
} // namespace Tolen::Effects

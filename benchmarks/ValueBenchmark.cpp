#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include "support/RecordingContext.h"

#include <benchmark/benchmark.h>

#include <string>

/// What a client pays to change a value, up to the last listener that hears of it.

namespace Tolen::Effects {

namespace {

struct Listener {
    int count = 0;
    bool OnChangeValue(IParameter*) {
        ++count;
        return true;
    }
};

/// A shader with the input x, and one listener on it.
class ListenedInput {
public:
    ListenedInput() {
        _manager.Init(nullptr, &_context, nullptr);
        _manager.AddLibrary("benchmark", "class A { input float x; input vec4 v; }", nullptr);
        _pShader = _manager.CreateShader("A", nullptr);
        for (const char* name : {"x", "v"}) {
            _pShader->GetParameter(name)->AddListenerChangeValue(_delegate);
        }
    }

    ~ListenedInput() { _manager.DestroyShader(_pShader); }
    ListenedInput(const ListenedInput&) = delete;
    ListenedInput& operator=(const ListenedInput&) = delete;

    IParameter& Get(const char* name) { return *_pShader->GetParameter(name); }
    IShader& GetShader() { return *_pShader; }
    bool HasHeard(long long count) const { return _listener.count == count; }

private:
    Listener _listener;
    FastDelegate1<IParameter*, bool> _delegate = MakeDelegate(&_listener, &Listener::OnChangeValue);
    Tolen::Tests::RecordingContext _context;
    MgrEffects _manager;
    IShader* _pShader = nullptr; ///< owned by the manager
};

void CheckHeard(benchmark::State& state, const ListenedInput& input) {
    if (!input.HasHeard(static_cast<long long>(state.iterations()))) {
        state.SkipWithError("the listener has not heard of every value");
    }
}

void ValueSetFloat(benchmark::State& state) {
    ListenedInput input;
    IParameter& parameter = input.Get("x");
    float value = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parameter.Set(value));
        value += 1.0f;
    }
    CheckHeard(state, input);
}
BENCHMARK(ValueSetFloat);

void ValueSetVec4(benchmark::State& state) {
    ListenedInput input;
    IParameter& parameter = input.Get("v");
    Vector4f value;
    for (auto _ : state) {
        benchmark::DoNotOptimize(parameter.Set(value));
        value.x += 1.0f;
    }
    CheckHeard(state, input);
}
BENCHMARK(ValueSetVec4);

/// By the shader, with the look-up of the name.
void ValueSetFloatByName(benchmark::State& state) {
    ListenedInput input;
    const std::string name = "x";
    float value = 0.0f;
    for (auto _ : state) {
        benchmark::DoNotOptimize(input.GetShader().SetParameter(nullptr, name, value));
        value += 1.0f;
    }
    CheckHeard(state, input);
}
BENCHMARK(ValueSetFloatByName);

} // namespace

} // namespace Tolen::Effects

#include "support/RecordingContext.h"

#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenEffects/Module.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <cstddef>
#include <memory>
#include <vector>

/// What shader instances cost: to make and destroy one beside others that are alive, to set an
/// input, to add the code to a graph's module, and the memory of each.

namespace Tolen::Effects {
namespace {

constexpr const char* kLibrary = R"(
interface ITexture { vec3 sample(vec2 at); }
float luminance(vec3 c) { return dot(c, vec3(0.2126, 0.7152, 0.0722)); }
class Empty { }
class Small : ITexture
{
    coord vec2 uv;
    input vec3 color = vec3(0.8, 0.7, 0.6);
    input float gain = 1.0;
    float scale = 2.0;
    vec3 tint(vec3 c) { return c * color * gain; }
    vec3 sample(vec2 at)
    {
        float level = at.x * scale;
        vec3 c = tint(vec3(at, level));
        return c * luminance(c);
    }
}
)";

/// A manager with the library above.
class Loaded {
public:
    Loaded() {
        manager.Init(nullptr, &context, nullptr);
        manager.AddLibrary("library", kLibrary, nullptr);
    }

    Tolen::Tests::RecordingContext context;
    MgrEffects manager;
};

void CreateAndDestroy(benchmark::State& state, const char* name) {
    Loaded loaded;
    std::vector<IShader*> others;
    others.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i) {
        others.push_back(loaded.manager.CreateShader(name));
    }
    for (auto _ : state) {
        IShader* shader = loaded.manager.CreateShader(name);
        benchmark::DoNotOptimize(shader);
        loaded.manager.DestroyShader(shader);
    }
}
BENCHMARK_CAPTURE(CreateAndDestroy, Empty, "Empty")->Arg(0)->Arg(100000);
BENCHMARK_CAPTURE(CreateAndDestroy, Small, "Small")->Arg(0)->Arg(1000)->Arg(10000);

/// Makes many and destroys them in the order in which they were made.
void CreateManyThenDestroyAll(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        Loaded loaded;
        std::vector<IShader*> shaders;
        for (std::size_t i = 0; i < count; ++i) {
            shaders.push_back(loaded.manager.CreateShader("Small"));
        }
        for (IShader* shader : shaders) {
            loaded.manager.DestroyShader(shader);
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(CreateManyThenDestroyAll)->Range(100, 10000)->Unit(benchmark::kMillisecond);

/// Bytes of the heap for each instance that is alive, its code among them.
void MemoryOfOneShader(benchmark::State& state, const char* name) {
    constexpr int kCount = 10000;
    double bytes = 0.0;
    for (auto _ : state) {
        Loaded loaded;
        loaded.manager.CreateShader(name);
        const std::size_t before = mallinfo2().uordblks;
        for (int i = 0; i < kCount; ++i) {
            loaded.manager.CreateShader(name);
        }
        bytes = static_cast<double>(mallinfo2().uordblks - before) / kCount;
    }
    state.counters["bytes"] = bytes;
}
BENCHMARK_CAPTURE(MemoryOfOneShader, Empty, "Empty")->Iterations(1);
BENCHMARK_CAPTURE(MemoryOfOneShader, Small, "Small")->Iterations(1);

void SetInput(benchmark::State& state) {
    Loaded loaded;
    IShader* shader = loaded.manager.CreateShader("Small");
    float value = 0.0f;
    for (auto _ : state) {
        value += 1.0f;
        benchmark::DoNotOptimize(shader->SetParameter(nullptr, "gain", value));
    }
}
BENCHMARK(SetInput);

/// A change of a coord makes the instance's code again.
void SetCoord(benchmark::State& state) {
    Loaded loaded;
    IShader* shader = loaded.manager.CreateShader("Small");
    bool first = false;
    for (auto _ : state) {
        first = !first;
        benchmark::DoNotOptimize(shader->SetCoord(nullptr, "uv", first ? "uv0" : "uv1"));
    }
}
BENCHMARK(SetCoord);

void CollectShader(benchmark::State& state) {
    Loaded loaded;
    IShader* shader = loaded.manager.CreateShader("Small");
    for (auto _ : state) {
        const std::unique_ptr<Module> module(Module::Create(nullptr));
        benchmark::DoNotOptimize(shader->CollectShader(module.get()));
    }
}
BENCHMARK(CollectShader);

} // namespace
} // namespace Tolen::Effects

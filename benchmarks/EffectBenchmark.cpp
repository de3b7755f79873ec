#include "NullContext.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

/// What effects cost above the API: a compile of one root, a value on its way to a uniform, and the
/// apply of all values to many primitives.

namespace Tolen::Effects {
namespace {

using Benchmarks::NullContext;
using Benchmarks::NullPrimitive;

constexpr const char* kLibrary = R"(
class Tools {
    static float Luminance(vec3 c) { return dot(c, vec3(0.2126, 0.7152, 0.0722)); }
}
class Paint {
    input vec3 color = vec3(0.5, 0.25, 1.0);
    input vec3 edge = vec3(0.1, 0.1, 0.1);
    input float gain = 1.0;
    input float rough = 0.3;
    coord vec2 uv;
    float Falloff(float x) { return pow(1.0 - x, 5.0); }
    vec3 Mix(vec3 a, vec3 b, float t) { return a * (1.0 - t) + b * t; }
    void Shade() {
        float t = Falloff(uv.x) * rough;
        vec3 c = Mix(color, edge, t) * gain;
        if (Tools.Luminance(c) > 1.0) { c = vec3(1.0); }
        accumulate(o_color, c);
    }
}
)";

/// A surface effect with Paint as its root, compiled, on a number of primitives.
class Scene {
public:
    explicit Scene(int countPrimitives) {
        _manager.Init(nullptr, &_context, nullptr);
        _manager.AddLibrary("benchmark", kLibrary, nullptr);
        root = MakeRoot();
        effect = _manager.CreateEffectSurface();
        effect->SetRoot(root);
        _manager.SetOutputAttachmentIndex("o_color", 0);
        for (int i = 0; i < countPrimitives; ++i) {
            _primitives.push_back(std::make_unique<NullPrimitive>());
            effect->CreateReference(_primitives.back().get());
        }
        isReady = effect->Update(nullptr) && effect->IsCompiled();
    }
    ~Scene() {
        _manager.DestroyEffectSurface(effect);
        _manager.DestroyShader(root);
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    IShader* MakeRoot() {
        IShader* const shader = _manager.CreateShader("Paint");
        shader->SetCoord(nullptr, "uv", "Coord");
        return shader;
    }

    long long GetCountWrites() const {
        long long count = 0;
        for (const auto& primitive : _primitives) {
            count += primitive->GetCountWrites();
        }
        return count;
    }

    IShader* root = nullptr;
    IEffect* effect = nullptr;
    bool isReady = false;

private:
    NullContext _context;
    std::vector<std::unique_ptr<NullPrimitive>> _primitives;
    MgrEffects _manager;
};

/// From a new root to a linked program; the API compiles nothing here.
void EffectCompileRoot(benchmark::State& state) {
    Scene scene(0);
    for (auto _ : state) {
        if (!scene.effect->SetRoot(scene.root) || !scene.effect->Update(nullptr) ||
            !scene.effect->IsCompiled()) {
            state.SkipWithError("the effect does not compile");
            break;
        }
    }
}
BENCHMARK(EffectCompileRoot)->Unit(benchmark::kMicrosecond);

/// One new value, and the update that writes it on every primitive.
void EffectValueToUniform(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)));
    const long long before = scene.GetCountWrites();
    const std::string name = "gain";
    float value = 0.0f;
    for (auto _ : state) {
        value += 1.0f;
        benchmark::DoNotOptimize(scene.root->SetParameter(nullptr, name, value));
        benchmark::DoNotOptimize(scene.effect->Update(nullptr));
    }
    const auto iterations = static_cast<long long>(state.iterations());
    if (!scene.isReady || scene.GetCountWrites() - before != iterations * state.range(0)) {
        state.SkipWithError("not every value has reached every primitive");
    }
    state.SetItemsProcessed(iterations * state.range(0));
}
BENCHMARK(EffectValueToUniform)->Arg(1)->Arg(1000);

/// Many new values of one input between two updates: each is written, in order.
void EffectManyValuesToUniforms(benchmark::State& state) {
    Scene scene(1);
    IParameter* const gain = scene.root->GetParameter("gain");
    float value = 0.0f;
    for (auto _ : state) {
        for (int i = 0; i < 1000; ++i) {
            value += 1.0f;
            gain->Set(value);
        }
        benchmark::DoNotOptimize(scene.effect->Update(nullptr));
    }
    state.SetItemsProcessed(state.iterations() * 1000);
}
BENCHMARK(EffectManyValuesToUniforms);

/// An update with nothing to do.
void EffectUpdateIdle(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(scene.effect->Update(nullptr));
    }
}
BENCHMARK(EffectUpdateIdle)->Arg(1)->Arg(1000);

/// All values on every primitive.
void EffectApply(benchmark::State& state) {
    Scene scene(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        if (!scene.effect->Apply(nullptr)) {
            state.SkipWithError("the apply fails");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(EffectApply)->Arg(1000)->Unit(benchmark::kMicrosecond);

/// Making and destroying effects with a root and a primitive beside each other.
void EffectCreateAndDestroyMany(benchmark::State& state) {
    const auto count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        NullContext context;
        NullPrimitive primitive;
        MgrEffects manager;
        manager.Init(nullptr, &context, nullptr);
        manager.AddLibrary("benchmark", kLibrary, nullptr);
        IShader* const root = manager.CreateShader("Paint");
        root->SetCoord(nullptr, "uv", "Coord");
        std::vector<IEffect*> effects;
        for (int i = 0; i < count; ++i) {
            effects.push_back(manager.CreateEffectSurface());
            effects.back()->SetRoot(root);
            effects.back()->CreateReference(&primitive);
        }
        for (IEffect* effect : effects) {
            manager.DestroyEffectSurface(effect);
        }
        manager.DestroyShader(root);
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(EffectCreateAndDestroyMany)->Arg(100)->Arg(1000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace Tolen::Effects

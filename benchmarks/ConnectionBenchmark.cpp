#include "NullContext.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <random>
#include <utility>
#include <vector>

/// What it costs to connect shaders, by the shape of what they form, their number, the order in
/// which they are connected and whether an effect has the topmost one as its root already; to bring
/// a program up to date; and to destroy them all. Costs should rise with the number alone: the
/// fitted orders are printed behind each family.

namespace Tolen::Effects {
namespace {

constexpr const char* kLibrary = R"(
interface IValue { float get(float x); }
class Leaf : IValue
{
    input float level = 1.0;
    float get(float x) { return level * x; }
}
class Link : IValue
{
    input IValue next;
    input float gain = 2.0;
    float get(float x) { return next.get(x) * gain; }
}
class Pair : IValue
{
    input IValue left;
    input IValue right;
    float get(float x) { return left.get(x) + right.get(x); }
}
class Fan : IValue
{
    input IValue items[];
    float get(float x)
    {
        float sum = 0.0;
        for (int i = 0; i < items.length; i++) { sum += items[i].get(x); }
        return sum;
    }
}
class Root
{
    input IValue value;
    void Shade() { accumulate(o_color, vec3(value.get(1.0))); }
}
)";

/// A connection that is to be made.
struct Edge {
    IShader* pUser;
    const char* input;
    int index; ///< -1 for an input that is no array
    IShader* pUsed;
};

struct Scene;

/// Makes shaders and the edges between them.
using Shape = void (*)(Scene& scene, int count);

/// Shaders and how they are to be connected, from the bottom to the top.
struct Scene {
    explicit Scene(IOpenKLContext* context) {
        manager.Init(nullptr, context, nullptr);
        manager.AddLibrary("library", kLibrary, nullptr);
        root = manager.CreateShader("Root");
    }

    IShader* Make(const char* name) {
        shaders.push_back(manager.CreateShader(name));
        return shaders.back();
    }

    /// The effect whose root is the topmost shader.
    void MakeEffect() {
        effect = manager.CreateEffectSurface();
        effect->SetRoot(root);
    }

    void Connect(const Edge& edge) {
        const bool connected =
            edge.index < 0 ? edge.pUser->SetParameter(nullptr, edge.input, edge.pUsed)
                           : edge.pUser->SetParameter(nullptr, edge.input, edge.pUsed, edge.index);
        benchmark::DoNotOptimize(connected);
    }

    void ConnectAll() {
        for (const Edge& edge : edges) {
            Connect(edge);
        }
    }

    /// All of @p count shaders, connected, with an effect above them.
    void Build(Shape shape, int count) {
        shape(*this, count);
        ConnectAll();
        MakeEffect();
    }

    MgrEffects manager;
    IShader* root = nullptr;
    IEffect* effect = nullptr;
    std::vector<IShader*> shaders;
    std::vector<Edge> edges;
};

/// Each shader uses the one before.
void Chain(Scene& scene, int count) {
    IShader* below = scene.Make("Leaf");
    for (int i = 1; i < count; ++i) {
        IShader* const link = scene.Make("Link");
        scene.edges.push_back({link, "next", -1, below});
        below = link;
    }
    scene.edges.push_back({scene.root, "value", -1, below});
}

/// Each shader uses the one before twice: the ways to the first double with every shader.
void Diamonds(Scene& scene, int count) {
    IShader* below = scene.Make("Leaf");
    for (int i = 1; i < count; ++i) {
        IShader* const pair = scene.Make("Pair");
        scene.edges.push_back({pair, "left", -1, below});
        scene.edges.push_back({pair, "right", -1, below});
        below = pair;
    }
    scene.edges.push_back({scene.root, "value", -1, below});
}

/// One array holds all.
void Array(Scene& scene, int count) {
    IShader* const fan = scene.Make("Fan");
    fan->GetParameter("items")->SetLength(count - 1);
    for (int i = 0; i + 1 < count; ++i) {
        scene.edges.push_back({fan, "items", i, scene.Make("Leaf")});
    }
    scene.edges.push_back({scene.root, "value", -1, fan});
}

/// One shader is used by all others, which are in one array.
void Users(Scene& scene, int count) {
    IShader* const fan = scene.Make("Fan");
    IShader* const leaf = scene.Make("Leaf");
    fan->GetParameter("items")->SetLength(count);
    for (int i = 0; i < count; ++i) {
        IShader* const link = scene.Make("Link");
        scene.edges.push_back({link, "next", -1, leaf});
        scene.edges.push_back({fan, "items", i, link});
    }
    scene.edges.push_back({scene.root, "value", -1, fan});
}

enum class Order { BottomUp, TopDown, Random };

void Sort(std::vector<Edge>& edges, Order order) {
    if (order == Order::TopDown) {
        std::reverse(edges.begin(), edges.end());
    } else if (order == Order::Random) {
        std::mt19937 random(1);
        std::shuffle(edges.begin(), edges.end(), random);
    }
}

void Wire(benchmark::State& state, Shape shape, Order order, bool hasRoot) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Benchmarks::NullContext context;
            Scene scene(&context);
            shape(scene, count);
            Sort(scene.edges, order);
            if (hasRoot) {
                scene.MakeEffect();
            }
            state.ResumeTiming();
            scene.ConnectAll();
            if (!hasRoot) {
                scene.MakeEffect();
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetComplexityN(count);
    state.SetItemsProcessed(state.iterations() * count);
}

#define TOLEN_WIRE(shape)                                                                          \
    BENCHMARK_CAPTURE(Wire, shape##_BottomUp, shape, Order::BottomUp, false)->Apply(Growth);       \
    BENCHMARK_CAPTURE(Wire, shape##_TopDown, shape, Order::TopDown, false)->Apply(Growth);         \
    BENCHMARK_CAPTURE(Wire, shape##_Random, shape, Order::Random, false)->Apply(Growth);           \
    BENCHMARK_CAPTURE(Wire, shape##_BottomUp_Rooted, shape, Order::BottomUp, true)->Apply(Growth); \
    BENCHMARK_CAPTURE(Wire, shape##_TopDown_Rooted, shape, Order::TopDown, true)->Apply(Growth);   \
    BENCHMARK_CAPTURE(Wire, shape##_Random_Rooted, shape, Order::Random, true)->Apply(Growth)

void Growth(benchmark::internal::Benchmark* family) {
    family->RangeMultiplier(10)->Range(10, 10000)->Unit(benchmark::kMillisecond)->Complexity();
}

TOLEN_WIRE(Chain);
TOLEN_WIRE(Diamonds);
TOLEN_WIRE(Array);
TOLEN_WIRE(Users);
#undef TOLEN_WIRE

/// The first compile of an effect: merging, rewriting, printing and linking.
void Compile(benchmark::State& state, Shape shape) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Benchmarks::NullContext context;
            Scene scene(&context);
            scene.Build(shape, count);
            state.ResumeTiming();
            if (!scene.effect->Update(nullptr) || !scene.effect->IsCompiled()) {
                state.SkipWithError("not compiled");
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetComplexityN(count);
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK_CAPTURE(Compile, Chain, Chain)->Apply(Growth);
BENCHMARK_CAPTURE(Compile, Diamonds, Diamonds)->Apply(Growth);
BENCHMARK_CAPTURE(Compile, Array, Array)->Apply(Growth);
BENCHMARK_CAPTURE(Compile, Users, Users)->Apply(Growth);

/// A connection at the bottom changes, and the effect is brought up to date.
void Reconnect(benchmark::State& state, Shape shape) {
    const int count = static_cast<int>(state.range(0));
    Benchmarks::NullContext context;
    Scene scene(&context);
    scene.Build(shape, count);
    scene.effect->Update(nullptr);
    Edge other = scene.edges.front();
    other.pUsed = scene.manager.CreateShader("Leaf");
    bool isOther = false;
    for (auto _ : state) {
        isOther = !isOther;
        scene.Connect(isOther ? other : scene.edges.front());
        if (!scene.effect->Update(nullptr)) {
            state.SkipWithError("not compiled");
        }
    }
    state.SetComplexityN(count);
}
BENCHMARK_CAPTURE(Reconnect, Chain, Chain)->Apply(Growth);
BENCHMARK_CAPTURE(Reconnect, Diamonds, Diamonds)->Apply(Growth);
BENCHMARK_CAPTURE(Reconnect, Array, Array)->Apply(Growth);

/// The same without bringing anything up to date: what a change costs that makes an effect stale,
/// and the next one.
void ChangeBelow(benchmark::State& state, Shape shape) {
    const int count = static_cast<int>(state.range(0));
    Benchmarks::NullContext context;
    Scene scene(&context);
    scene.Build(shape, count);
    Edge other = scene.edges.front();
    other.pUsed = scene.manager.CreateShader("Leaf");
    bool isOther = false;
    for (auto _ : state) {
        isOther = !isOther;
        scene.Connect(isOther ? other : scene.edges.front());
    }
    state.SetComplexityN(count);
}
BENCHMARK_CAPTURE(ChangeBelow, Chain, Chain)->Apply(Growth);
BENCHMARK_CAPTURE(ChangeBelow, Array, Array)->Apply(Growth);

/// All cells of an array are changed one by one under an effect that is up to date.
void Refill(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    Benchmarks::NullContext context;
    Scene scene(&context);
    Array(scene, count);
    scene.ConnectAll();
    scene.MakeEffect();
    scene.effect->Update(nullptr);
    for (auto _ : state) {
        // Every shader moves on by one cell; the last edge is that to the root.
        for (std::size_t i = 0; i + 2 < scene.edges.size(); ++i) {
            std::swap(scene.edges[i].pUsed, scene.edges[i + 1].pUsed);
        }
        scene.ConnectAll();
        if (!scene.effect->Update(nullptr)) {
            state.SkipWithError("not compiled");
        }
    }
    state.SetComplexityN(count);
}
BENCHMARK(Refill)->Apply(Growth);

/// An array grows cell by cell under an effect.
void Grow(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Benchmarks::NullContext context;
            Scene scene(&context);
            Array(scene, count);
            IParameter* const items = scene.edges.front().pUser->GetParameter("items");
            items->SetLength(1);
            scene.Connect(scene.edges.back());
            scene.MakeEffect();
            state.ResumeTiming();
            for (std::size_t i = 0; i + 1 < scene.edges.size(); ++i) {
                items->SetLength(scene.edges[i].index + 1);
                scene.Connect(scene.edges[i]);
            }
            if (!scene.effect->Update(nullptr)) {
                state.SkipWithError("not compiled");
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetComplexityN(count);
}
BENCHMARK(Grow)->Apply(Growth);

/// A value at the bottom changes on one primitive.
void ChangeValue(benchmark::State& state, Shape shape) {
    const int count = static_cast<int>(state.range(0));
    Benchmarks::NullContext context;
    Scene scene(&context);
    scene.Build(shape, count);
    Benchmarks::NullPrimitive primitive;
    scene.effect->CreateReference(&primitive);
    scene.manager.Update(nullptr);
    IShader* const leaf = scene.edges.front().pUsed;
    float value = 0.0f;
    for (auto _ : state) {
        leaf->SetParameter(nullptr, "level", value += 1.0f);
        scene.manager.Update(nullptr);
    }
    state.SetComplexityN(count);
}
BENCHMARK_CAPTURE(ChangeValue, Chain, Chain)->Apply(Growth);

enum class End { Effect, ShadersFromBelow, ShadersFromAbove, Manager };

/// Everything goes, in one of several ways.
void Destroy(benchmark::State& state, Shape shape, End end) {
    const int count = static_cast<int>(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        {
            Benchmarks::NullContext context;
            Scene scene(&context);
            scene.Build(shape, count);
            scene.effect->Update(nullptr);
            state.ResumeTiming();
            if (end == End::Effect) {
                scene.manager.DestroyEffectSurface(scene.effect);
            } else if (end == End::Manager) {
                scene.manager.Shutdown();
            } else {
                if (end == End::ShadersFromAbove) {
                    std::reverse(scene.shaders.begin(), scene.shaders.end());
                }
                for (IShader* shader : scene.shaders) {
                    scene.manager.DestroyShader(shader);
                }
            }
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
    state.SetComplexityN(count);
    state.SetItemsProcessed(state.iterations() * count);
}

#define TOLEN_DESTROY(shape)                                                                       \
    BENCHMARK_CAPTURE(Destroy, shape##_Effect, shape, End::Effect)->Apply(Growth);                 \
    BENCHMARK_CAPTURE(Destroy, shape##_FromBelow, shape, End::ShadersFromBelow)->Apply(Growth);    \
    BENCHMARK_CAPTURE(Destroy, shape##_FromAbove, shape, End::ShadersFromAbove)->Apply(Growth);    \
    BENCHMARK_CAPTURE(Destroy, shape##_Manager, shape, End::Manager)->Apply(Growth)

TOLEN_DESTROY(Chain);
TOLEN_DESTROY(Diamonds);
TOLEN_DESTROY(Array);
TOLEN_DESTROY(Users);
#undef TOLEN_DESTROY

/// Bytes of the heap for each instance: alone, and what connecting and using it in an effect adds.
void MemoryOfOneInstance(benchmark::State& state, Shape shape) {
    constexpr int kCount = 10000;
    const auto used = [] { return static_cast<double>(mallinfo2().uordblks); };
    for (auto _ : state) {
        Benchmarks::NullContext context;
        Scene scene(&context);
        const double before = used();
        shape(scene, kCount);
        const double made = used();
        scene.ConnectAll();
        const double connected = used();
        scene.MakeEffect();
        const double referenced = used();
        state.counters["instance"] = (made - before) / kCount;
        state.counters["connected"] = (connected - made) / kCount;
        state.counters["in_effect"] = (referenced - connected) / kCount;
    }
}
BENCHMARK_CAPTURE(MemoryOfOneInstance, Chain, Chain)->Iterations(1);
BENCHMARK_CAPTURE(MemoryOfOneInstance, Array, Array)->Iterations(1);

} // namespace
} // namespace Tolen::Effects

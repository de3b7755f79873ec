#include "endtoend/PictureFixture.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Graphs of arithmetic shaders, connected at random and connected anew while they live. Each pixel
/// of a small picture shows the value of one graph, which is compared with the value that the same
/// graph has here.

namespace Tolen::Tests {
namespace {

using Effects::IShader;

constexpr const char* kSource = R"(
interface Value
{
    float Get(vec2 uv);
}

class Constant : Value
{
    input float value = 0.25;
    float Get(vec2 uv) { return value; }
}

class Coordinate : Value
{
    input int axis;
    float Get(vec2 uv) { return axis == 0 ? uv.x : uv.y; }
}

class Average : Value
{
    input Value a;
    input Value b;
    float Get(vec2 uv) { return (a.Get(uv) + b.Get(uv)) * 0.5; }
}

class Product : Value
{
    input Value a = Constant();
    input Value b;
    float Get(vec2 uv) { float x = b.Get(uv); x *= a.Get(uv); return x; }
}

class Least : Value
{
    input Value a;
    input Value b;
    float Get(vec2 uv) { return min(a.Get(uv), b.Get(uv)); }
}

class Blend : Value
{
    input Value a;
    input Value b;
    input float value;
    float Get(vec2 uv) { return mix(a.Get(uv), b.Get(uv), value); }
}

// Its factor is a variable that the constructor sets.
class Halved : Value
{
    input Value a;
    float factor = 0.5;
    float Get(vec2 uv) { return a.Get(uv) * factor; }
}

class Shifted : Value
{
    input Value a;
    input float value;
    float Get(vec2 uv) { return a.Get((uv + vec2(value, 0.25)) * 0.5); }
}

class Common : Value
{
    static input Value shared;
    input Value a;
    float Get(vec2 uv) { return (shared.Get(uv) + a.Get(uv)) * 0.5; }
}

// The loop unrolls.
class Mean : Value
{
    input Value values[];
    float Get(vec2 uv)
    {
        float sum = 0.0;
        for (int i = 0; i < values.length; ++i)
        {
            sum += values[i].Get(uv);
        }
        return values.length == 0 ? 0.0 : sum / float(values.length);
    }
}

// The same, and the index is handed on.
class Ramp : Value
{
    input Value values[];
    float Scale(int i) { return 1.0 / float(i + 1); }
    float Get(vec2 uv)
    {
        float sum = 0.0;
        for (int i = 0; i < values.length; ++i)
            sum = (sum + values[i].Get(uv) * Scale(i)) * 0.5;
        return sum;
    }
}

// The loop stays a loop.
class Decay : Value
{
    input Value values[];
    float Get(vec2 uv)
    {
        float sum = 0.0;
        for (int i = 0; i < values.length; i++)
        {
            sum = (sum + values[i].Get(uv)) * 0.5;
        }
        return sum;
    }
}

// So does this one.
class First : Value
{
    input Value values[];
    input int index;
    float Get(vec2 uv)
    {
        float sum = 0.0;
        for (int i = 0; i < values.length; ++i)
        {
            if (IsBeyond(i))
            {
                break;
            }
            sum = (sum + values[i].Get(uv)) * 0.5;
        }
        return sum;
    }
    bool IsBeyond(int i) { return i >= index; }
}

class Pick : Value
{
    input Value values[];
    input int index;
    float Get(vec2 uv) { return values[index].Get(uv); }
}

class Pairs : Value
{
    input Value values[];
    input Value others[];
    float Get(vec2 uv)
    {
        float sum = 0.0;
        for (int i = 0; i < values.length; ++i)
        {
            for (int k = 0; k < others.length; ++k)
            {
                sum = (sum + values[i].Get(uv) * others[k].Get(uv)) * 0.5;
            }
        }
        return sum;
    }
}

class Probe
{
    input Value graphs[];
    void Shade()
    {
        vec2 pixel = floor(kl_HitPosition.xy);
        vec2 uv = (pixel + 0.5) / 8.0;
        int index = int(pixel.y) * 8 + int(pixel.x);
        accumulate(o_color, vec3(graphs[index].Get(uv), 0.0, 0.0));
    }
}
)";

enum class Inputs { kNone, kA, kAB, kValues, kValuesOthers };

struct Kind {
    const char* name;
    Inputs inputs;
};

enum KindIndex {
    kConstant,
    kCoordinate,
    kAverage,
    kProduct,
    kLeast,
    kBlend,
    kHalved,
    kShifted,
    kCommon,
    kMean,
    kRamp,
    kDecay,
    kFirst,
    kPick,
    kPairs,
    kCountKinds,
};

const Kind kKinds[] = {
    {"Constant", Inputs::kNone}, {"Coordinate", Inputs::kNone}, {"Average", Inputs::kAB},
    {"Product", Inputs::kAB},    {"Least", Inputs::kAB},        {"Blend", Inputs::kAB},
    {"Halved", Inputs::kA},      {"Shifted", Inputs::kA},       {"Common", Inputs::kA},
    {"Mean", Inputs::kValues},   {"Ramp", Inputs::kValues},     {"Decay", Inputs::kValues},
    {"First", Inputs::kValues},  {"Pick", Inputs::kValues},     {"Pairs", Inputs::kValuesOthers},
};
static_assert(std::size(kKinds) == kCountKinds);

struct Place {
    float u;
    float v;
};

/// One shader, and what it computes.
struct Node {
    KindIndex kind = kConstant;
    IShader* pShader = nullptr;
    std::vector<const Node*> values; ///< those of the inputs a and b, or of the array values
    std::vector<const Node*> others;
    float value = 0.25f;
    int index = 0;
    int cost = 1; ///< calls that one call of this leads to

    static float Fold(float sum, float next) { return (sum + next) * 0.5f; }

    float Get(Place uv) const {
        const auto a = [&] { return values[0]->Get(uv); };
        const auto b = [&] { return values[1]->Get(uv); };
        float sum = 0.0f;
        switch (kind) {
        case kConstant:
            return value;
        case kCoordinate:
            return index == 0 ? uv.u : uv.v;
        case kAverage:
            return (a() + b()) * 0.5f;
        case kProduct:
            return b() * a();
        case kLeast:
            return std::min(a(), b());
        case kBlend:
            return a() * (1.0f - value) + b() * value;
        case kHalved:
            return a() * 0.5f;
        case kShifted:
            return values[0]->Get({(uv.u + value) * 0.5f, (uv.v + 0.25f) * 0.5f});
        case kCommon:
            return (kShared + a()) * 0.5f;
        case kMean:
            for (const Node* node : values) {
                sum += node->Get(uv);
            }
            return values.empty() ? 0.0f : sum / static_cast<float>(values.size());
        case kRamp:
            for (std::size_t i = 0; i < values.size(); ++i) {
                sum = Fold(sum, values[i]->Get(uv) / static_cast<float>(i + 1));
            }
            return sum;
        case kDecay:
            for (const Node* node : values) {
                sum = Fold(sum, node->Get(uv));
            }
            return sum;
        case kFirst:
            for (int i = 0; i < static_cast<int>(values.size()) && i < index; ++i) {
                sum = Fold(sum, values[static_cast<std::size_t>(i)]->Get(uv));
            }
            return sum;
        case kPick:
            // Beyond the array there is nothing.
            return index >= 0 && index < static_cast<int>(values.size())
                       ? values[static_cast<std::size_t>(index)]->Get(uv)
                       : 0.0f;
        case kPairs:
            for (const Node* node : values) {
                for (const Node* other : others) {
                    sum = Fold(sum, node->Get(uv) * other->Get(uv));
                }
            }
            return sum;
        case kCountKinds:
            break;
        }
        return sum;
    }

    static constexpr float kShared = -0.75f; ///< what the static input gives
};

using Graph = std::vector<std::unique_ptr<Node>>;

/// A frame of kEdge by kEdge pixels, each with a graph.
class RandomGraphs : public PictureFixture, public testing::WithParamInterface<unsigned> {
protected:
    static constexpr int kEdge = 8;
    static constexpr int kCountGraphs = kEdge * kEdge;
    static constexpr int kGreatestCost = 60;

    RandomGraphs() : PictureFixture(kEdge), _random(GetParam()) {
        Load("values.klsl", kSource);
        Result result;
        IShader* const shared = Make("Constant");
        shared->SetParameter(&result, "value", Node::kShared);
        EXPECT_TRUE(manager.GetPrototypeShader("Common", &result)->SetParameter("shared", shared));
        _pProbe = Make("Probe");
    }

    static std::string Last(const Result& result) {
        return result.IsEmpty() ? std::string() : result.GetLast();
    }

    int Below(int end) { return static_cast<int>(_random() % static_cast<unsigned>(end)); }

    /// A multiple of 1/64 from -1 to 1, which text and arithmetic keep exactly.
    float Number() { return static_cast<float>(Below(129) - 64) / 64.0f; }

    template <class T>
    void Set(Node& node, const char* name, T value) {
        Result result;
        EXPECT_TRUE(node.pShader->SetParameter(&result, name, value)) << Last(result);
    }

    void SetArray(IShader* shader, const char* name, const std::vector<IShader*>& shaders) {
        Result result;
        std::vector<IShader*> cells = shaders;
        const int length = static_cast<int>(cells.size());
        EXPECT_TRUE(shader->GetParameter(name)->SetLength(length));
        EXPECT_TRUE(shader->SetParameter(&result, name, cells.data(), length)) << Last(result);
    }

    static std::vector<IShader*> Shaders(const std::vector<const Node*>& nodes) {
        std::vector<IShader*> shaders;
        shaders.reserve(nodes.size());
        for (const Node* node : nodes) {
            shaders.push_back(node->pShader);
        }
        return shaders;
    }

    /// Some of the first @p end nodes that @p node can call without becoming too costly.
    std::vector<const Node*> Choose(const Graph& graph, int end, int count, int& budget) {
        std::vector<const Node*> chosen;
        for (int i = 0; i < count; ++i) {
            const Node* node = graph[static_cast<std::size_t>(Below(end))].get();
            if (node->cost > budget) {
                node = graph.front().get(); // which calls nothing
            }
            budget -= node->cost;
            chosen.push_back(node);
        }
        return chosen;
    }

    /// Gives a node, the one at @p position, new values and new connections to those before it.
    void Rewire(Graph& graph, int position) {
        Node& node = *graph[static_cast<std::size_t>(position)];
        int budget = kGreatestCost;
        switch (kKinds[node.kind].inputs) {
        case Inputs::kNone:
            break;
        case Inputs::kA:
        case Inputs::kAB: {
            const int count = kKinds[node.kind].inputs == Inputs::kA ? 1 : 2;
            node.values = Choose(graph, position, count, budget);
            Set(node, "a", node.values[0]->pShader);
            if (count == 2) {
                Set(node, "b", node.values[1]->pShader);
            }
            break;
        }
        case Inputs::kValuesOthers:
            budget /= 4;
            node.others = Choose(graph, position, Below(4), budget);
            SetArray(node.pShader, "others", Shaders(node.others));
            [[fallthrough]];
        case Inputs::kValues:
            node.values = Choose(graph, position, Below(6), budget);
            SetArray(node.pShader, "values", Shaders(node.values));
            break;
        }
        SetValues(node);
    }

    void SetValues(Node& node) {
        switch (node.kind) {
        case kConstant:
        case kBlend:
        case kShifted:
            node.value = Number();
            Set(node, "value", node.value);
            break;
        case kCoordinate:
            node.index = Below(2);
            Set(node, "axis", node.index);
            break;
        case kFirst:
        case kPick:
            node.index = Below(8) - 1;
            Set(node, "index", node.index);
            break;
        default:
            break;
        }
    }

    /// What a call of any node costs; those below come before those above.
    static void UpdateCosts(Graph& graph) {
        for (const auto& node : graph) {
            const auto sum = [](const std::vector<const Node*>& nodes) {
                int cost = 0;
                for (const Node* below : nodes) {
                    cost += below->cost;
                }
                return cost;
            };
            const int times = std::max<int>(1, static_cast<int>(node->values.size()));
            node->cost =
                1 + sum(node->values) * std::max<int>(1, static_cast<int>(node->others.size())) +
                sum(node->others) * times;
        }
    }

    void AddNode(Graph& graph) {
        auto node = std::make_unique<Node>();
        node->kind = graph.empty() ? kConstant : static_cast<KindIndex>(Below(kCountKinds));
        node->pShader = Make(kKinds[node->kind].name);
        graph.push_back(std::move(node));
        Rewire(graph, static_cast<int>(graph.size()) - 1);
        UpdateCosts(graph);
    }

    void MakeGraphs() {
        for (int i = 0; i < kCountGraphs; ++i) {
            Graph& graph = _graphs.emplace_back();
            for (int left = 1 + Below(40); left > 0; --left) {
                AddNode(graph);
            }
            _roots.push_back(graph.back().get());
        }
    }

    void StartEffect() {
        SetArray(_pProbe, "graphs", Shaders(_roots));
        Effects::IEffect* const effect = manager.CreateEffectSurface();
        EXPECT_TRUE(effect->SetRoot(_pProbe));
        AddSquare(effect);
    }

    /// Renders, and compares each pixel with what its graph gives.
    void ExpectValues() {
        Render();
        for (int i = 0; i < kCountGraphs; ++i) {
            const int column = i % kEdge;
            const int row = i / kEdge;
            const Place uv{(static_cast<float>(column) + 0.5f) / 8.0f,
                           (static_cast<float>(row) + 0.5f) / 8.0f};
            EXPECT_NEAR(GetPixel(column, row)[0],
                        _roots[static_cast<std::size_t>(i)]->Get(uv), 1e-5f)
                << "graph " << i << " of " << _graphs[static_cast<std::size_t>(i)].size();
        }
    }

    /// Connects one shader of a graph anew, if that doesn't let the graph grow out of hand.
    void Change(Graph& graph) {
        if (graph.size() < 2) {
            SetValues(*graph.front());
            return;
        }
        Rewire(graph, 1 + Below(static_cast<int>(graph.size()) - 1));
        UpdateCosts(graph);
        for (std::size_t i = 1; i < graph.size(); ++i) {
            if (graph[i]->cost > 4 * kGreatestCost) {
                Rewire(graph, static_cast<int>(i));
                UpdateCosts(graph);
            }
        }
    }

    std::minstd_rand _random;
    IShader* _pProbe = nullptr;
    std::vector<Graph> _graphs;
    std::vector<const Node*> _roots;
};

TEST_P(RandomGraphs, GiveTheirValues_AndThoseOfEveryChange) {
    MakeGraphs();
    StartEffect();
    ExpectValues();
    for (int round = 0; round < 3; ++round) {
        for (Graph& graph : _graphs) {
            if (Below(4) == 0) {
                Change(graph);
            }
        }
        // And one pixel shows what another shader of some graph gives.
        const auto from = static_cast<std::size_t>(Below(kCountGraphs));
        const int to = Below(kCountGraphs);
        _roots[static_cast<std::size_t>(to)] =
            _graphs[from][static_cast<std::size_t>(Below(static_cast<int>(_graphs[from].size())))]
                .get();
        Result result;
        EXPECT_TRUE(_pProbe->SetParameter(&result, "graphs",
                                          _roots[static_cast<std::size_t>(to)]->pShader, to))
            << Last(result);
        ExpectValues();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomGraphs, testing::Range(1u, 17u));

} // namespace
} // namespace Tolen::Tests

#include "EffectsFixture.h"
#include "Graph.h"
#include "SmallStack.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"

#include <algorithm>
#include <vector>

/// Graphs of shaders that hang very deep, on a thread with a small stack.

namespace Tolen::Effects::Tests {
namespace {

/// Of the first test. The others hang less deep, to save time, and still much deeper than anything
/// that goes down by recursion could follow on the small stack.
constexpr int kDepthMost = 10000;
constexpr int kDepth = 3000;

constexpr const char* kSource = R"(
interface IValue { float get(float x); }
class Leaf : IValue {
    input float level = 1.0;
    float get(float x) { return level * x; }
}
class Mapped : IValue {
    coord vec2 uv;
    float get(float x) { return uv.x * x; }
}
class Pair : IValue {
    input IValue left;
    input IValue right;
    float get(float x) { return left.get(x) + right.get(x); }
}
class Shared : IValue {
    static input IValue below;
    float get(float x) { return Shared.of(x); }
    static float of(float x) { return below.get(x); }
}
class Root {
    input IValue value;
    void Shade() { accumulate(o_color, vec3(value.get(1.0))); }
}
)";

/// A root over a chain in which every shader uses the one below twice, so that the ways to the
/// lowest one can't be counted.
class DeepGraphTest : public EffectsFixture {
protected:
    DeepGraphTest() {
        Load(kSource);
        root = Make("Root");
    }
    ~DeepGraphTest() override {
        OnSmallStack([this] { manager.Shutdown(); });
    }

    void MakeShaders(const char* lowest, int depth = kDepth) {
        shaders.push_back(Make(lowest));
        while (static_cast<int>(shaders.size()) < depth) {
            shaders.push_back(Make("Pair"));
        }
    }

    void Connect(std::size_t upper) {
        shaders[upper]->SetParameter(nullptr, "left", shaders[upper - 1]);
        shaders[upper]->SetParameter(nullptr, "right", shaders[upper - 1]);
    }

    void ConnectUpwards() {
        for (std::size_t i = 1; i < shaders.size(); ++i) {
            Connect(i);
        }
        EXPECT_TRUE(root->SetParameter(nullptr, "value", shaders.back()));
    }

    void ConnectDownwards() {
        EXPECT_TRUE(root->SetParameter(nullptr, "value", shaders.back()));
        for (std::size_t i = shaders.size() - 1; i > 0; --i) {
            Connect(i);
        }
    }

    IShader* root = nullptr;
    std::vector<IShader*> shaders; ///< from the lowest one upwards
};

TEST_F(DeepGraphTest, AnEffect_CompilesWhatIsConnectedUpwards) {
    OnSmallStack([this] {
        MakeShaders("Leaf", kDepthMost);
        ConnectUpwards();
        IEffect* const effect = MakeSurface(root);
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(effect->IsCompiled());
    });
}

TEST_F(DeepGraphTest, AnEffectWithARoot_CompilesWhatIsConnectedDownwards) {
    OnSmallStack([this] {
        IEffect* const effect = MakeSurface(root);
        MakeShaders("Leaf");
        ConnectDownwards();
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(effect->IsCompiled());
        // A change at the bottom makes it stale, and it compiles again.
        EXPECT_TRUE(shaders[1]->SetParameter(nullptr, "left", Make("Leaf")));
        EXPECT_FALSE(effect->IsCompiled());
        EXPECT_TRUE(effect->Update(nullptr));
        // So does the loss of half of it.
        manager.DestroyShader(shaders[kDepth / 2]);
        EXPECT_FALSE(effect->IsCompiled());
        EXPECT_FALSE(effect->Update(nullptr));
    });
}

TEST_F(DeepGraphTest, WhatIsMissingAtTheBottom_IsToldOnce) {
    OnSmallStack([this] {
        MakeShaders("Mapped");
        ConnectUpwards();
        Graph graph;
        ASSERT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, root, "graph"));
        Result result;
        EXPECT_FALSE(graph.IsComplete(&result));
        EXPECT_LE(result.GetCount(), static_cast<std::size_t>(2 * kDepth));
        const auto isAboutCoord = [](const std::string& message) {
            return message == "ReferenceParameterCoord::IsComplete() failed for Graph:graph "
                              "Parameter:uv";
        };
        EXPECT_EQ(std::count_if(result.GetMessages().begin(), result.GetMessages().end(),
                                isAboutCoord),
                  1);
        EXPECT_TRUE(shaders.front()->SetCoord(nullptr, "uv", "Coord"));
        EXPECT_TRUE(graph.Compile(nullptr));
        graph.Shutdown();
    });
}

TEST_F(DeepGraphTest, References_EndInEveryOrder) {
    OnSmallStack([this] {
        MakeShaders("Leaf");
        ConnectUpwards();
        IEffect* const effect = MakeSurface(root);
        EXPECT_TRUE(root->SetParameter(nullptr, "value", Make("Leaf")));
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(root->SetParameter(nullptr, "value", shaders.back()));
        EXPECT_TRUE(effect->Update(nullptr));
        manager.DestroyShader(shaders.back());
        EXPECT_FALSE(effect->Update(nullptr));
        EXPECT_TRUE(root->SetParameter(nullptr, "value", shaders[kDepth - 2]));
        EXPECT_TRUE(effect->Update(nullptr));
        manager.DestroyEffectSurface(effect);
        EXPECT_FALSE(console.Contains("Not Found"));
    });
}

TEST_F(DeepGraphTest, WhatHangsBelowAClass_IsAsDeep) {
    OnSmallStack([this] {
        MakeShaders("Leaf");
        for (std::size_t i = 1; i < shaders.size(); ++i) {
            Connect(i);
        }
        manager.GetPrototypeShader("Shared", nullptr)->SetParameter("below", shaders.back());
        EXPECT_TRUE(root->SetParameter(nullptr, "value", Make("Shared")));
        IEffect* const effect = MakeSurface(root);
        EXPECT_TRUE(effect->Update(nullptr));
        EXPECT_TRUE(effect->IsCompiled());
        manager.DestroyEffectSurface(effect);
    });
}

} // namespace
} // namespace Tolen::Effects::Tests

#include "EffectsFixture.h"
#include "TolenEffects/IParameter.h"

#include <algorithm>
#include <random>
#include <vector>

/// Which connections would close a circle, compared with a search through the whole graph.

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
interface INode { float Get(); }
class Pair : INode {
    input INode a;
    input INode b;
    float Get() { return a.Get() + b.Get(); }
}
class Shared : INode {
    static input INode below;
    float Get() { return Shared.of(); }
    static float of() { return below.Get(); }
}
)";

class InputCycleTest : public EffectsFixture, public testing::WithParamInterface<unsigned int> {
protected:
    static constexpr std::size_t kShaders = 24;

    InputCycleTest() : random(GetParam()) {
        Load(kSource);
        for (std::size_t i = 0; i < kShaders; ++i) {
            shaders.push_back(Make("Pair"));
        }
    }

    std::size_t Pick(std::size_t count) { return random() % count; }

    bool DependsOn(IShader* upper, IShader* lower) {
        std::vector<IShader*> open{upper};
        std::vector<IShader*> met;
        while (!open.empty()) {
            IShader* const shader = open.back();
            open.pop_back();
            if (shader == lower) {
                return true;
            }
            for (const char* input : {"a", "b"}) {
                IShader* below = nullptr;
                shader->GetParameter(input)->Get(below);
                if (below != nullptr && std::find(met.begin(), met.end(), below) == met.end()) {
                    met.push_back(below);
                    open.push_back(below);
                }
            }
        }
        return false;
    }

    void ConnectAtRandom(int count) {
        for (int i = 0; i < count; ++i) {
            IShader* const upper = shaders[Pick(kShaders)];
            IShader* const lower = Pick(8) == 0 ? nullptr : shaders[Pick(kShaders)];
            const char* const input = Pick(2) == 0 ? "a" : "b";
            IShader* held = nullptr;
            upper->GetParameter(input)->Get(held);
            const bool closes = lower != nullptr && lower != held && DependsOn(lower, upper);
            ASSERT_EQ(upper->SetParameter(nullptr, input, lower), !closes);
            if (Pick(64) == 0) {
                const std::size_t gone = Pick(kShaders);
                manager.DestroyShader(shaders[gone]);
                shaders[gone] = Make("Pair");
            }
        }
    }

    std::mt19937 random;
    std::vector<IShader*> shaders;
};

TEST_P(InputCycleTest, WhatDependsOnAnInputsShader_IsRefused) { ConnectAtRandom(2000); }

TEST_P(InputCycleTest, AClassWithInputs_ChangesNothingForOthers) {
    ConnectAtRandom(200);
    Make("Shared");
    ConnectAtRandom(2000);
}

INSTANTIATE_TEST_SUITE_P(Seeds, InputCycleTest, testing::Range(1u, 9u));

} // namespace
} // namespace Tolen::Effects::Tests

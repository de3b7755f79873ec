#include "EffectsFixture.h"
#include "OnceListener.h"
#include "TolenEffects/IGraph.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceShader.h"

#include <functional>
#include <string>
#include <vector>

/// Listeners that end graphs, shaders or the manager while references are made or given back, and
/// references that outlive their graph.

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Paint {
    input vec3 color = vec3(0.5);
    coord vec2 uv;
    output vec4 o_side;
    static input float gain = 1.0;
    static float Gain() { return gain; }
    void Shade() { accumulate(o_side, vec4(color * uv.x * Gain(), 1.0)); }
}
class Plain { void Shade() { accumulate(o_color, vec3(1.0)); } }
class Other { void Shade() { accumulate(o_color, vec3(Paint.Gain())); } }
)";

using ListenerAddOutput = Once<TypeSpecifier, const std::string&>;
using ListenerRemoveOutput = Once<const std::string&>;

class GraphLifetimeTest : public EffectsFixture {
protected:
    GraphLifetimeTest() { Start(); }

    void Start() {
        Load(kSource);
        paint = Make("Paint");
        EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Coord"));
        plain = Make("Plain");
        effect = MakeSurface(plain);
    }

    /// Everything once more, after a shutdown in the middle of a test.
    void Restart() {
        manager.Shutdown();
        EXPECT_EQ(context.GetCountLive(), 0);
        Result result;
        ASSERT_TRUE(manager.Init(console.Get(), &context, &result));
        Start();
    }

    /// A graph that the test can end.
    IGraph* GetGraph() { return plain->CreateGraphKind0(); }

    IShader* GetRoot() {
        IShader* root = nullptr;
        effect->GetRoot(root);
        return root;
    }

    /// What a listener may do to what calls it.
    struct Ending {
        const char* name;
        std::function<void()> act;
    };
    std::vector<Ending> GetEndings() {
        return {
            {"the shader", [this] { manager.DestroyShader(paint); }},
            {"the shader, twice",
             [this] {
                 manager.DestroyShader(paint);
                 manager.DestroyShader(paint);
             }},
            {"the old root", [this] { manager.DestroyShader(plain); }},
            {"the effect", [this] { manager.DestroyEffectSurface(effect); }},
            {"the graph", [this] { effect->SetRoot(plain); }},
            {"a graph of its own", [this] { plain->DestroyGraphKind0(); }},
            {"the manager", [this] { manager.Shutdown(); }},
            {"all",
             [this] {
                 manager.DestroyShader(paint);
                 manager.DestroyEffectSurface(effect);
                 plain->DestroyGraphKind0();
                 manager.DestroyShader(plain);
                 manager.Shutdown();
             }},
        };
    }

    IShader* paint = nullptr;
    IShader* plain = nullptr;
    IEffect* effect = nullptr;
};

TEST_F(GraphLifetimeTest, AListenerOfAttributes_MayEndAnythingWhileTheOldGraphGoes) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        ASSERT_TRUE(effect->SetRoot(paint));
        ASSERT_TRUE(effect->Update(nullptr));
        Once<IEffect*> end(ending.act);
        effect->AddListenerChangeAttribute(*end);
        effect->SetRoot(plain);
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfAttributes_MayEndAnythingWhileTheEffectGoes) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        ASSERT_TRUE(effect->SetRoot(paint));
        ASSERT_TRUE(effect->Update(nullptr));
        ListenerRemoveOutput end(ending.act);
        manager.AddListenerRemoveOutput(*end);
        manager.DestroyEffectSurface(effect);
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfTheEndOfAShadersOwnGraph_MayEndAnything) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        Once<IGraph*> end(ending.act);
        IGraph* const graph = plain->CreateGraphKind0();
        graph->AddListenerDelete(*end);
        ASSERT_TRUE(graph->Compile(nullptr));
        plain->DestroyGraphKind0();
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfOutputs_MayEndAnythingWhileARootIsSet) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        ListenerAddOutput end(ending.act);
        manager.AddListenerAddOutput(*end);
        effect->SetRoot(paint);
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfOutputs_MayEndAnythingWhileAReferenceIsMade) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        IGraph* const graph = GetGraph();
        ListenerAddOutput end(ending.act);
        manager.AddListenerAddOutput(*end);
        paint->CreateReference(graph);
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfOutputs_MayEndAnythingWhileAReferenceGoes) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        IReferenceShader* const reference = paint->CreateReference(GetGraph());
        ListenerRemoveOutput end(ending.act);
        manager.AddListenerRemoveOutput(*end);
        EXPECT_TRUE(paint->ReleaseReference(reference));
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AListenerOfOutputs_MayEndAnythingWhileAShaderGoes) {
    for (const Ending& ending : GetEndings()) {
        SCOPED_TRACE(ending.name);
        IEffect* const second = MakeSurface(paint);
        ASSERT_TRUE(effect->SetRoot(paint));
        ASSERT_TRUE(second->Update(nullptr));
        ListenerRemoveOutput end(ending.act);
        manager.AddListenerRemoveOutput(*end);
        manager.DestroyShader(paint);
        EXPECT_TRUE(end.HasRun());
        Restart();
    }
}

TEST_F(GraphLifetimeTest, AShaderThatAListenerDestroys_GoesWhenTheCallIsDone) {
    Once<IShader*> told([] {});
    paint->AddListenerDelete(*told);
    bool wasWhole = false;
    ListenerAddOutput destroy([&] {
        manager.DestroyShader(paint);
        wasWhole = !told.HasRun() && paint->GetClassName() == "Paint";
    });
    manager.AddListenerAddOutput(*destroy);
    EXPECT_TRUE(effect->SetRoot(paint));
    EXPECT_TRUE(wasWhole);
    EXPECT_TRUE(told.HasRun());
    EXPECT_EQ(GetRoot(), nullptr);
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_TRUE(effect->SetRoot(plain));
    EXPECT_TRUE(effect->Update(nullptr));
}

TEST_F(GraphLifetimeTest, AReferenceThatIsNotGivenBack_EndsWithItsGraph) {
    const int outputs = manager.GetCountOutputs();
    for (const bool hasOwnGraph : {false, true}) {
        SCOPED_TRACE(hasOwnGraph);
        IGraph* const graph = GetGraph();
        if (hasOwnGraph) {
            paint->CreateGraphKind0();
        }
        IReferenceShader* const reference = paint->CreateReference(graph);
        EXPECT_EQ(paint->CreateReference(graph), reference);
        ASSERT_NE(reference, nullptr);
        Listener<IReferenceShader*> told;
        reference->AddListenerDelete(*told);
        plain->DestroyGraphKind0();
        EXPECT_EQ(told.count, 1);
        EXPECT_EQ(paint->GetReference(graph), nullptr);
        paint->DestroyGraphKind0();
        EXPECT_EQ(manager.GetCountOutputs(), outputs);
    }
    // Nothing of the graph is touched any more.
    EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Next"));
    EXPECT_TRUE(paint->SetParameter(nullptr, "color", Vector3f(1.0f, 0.0f, 0.0f)));
    manager.DestroyShader(paint);
    EXPECT_EQ(console.GetAll().find("Not Found"), std::string::npos);
}

TEST_F(GraphLifetimeTest, AReferenceOfAClassThatIsNotGivenBack_EndsWithItsGraph) {
    IPrototypeShader* const prototype = manager.GetPrototypeShader("Paint", nullptr);
    IShader* const other = Make("Other");
    const int outputs = manager.GetCountOutputs();
    ASSERT_NE(prototype->AcquireReference(GetGraph()), nullptr);
    ASSERT_NE(other->CreateReference(GetGraph()), nullptr);
    EXPECT_GT(manager.GetCountOutputs(), outputs);
    plain->DestroyGraphKind0();
    EXPECT_EQ(manager.GetCountOutputs(), outputs);
    EXPECT_TRUE(prototype->SetParameter("gain", 2.0f));
    EXPECT_EQ(console.GetAll().find("Not Found"), std::string::npos);
}

TEST_F(GraphLifetimeTest, AGraphThatEnds_GivesNoMoreReferences) {
    IGraph* const graph = GetGraph();
    IReferenceShader* const reference = paint->CreateReference(graph);
    IReferenceShader* again = reference;
    Once<IReferenceShader*> create([&] { again = paint->CreateReference(graph); });
    reference->AddListenerDelete(*create);
    plain->DestroyGraphKind0();
    EXPECT_TRUE(create.HasRun());
    EXPECT_EQ(again, nullptr);
    EXPECT_EQ(paint->GetReference(graph), nullptr);
}

TEST_F(GraphLifetimeTest, AShaderAndItsGraphs_DieInAnyOrderWithReferencesLeft) {
    for (const bool shaderFirst : {false, true}) {
        SCOPED_TRACE(shaderFirst);
        IGraph* const graph = GetGraph();
        IShader* const shader = Make("Paint");
        EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
        ASSERT_NE(shader->CreateReference(graph), nullptr);
        ASSERT_NE(plain->CreateReference(graph), nullptr);
        if (shaderFirst) {
            manager.DestroyShader(shader);
            plain->DestroyGraphKind0();
        } else {
            plain->DestroyGraphKind0();
            manager.DestroyShader(shader);
        }
    }
    EXPECT_EQ(console.GetAll().find("Not Found"), std::string::npos);
}

} // namespace
} // namespace Tolen::Effects::Tests

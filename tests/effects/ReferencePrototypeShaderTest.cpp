#include "ReferencePrototypeShader.h"

#include "EffectsFixture.h"
#include "Graph.h"
#include "PrototypeParameterValueSingle.h"
#include "PrototypeShader.h"
#include "ReferencePrototypeInterface.h"
#include "ReferencePrototypeParameterValueSingle.h"
#include "TolenEffects/IReferenceShader.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
interface ILevel { float Level(); }
class Tools {
    static input float level = 3.0;
    static float table[2];
    static float Twice(float x) { return 2.0 * x * level + table[0]; }
}
class First {
    input float gain = 1.0;
    static float Down(float x) { return x <= 0.0 ? 0.0 : Second.Down(x - 1.0); }
    void Shade() { accumulate(o_color, vec3(First.Down(gain))); }
}
class Second {
    static float Down(float x) { return First.Down(x - 2.0) + Second.Up(x); }
    static float Up(float x) { return x; }
    void Shade() { accumulate(o_color, vec3(Second.Down(1.0))); }
}
class Paint : ILevel {
    input float gain = 1.0;
    float sum;
    output vec4 o_extra;
    output vec3 o_other;
    float Level() { return Tools.Twice(gain); }
    void Shade() { sum = Level(); accumulate(o_color, vec3(sum)); }
}
class Clash {
    output vec4 o_aside;
    output vec4 o_color;
    void Shade() { }
}
)";

class ReferencePrototypeShaderTest : public EffectsFixture {
protected:
    ReferencePrototypeShaderTest() { Load(kSource); }
    ~ReferencePrototypeShaderTest() override { graph.Shutdown(); }

    ReferencePrototypeShader* Init(const std::string& className) {
        EXPECT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, Make(className), "graph"));
        return graph.GetReferenceShader()->GetReferencePrototype();
    }

    PrototypeShader* GetPrototype(const std::string& className) {
        return static_cast<PrototypeShader*>(manager.GetPrototypeShader(className, nullptr));
    }

    static int Count(const std::string& text, const std::string& part) {
        int count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }

    Graph graph;
};

TEST_F(ReferencePrototypeShaderTest, AClass_IsThereOnceForAllItsInstances) {
    ReferencePrototypeShader* const paint = Init("Paint");
    EXPECT_EQ(paint->GetGraph(), &graph);
    EXPECT_EQ(paint->GetPrototypeShader(), GetPrototype("Paint"));
    EXPECT_EQ(paint->GetCountReferenceShader(), 1);
    EXPECT_TRUE(paint->HasConstructorStatic());
    EXPECT_EQ(paint->GetConstructorStatic(), "__ctor_Paint");
    EXPECT_TRUE(paint->IsComplete(nullptr));
    EXPECT_NE(paint->GetParameter("gain"), nullptr);
    EXPECT_EQ(paint->GetParameter("unknown"), nullptr);

    IShader* const other = Make("Paint");
    IReferenceShader* const reference = other->CreateReference(&graph);
    EXPECT_EQ(reference->GetReferencePrototype(), paint);
    EXPECT_EQ(paint->GetCountReferenceShader(), 2);
    EXPECT_EQ(graph.GetCountOutputs(), 2);
    int visited = 0;
    auto visit = [&visited](IReferenceShader*) { return ++visited > 1; };
    auto visitor = FastDelegate1<IReferenceShader*, bool>::Borrow(visit);
    EXPECT_FALSE(paint->VisitReferenceShaders(visitor));
    EXPECT_EQ(visited, 2);

    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(Count(GetText("graph"), "removed call to empty function __ctor_Paint\n"), 1);
    EXPECT_EQ(Count(GetText("graph"), "removed definition of empty function __ctor_Paint\n"), 1);
    EXPECT_TRUE(reference->Release());
    EXPECT_EQ(paint->GetCountReferenceShader(), 1);
}

TEST_F(ReferencePrototypeShaderTest, RemoveReferenceShader_OfAStranger_Tells) {
    ReferencePrototypeShader* const paint = Init("Paint");
    EXPECT_FALSE(paint->RemoveReferenceShader(nullptr));
    EXPECT_EQ(console.GetGeneral(),
              "ReferencePrototypeShader::RemoveReferenceShader Reference Not Found\n");
}

TEST_F(ReferencePrototypeShaderTest, TheLastInstance_TakesTheOutputsAlong) {
    IShader* const paint = Make("Paint");
    Init("First");
    IReferenceShader* const reference = paint->CreateReference(&graph);
    EXPECT_EQ(graph.GetCountOutputs(), 2);
    EXPECT_TRUE(manager.HasOutput("o_extra"));
    EXPECT_TRUE(reference->Release());
    EXPECT_EQ(graph.GetCountOutputs(), 0);
    EXPECT_FALSE(manager.HasOutput("o_extra"));
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(GetText("graph").find("__outputAttachmentIndex_o_extra"), std::string::npos);
}

TEST_F(ReferencePrototypeShaderTest, AnOutputThatIsTaken_FailsAndLeavesTheTakenOne) {
    IShader* const clash = Make("Clash");
    EXPECT_FALSE(graph.Init(&manager, IKLShader::kType_Ray, clash, "graph"));
    EXPECT_TRUE(console.Contains("Graph::AcquireOutput Type Collision\n"));
    EXPECT_TRUE(manager.HasOutput("o_color"));
    EXPECT_FALSE(manager.HasOutput("o_aside"));
    EXPECT_EQ(manager.GetCountOutputs(), 1);
}

TEST_F(ReferencePrototypeShaderTest, ClassesOfStaticCalls_AreHeldWhileTheCallerHasInstances) {
    Init("Paint");
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(Count(GetText("graph"), "removed call to empty function __ctor_Tools\n"), 1);
    EXPECT_NE(GetText("graph").find("uniform float Tools_level"), std::string::npos);
    graph.Shutdown();
    EXPECT_FALSE(console.Contains("Not Found"));
}

TEST_F(ReferencePrototypeShaderTest, ClassesThatCallEachOther_LetEachOtherGo) {
    Init("First");
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(Count(GetText("graph"), "removed call to empty function __ctor_First\n"), 1);
    EXPECT_EQ(Count(GetText("graph"), "removed call to empty function __ctor_Second\n"), 1);
    IShader* const second = Make("Second");
    IReferenceShader* const reference = second->CreateReference(&graph);
    EXPECT_TRUE(reference->Release());
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(Count(GetText("graph"), "removed call to empty function __ctor_Second\n"), 1);
    graph.Shutdown();
    EXPECT_FALSE(console.Contains("Not Found"));
    // Nothing holds a reference of the dead graph: a new one starts afresh.
    Graph next;
    ASSERT_TRUE(next.Init(&manager, IKLShader::kType_Ray, Make("Second"), "next"));
    EXPECT_TRUE(next.Compile(nullptr));
    next.Shutdown();
}

TEST_F(ReferencePrototypeShaderTest, AnInputOfATypeThatNoUniformHas_IsRefused) {
    ReferencePrototypeShader* const paint = Init("Paint");
    PrototypeParameterValueSingle unsupported;
    ReferencePrototypeParameterValueSingle reference;
    EXPECT_FALSE(reference.Init(&unsupported, paint));
    EXPECT_EQ(console.GetGeneral(),
              "ReferencePrototypeParameterValueSingle::Init Type Unsupported\n");
    EXPECT_TRUE(reference.Apply(nullptr, nullptr));
}

TEST_F(ReferencePrototypeShaderTest, AnInterface_KeepsItsClassesInTheGraph) {
    ReferencePrototypeShader* const paint = Init("Paint");
    IPrototypeInterface* const prototype = manager.GetPrototypeInterface("ILevel");
    ReferencePrototypeInterface reference;
    EXPECT_EQ(reference.GetMethodNameMangled("Level"), "");
    ASSERT_TRUE(reference.Init(prototype, &graph));
    EXPECT_EQ(reference.GetGraph(), &graph);
    EXPECT_NE(reference.GetMethodNameMangled("Level"), "");
    EXPECT_TRUE(reference.AddReferencePrototypeShader(paint));
    EXPECT_TRUE(reference.RemoveReferencePrototypeShader(paint));
    EXPECT_EQ(console.GetGeneral(), "");
    EXPECT_FALSE(reference.RemoveReferencePrototypeShader(paint));
    EXPECT_EQ(console.GetGeneral(), "ReferencePrototypeInterface::RemoveReferencePrototypeShader "
                                    "Reference Not Found\n");
    reference.Shutdown();
    EXPECT_EQ(reference.GetGraph(), nullptr);
}

} // namespace
} // namespace Tolen::Effects::Tests

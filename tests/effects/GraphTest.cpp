#include "Graph.h"

#include "EffectsFixture.h"
#include "TolenEffects/IReferenceShader.h"

#include <algorithm>
#include <cstdlib>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kMatt = R"(
class Matt {
    input vec3 color = vec3(0.5);
    coord vec2 uv;
    output vec3 o_extra;
    float Half(float x) { return 0.5 * x; }
    void Empty() {}
    void Unused() { Half(1.0); }
    void Shade() { Empty(); accumulate(o_color, color * Half(uv.x)); }
}
class Plain {
    input float gain = 2.0;
    void Shade() { accumulate(o_color, vec3(gain)); }
}
)";

/// The variable for a scope.
class ScopedEnvironment {
public:
    explicit ScopedEnvironment(const char* value) {
        setenv("TLN_DISABLE_EFFECTS_OPTIMIZATIONS", value, 1);
    }
    ~ScopedEnvironment() { unsetenv("TLN_DISABLE_EFFECTS_OPTIMIZATIONS"); }
};

class GraphTest : public EffectsFixture {
protected:
    GraphTest() { Load(kMatt); }

    IShader* MakeMatt() {
        IShader* const shader = Make("Matt");
        EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
        return shader;
    }

    void Init(IShader* shader) {
        ASSERT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, shader, "graph"));
    }

    Graph graph;
    Listener<IGraph*> changed;
};

TEST_F(GraphTest, Init_WithAShader_TakesAKeyAndIsDirty) {
    Init(Make("Plain"));
    EXPECT_EQ(graph.GetName(), "graph");
    EXPECT_NE(graph.GetNameMangled(), "graph_k0");
    EXPECT_EQ(graph.GetNameMangled().rfind("graph_k", 0), 0u);
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_TRUE(graph.IsComplete(nullptr));
    EXPECT_NE(graph.GetReferenceShader(), nullptr);
    graph.Shutdown();
}

TEST_F(GraphTest, Init_WithoutAShader_FailsTheCheck) {
    EXPECT_FALSE(graph.Init(&manager, IKLShader::kType_Ray, nullptr, "graph"));
    EXPECT_TRUE(checks.Contains("pShader != NULL", "Source/Graph"));
}

TEST_F(GraphTest, ConstructorNames_BearTheKey) {
    Init(Make("Plain"));
    const std::string key = graph.GetNameMangled().substr(5);
    EXPECT_EQ(graph.GetConstructor(), "_ctor_instance" + key);
    EXPECT_EQ(graph.GetConstructorStatic(), "_ctor_static" + key);
    EXPECT_TRUE(graph.HasConstructor());
    EXPECT_TRUE(graph.HasConstructorStatic());
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_OfACompleteGraph_NamesTheShaderByItsCount) {
    Init(MakeMatt());
    Listener<IGraph*> compiled;
    graph.AddListenerCompile(*compiled);
    Result result;
    ASSERT_TRUE(graph.Compile(&result)) << result.GetLast();
    EXPECT_TRUE(graph.IsCompiled());
    EXPECT_EQ(compiled.count, 1);
    EXPECT_EQ(graph.GetCountCompiles(), 1);
    EXPECT_EQ(graph.GetKLShader()->GetName(), graph.GetNameMangled() + "_1");
    EXPECT_EQ(graph.GetOutputsUsed(), (std::set<std::string>{"o_color"}));
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_WithAnUnsetCoord_NamesTheGraphAndMakesNothing) {
    Init(Make("Matt"));
    Result result;
    EXPECT_FALSE(graph.Compile(&result));
    EXPECT_EQ(result.GetLast(), "Graph::Compile failed, graph graph is incomplete");
    EXPECT_EQ(graph.GetCountCompiles(), 0);
    EXPECT_EQ(graph.GetKLShader(), nullptr);
    EXPECT_FALSE(graph.Compile(nullptr));
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_AfterOneThatTheApiRefused_HasTheNextNumber) {
    Init(Make("Plain"));
    context.GetLog().FailNth("SetString", 1);
    Result result;
    EXPECT_FALSE(graph.Compile(&result));
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_TRUE(console.Contains("Graph::_Compile SetString\n"));
    EXPECT_TRUE(graph.Compile(&result));
    EXPECT_EQ(graph.GetKLShader()->GetName(), graph.GetNameMangled() + "_2");
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_ThatTheApiRefuses_ReportsTheLineOfTheSource) {
    Init(Make("Plain"));
    // The accumulate of "Plain" is the only line of the text that calls it.
    const auto lineOf = [](const std::string& text, const std::string& part) {
        return std::count(text.begin(), text.begin() + static_cast<long>(text.find(part)), '\n') + 1;
    };
    ASSERT_TRUE(graph.Compile(nullptr));
    const long line = lineOf(GetText("graph"), "accumulate");
    context.SetCompileError("String 0 Line " + std::to_string(line) + ": error: no\n");
    context.GetLog().FailNth("SetString", 1);
    Result result;
    EXPECT_FALSE(graph.Compile(&result));
    EXPECT_EQ(result.GetLast(), "library1:13: error: no\n");
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_WithoutAnApiShader_FailsAndKeepsTheCount) {
    Init(Make("Plain"));
    context.GetLog().FailNth("CreateShader", 1);
    EXPECT_FALSE(graph.Compile(nullptr));
    EXPECT_EQ(graph.GetCountCompiles(), 0);
    EXPECT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(graph.GetCountCompiles(), 1);
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_OptimizesUnlessTheVariableIsANumberOtherThanZero) {
    Init(MakeMatt());
    const auto compiles = [this](const char* value) {
        const ScopedEnvironment environment(value);
        EXPECT_TRUE(graph.Compile(nullptr));
        return GetText("graph");
    };
    EXPECT_NE(compiles("0").find("// optimizer removed"), std::string::npos);
    EXPECT_NE(compiles("yes").find("// optimizer removed"), std::string::npos);
    EXPECT_EQ(compiles("1").find("// optimizer removed"), std::string::npos);
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_FromAListenerOfIt_AnswersFalse) {
    Init(Make("Plain"));
    bool nested = true;
    auto compile = [&](IGraph* compiled) {
        nested = compiled->Compile(nullptr);
        return true;
    };
    auto listener = FastDelegate1<IGraph*, bool>::Borrow(compile);
    graph.AddListenerCompile(listener);
    EXPECT_TRUE(graph.Compile(nullptr));
    EXPECT_FALSE(nested);
    graph.Shutdown();
}

TEST_F(GraphTest, Compile_TwiceTheSame_GivesTheSameText) {
    Init(MakeMatt());
    ASSERT_TRUE(graph.Compile(nullptr));
    const std::string first = GetText("graph");
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_EQ(GetText("graph"), first);
    graph.Shutdown();
}

TEST_F(GraphTest, AcquireAttribute_WithAnotherType_FailsAndKeepsTheFirst) {
    Init(Make("Plain"));
    EXPECT_TRUE(graph.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord));
    EXPECT_FALSE(graph.AcquireAttribute(kType_Vec3, "st", kTransformationCoord_Coord));
    EXPECT_TRUE(console.Contains("Graph::AcquireAttribute Type Collision\n"));
    EXPECT_TRUE(graph.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Tangent));
    EXPECT_EQ(graph.GetCountAttributes(), 1);
    auto visit = [](IGraph::Attribute attribute) {
        return attribute.transformation == kTransformationCoord_Coord;
    };
    auto visitor = FastDelegate1<IGraph::Attribute, bool>::Borrow(visit);
    EXPECT_TRUE(graph.VisitAttributes(visitor));
    graph.Shutdown();
}

TEST_F(GraphTest, ReleaseAttribute_WithUsesLeft_StillMakesTheGraphDirty) {
    Init(Make("Plain"));
    graph.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    graph.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    ASSERT_TRUE(graph.Compile(nullptr));
    graph.AddListenerChangeStructure(*changed);
    Listener<IGraph::Attribute> removed;
    graph.AddListenerRemoveAttribute(*removed);
    EXPECT_TRUE(graph.ReleaseAttribute("st"));
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(removed.count, 0);
    EXPECT_EQ(graph.GetCountAttributes(), 1);
    EXPECT_TRUE(graph.ReleaseAttribute("st"));
    EXPECT_EQ(removed.count, 1);
    EXPECT_EQ(graph.GetCountAttributes(), 0);
    EXPECT_TRUE(graph.ReleaseAttribute("st"));
    graph.Shutdown();
}

TEST_F(GraphTest, ReleaseAttribute_WithAListenerThatObjects_AnswersFalse) {
    Init(Make("Plain"));
    graph.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    Listener<IGraph::Attribute> removed;
    removed.answer = false;
    graph.AddListenerRemoveAttribute(*removed);
    EXPECT_FALSE(graph.ReleaseAttribute("st"));
    EXPECT_EQ(graph.GetCountAttributes(), 0);
    graph.Shutdown();
}

TEST_F(GraphTest, VisitAttributes_CallsAllAndJoinsTheAnswers) {
    Init(Make("Plain"));
    graph.AcquireAttribute(kType_Vec2, "b", kTransformationCoord_Coord);
    graph.AcquireAttribute(kType_Vec2, "a", kTransformationCoord_Coord);
    std::string names;
    auto visit = [&names](IGraph::Attribute attribute) {
        names += attribute.name;
        return false;
    };
    auto visitor = FastDelegate1<IGraph::Attribute, bool>::Borrow(visit);
    EXPECT_FALSE(graph.VisitAttributes(visitor));
    EXPECT_EQ(names, "ab");
    graph.Shutdown();
}

TEST_F(GraphTest, Outputs_AreCountedHereAndInTheManager) {
    Init(Make("Plain"));
    graph.AddListenerChangeStructure(*changed);
    EXPECT_TRUE(graph.AcquireOutput(kType_Vec3, "o_depth"));
    EXPECT_TRUE(manager.HasOutput("o_depth"));
    EXPECT_EQ(graph.GetCountOutputs(), 1);
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(graph.AcquireOutput(kType_Vec4, "o_depth"));
    EXPECT_TRUE(console.Contains("Graph::AcquireOutput Type Collision\n"));
    EXPECT_TRUE(graph.ReleaseOutput("o_depth"));
    EXPECT_FALSE(manager.HasOutput("o_depth"));
    EXPECT_EQ(changed.count, 2);
    graph.Shutdown();
}

TEST_F(GraphTest, ReleaseOutput_WithAListenerThatObjects_LeavesNothingBehind) {
    Init(Make("Plain"));
    graph.AcquireOutput(kType_Vec3, "o_depth");
    auto refuse = [](const std::string&) { return false; };
    auto listener = FastDelegate1<const std::string&, bool>::Borrow(refuse);
    graph.AddListenerRemoveOutput(listener);
    EXPECT_FALSE(graph.ReleaseOutput("o_depth"));
    EXPECT_FALSE(manager.HasOutput("o_depth"));
    graph.Shutdown();
}

TEST_F(GraphTest, ClassOutputs_GoWithTheLastInstance) {
    IShader* const matt = MakeMatt();
    Init(matt);
    EXPECT_TRUE(manager.HasOutput("o_extra"));
    graph.Shutdown();
    EXPECT_FALSE(manager.HasOutput("o_extra"));
}

TEST_F(GraphTest, AddDelegateUpdate_WhileDirty_ReachesNobody) {
    Init(Make("Plain"));
    int heard = 0;
    auto hear = [&heard](IGraph*, DelegateUpdate&) { return ++heard > 0; };
    auto listener = FastDelegate2<IGraph*, DelegateUpdate&, bool>::Borrow(hear);
    graph.AddListenerChangeValue(listener);
    DelegateUpdate update;
    EXPECT_TRUE(graph.AddDelegateUpdate(update));
    EXPECT_EQ(heard, 0);
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_TRUE(graph.AddDelegateUpdate(update));
    EXPECT_EQ(heard, 1);
    graph.Shutdown();
}

TEST_F(GraphTest, Apply_WithoutSubscribers_AnswersTrueAndBindsThePrimitive) {
    RecordingPrimitive primitive(context);
    IKLProgram* const program = context.CreateProgram();
    EXPECT_TRUE(graph.Apply(&primitive, program, nullptr));
    EXPECT_EQ(context.GetLog().GetCount("BindPrimitive"), 1);
    EXPECT_EQ(primitive.GetCountBound(), 0);
    context.DestroyProgram(program);
}

TEST_F(GraphTest, RemoveReference_OfAStranger_PrintsALine) {
    EXPECT_FALSE(graph.RemoveReferencePrototypeShader(nullptr));
    EXPECT_FALSE(graph.RemoveReferencePrototypeInterface(nullptr));
    EXPECT_EQ(console.GetGeneral(),
              "Graph::RemoveReferencePrototypeShader PrototypeShader Not Found\n"
              "Graph::RemoveReferencePrototypeInterface IPrototypeInterface Not Found\n");
}

TEST_F(GraphTest, SetCoord_OnACompiledGraph_SwapsTheAttributeAndTellsOfTheChange) {
    IShader* const matt = MakeMatt();
    Init(matt);
    ASSERT_TRUE(graph.Compile(nullptr));
    graph.AddListenerChangeStructure(*changed);
    EXPECT_TRUE(matt->SetCoord(nullptr, "uv", "Coord"));
    EXPECT_EQ(changed.count, 0);
    EXPECT_TRUE(matt->SetCoord(nullptr, "uv", "Other"));
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(graph.IsCompiled());
    std::string names;
    auto visit = [&names](IGraph::Attribute attribute) {
        names += attribute.name + " ";
        return true;
    };
    auto visitor = FastDelegate1<IGraph::Attribute, bool>::Borrow(visit);
    graph.VisitAttributes(visitor);
    EXPECT_EQ(names, "Other ");
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_NE(GetText("graph").find("varying vec2 Other;"), std::string::npos);
    graph.Shutdown();
}

TEST_F(GraphTest, DestroyShader_OfTheRoot_LeavesAGraphWithoutOne) {
    IShader* const plain = Make("Plain");
    Init(plain);
    ASSERT_TRUE(graph.Compile(nullptr));
    graph.AddListenerChangeStructure(*changed);
    manager.DestroyShader(plain);
    EXPECT_EQ(changed.count, 1);
    EXPECT_EQ(graph.GetShader(), nullptr);
    EXPECT_EQ(graph.GetReferenceShader(), nullptr);
    EXPECT_FALSE(graph.IsComplete(nullptr));
    EXPECT_FALSE(graph.Compile(nullptr));
    graph.Shutdown();
}

TEST_F(GraphTest, ReferencesOfOneShader_AreOneAndCounted) {
    IShader* const plain = Make("Plain");
    Init(plain);
    IReferenceShader* const reference = plain->CreateReference(&graph);
    EXPECT_EQ(reference, graph.GetReferenceShader());
    EXPECT_TRUE(reference->Release());
    EXPECT_EQ(plain->GetReference(&graph), reference);
    graph.Shutdown();
    EXPECT_EQ(plain->GetReference(&graph), nullptr);
}

TEST_F(GraphTest, TwoInstancesOfAClass_HaveCodeOfTheirOwnAndOneStaticConstructor) {
    IShader* const root = Make("Plain");
    IShader* const other = Make("Plain");
    Init(root);
    IReferenceShader* const reference = other->CreateReference(&graph);
    ASSERT_NE(reference, nullptr);
    ASSERT_TRUE(graph.Compile(nullptr));
    const std::string text = GetText("graph");
    EXPECT_NE(text.find("void " + root->GetMethodNameMangled("Shade") + "()"), std::string::npos);
    EXPECT_NE(text.find("uniform float gain_k"), text.rfind("uniform float gain_k"));
    EXPECT_EQ(text.find("__ctor_Plain();"), text.rfind("__ctor_Plain();"));
    EXPECT_TRUE(reference->Release());
    graph.Shutdown();
}

TEST_F(GraphTest, Shutdown_Twice_TellsOnce) {
    Init(Make("Plain"));
    Listener<IGraph*> deleted;
    graph.AddListenerDelete(*deleted);
    graph.Shutdown();
    graph.Shutdown();
    EXPECT_EQ(deleted.count, 1);
    EXPECT_EQ(graph.GetMgrEffects(), nullptr);
}

TEST_F(GraphTest, AShaderWithItsOwnGraph_StaysThereAndIsDeclared) {
    IShader* const plain = Make("Plain");
    IGraph* const own = plain->CreateGraphKind0();
    ASSERT_NE(own, nullptr);
    Init(MakeMatt());
    IReferenceShader* const reference = plain->CreateReference(&graph);
    ASSERT_NE(reference, nullptr);
    EXPECT_FALSE(reference->HasConstructor());
    EXPECT_EQ(reference->GetConstructor(), "ReferenceShaderGraph");
    EXPECT_EQ(reference->GetParameter("gain"), nullptr);
    EXPECT_EQ(reference->GetGraph(), own);
    EXPECT_EQ(graph.GetGraphsForeign().size(), 1u);

    ASSERT_TRUE(graph.Compile(nullptr));
    const std::string shade = plain->GetMethodNameMangled("Shade");
    const std::string text = GetText("graph");
    EXPECT_NE(text.find(shade), std::string::npos);
    EXPECT_EQ(text.find("void " + shade + "()\n{"), std::string::npos);
    EXPECT_EQ(text.find("gain_k"), std::string::npos);

    // Nobody in its own graph calls the method, but a text of the same program may.
    ASSERT_TRUE(own->Compile(nullptr));
    EXPECT_NE(GetText(own->GetNameMangled()).find("void " + shade + "()\n{"), std::string::npos);
    EXPECT_TRUE(plain->ReleaseReference(reference));
    EXPECT_TRUE(graph.GetGraphsForeign().empty());
    graph.Shutdown();
}

} // namespace
} // namespace Tolen::Effects::Tests

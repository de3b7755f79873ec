#include "ReferenceShader.h"

#include "EffectsFixture.h"
#include "Graph.h"
#include "MangleMethodPrefixKey.h"
#include "TolenEffects/IReferenceMember.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/Module.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
class Paint {
    input vec3 color = vec3(0.5);
    input float gain;
    input float list[] = float[](1.0, 2.0);
    coord vec2 uv;
    vec3 sum;
    void Shade() { sum = color * gain * list[0] * uv.x; accumulate(o_color, sum); }
}
class Plain {
    input float level = 2.0;
    void Shade() { accumulate(o_color, vec3(level)); }
}
)";

class ReferenceShaderTest : public EffectsFixture {
protected:
    ReferenceShaderTest() { Load(kSource); }
    ~ReferenceShaderTest() override { graph.Shutdown(); }

    IReferenceShader* Init(IShader* shader, IKLShader::Type type = IKLShader::kType_Ray) {
        EXPECT_TRUE(graph.Init(&manager, type, shader, "graph"));
        return graph.GetReferenceShader();
    }

    Graph graph;
};

TEST_F(ReferenceShaderTest, ANode_KnowsThePartsOfItsShader) {
    IShader* const paint = Make("Paint");
    IReferenceShader* const reference = Init(paint);
    EXPECT_EQ(reference->GetShader(), paint);
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_NE(reference->GetReferencePrototype(), nullptr);
    EXPECT_EQ(reference->GetCountParameters(), 3);
    EXPECT_EQ(reference->GetCountMembers(), 1);
    EXPECT_EQ(reference->GetCountCoords(), 1);
    EXPECT_EQ(reference->GetParameter("color")->GetParameter(), paint->GetParameter("color"));
    EXPECT_EQ(reference->GetMember("sum")->GetMember(), paint->GetMember("sum"));
    EXPECT_EQ(reference->GetCoord("uv")->GetParameter(), paint->GetCoord("uv"));
    EXPECT_EQ(reference->GetParameter("uv"), nullptr);
    EXPECT_EQ(reference->GetMember("color"), nullptr);
    EXPECT_EQ(reference->GetCoord("sum"), nullptr);
    EXPECT_TRUE(reference->HasMethod("Shade"));
    EXPECT_FALSE(reference->HasMethod("Init"));
    EXPECT_EQ(reference->GetMethodMangled("Shade"), "Paint_Shade" + paint->GetKeyName());
    EXPECT_TRUE(reference->HasConstructor());
    EXPECT_EQ(reference->GetConstructor(), "__ctor_" + paint->GetKeyName());
}

TEST_F(ReferenceShaderTest, Visits_GoByNameToTheEndAndJoinTheAnswers) {
    IReferenceShader* const reference = Init(Make("Paint"));
    std::string names;
    bool answer = true;
    auto visit = [&](const std::string& name, IReferenceParameter*, Result*) {
        names += name + " ";
        return answer;
    };
    auto visitor =
        FastDelegate3<const std::string&, IReferenceParameter*, Result*, bool>::Borrow(visit);
    EXPECT_TRUE(reference->VisitParameters(visitor, nullptr));
    EXPECT_TRUE(reference->VisitCoords(visitor, nullptr));
    EXPECT_EQ(names, "color gain list uv ");
    answer = false;
    EXPECT_FALSE(reference->VisitParameters(visitor, nullptr));
    EXPECT_EQ(names, "color gain list uv color gain list ");
    auto visitMember = [&](const std::string& name, IReferenceMember*) { return name != "sum"; };
    auto visitorMembers =
        FastDelegate2<const std::string&, IReferenceMember*, bool>::Borrow(visitMember);
    EXPECT_FALSE(reference->VisitMembers(visitorMembers));
}

TEST_F(ReferenceShaderTest, IsComplete_IsTrueOnceEveryInputIsSet) {
    IShader* const paint = Make("Paint");
    IReferenceShader* const reference = Init(paint);
    EXPECT_FALSE(reference->IsComplete(nullptr));
    EXPECT_TRUE(paint->SetParameter(nullptr, "gain", 1.0f));
    EXPECT_FALSE(reference->IsComplete(nullptr));
    EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Coord"));
    EXPECT_TRUE(reference->IsComplete(nullptr));
}

TEST_F(ReferenceShaderTest, CollectShader_OfAnIncompleteShader_Tells) {
    IShader* const paint = Make("Paint");
    paint->SetName("my%spaint");
    IReferenceShader* const reference = Init(paint);
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    console.Clear();
    EXPECT_FALSE(reference->CollectShader(module.get()));
    EXPECT_TRUE(console.Contains("ReferenceShaderNode::CollectShader Shader Incomplete\n"));
    EXPECT_TRUE(console.Contains("ReferenceParameterCoord::IsComplete() failed for Graph:graph"));
    EXPECT_EQ(module->ErrorMessages(),
              std::vector<std::string>{"Shader 'my%spaint' is incomplete."});
    EXPECT_TRUE(module->GetFunctionDefinitions().empty());
}

TEST_F(ReferenceShaderTest, ANewName_OfACoord_IsAChangeOfStructure) {
    IShader* const paint = Make("Paint");
    IReferenceShader* const reference = Init(paint);
    Listener<IReferenceShader*> changed;
    reference->AddListenerChangeStructure(*changed);
    EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Coord"));
    EXPECT_GE(changed.count, 1);
    const int before = changed.count;
    EXPECT_TRUE(paint->SetParameter(nullptr, "gain", 1.0f));
    EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Coord"));
    EXPECT_EQ(changed.count, before);
    reference->RemoveListenerChangeStructure(*changed);
}

TEST_F(ReferenceShaderTest, AfterItsShader_ItAnswersNeutrally) {
    IShader* const plain = Make("Plain");
    Listener<IReferenceShader*> deleted;
    ReferenceShader reference;
    Init(plain);
    IShader* const other = Make("Plain");
    ASSERT_TRUE(reference.Init(other, &graph));
    reference.AddListenerDelete(*deleted);
    manager.DestroyShader(other);
    EXPECT_FALSE(reference.HasMethod("Shade"));
    EXPECT_EQ(reference.GetMethodMangled("Shade"), "");
    EXPECT_FALSE(reference.IsComplete(nullptr));
    EXPECT_FALSE(reference.CollectShader(nullptr));
    EXPECT_FALSE(reference.CollectDeclarationMethod(nullptr, "Shade"));
    EXPECT_FALSE(reference.HasConstructor());
    EXPECT_EQ(reference.GetConstructor(), "");
    EXPECT_FALSE(reference.Apply(nullptr, nullptr));
    EXPECT_EQ(reference.GetParameter("level"), nullptr);
    EXPECT_EQ(reference.GetCountParameters(), 0);
    EXPECT_EQ(reference.GetShader(), nullptr);
    EXPECT_EQ(reference.GetGraph(), nullptr);
    EXPECT_FALSE(reference.Release());
    EXPECT_EQ(deleted.count, 0);
    reference.Shutdown();
    EXPECT_EQ(deleted.count, 1);
}

TEST_F(ReferenceShaderTest, AGraphOfAnotherStage_DoesNotMakeAForeignShader) {
    IShader* const plain = Make("Plain");
    ASSERT_NE(plain->CreateGraphKind2(), nullptr);
    Init(Make("Plain"));
    IReferenceShader* const reference = plain->CreateReference(&graph);
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_TRUE(graph.GetGraphsForeign().empty());
    EXPECT_TRUE(reference->Release());
}

TEST_F(ReferenceShaderTest, AGraphThatComesLater_LeavesTheNodeANode) {
    IShader* const plain = Make("Plain");
    Init(Make("Plain"));
    IReferenceShader* const reference = plain->CreateReference(&graph);
    ASSERT_NE(plain->CreateGraphKind0(), nullptr);
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_TRUE(reference->HasConstructor());
    EXPECT_TRUE(reference->Release());
}

TEST_F(ReferenceShaderTest, AForeignShader_ForwardsToItsGraphAndHasNoParts) {
    IShader* const plain = Make("Plain");
    IGraph* const own = plain->CreateGraphKind0();
    Init(Make("Plain"));
    IReferenceShader* const reference = plain->CreateReference(&graph);
    EXPECT_EQ(reference->GetShader(), plain);
    EXPECT_TRUE(reference->HasMethod("Shade"));
    EXPECT_EQ(reference->GetMethodMangled("Shade"), plain->GetMethodNameMangled("Shade"));
    EXPECT_TRUE(reference->IsComplete(nullptr));
    EXPECT_EQ(reference->GetReferencePrototype(), nullptr);
    EXPECT_EQ(reference->GetMember("sum"), nullptr);
    EXPECT_EQ(reference->GetCoord("uv"), nullptr);
    EXPECT_EQ(reference->GetCountParameters() + reference->GetCountMembers() +
                  reference->GetCountCoords(),
              0);
    // A value in its graph goes on to the values of the using graph.
    ASSERT_TRUE(own->Compile(nullptr));
    ASSERT_TRUE(graph.Compile(nullptr));
    Listener<IGraph*, DelegateUpdate&> changed;
    graph.AddListenerChangeValue(*changed);
    EXPECT_TRUE(plain->SetParameter(nullptr, "level", 1.0f));
    EXPECT_EQ(changed.count, 1);
    graph.RemoveListenerChangeValue(*changed);
    EXPECT_TRUE(plain->ReleaseReference(reference));
}

TEST_F(ReferenceShaderTest, ASecondUserOfAForeignShader_ChangesNothingForTheFirst) {
    IShader* const plain = Make("Plain");
    IGraph* const own = plain->CreateGraphKind0();
    Init(Make("Plain"));
    IReferenceShader* const first = plain->CreateReference(&graph);
    ASSERT_TRUE(own->Compile(nullptr));
    Graph user;
    ASSERT_TRUE(user.Init(&manager, IKLShader::kType_Ray, Make("Plain"), "user"));
    IReferenceShader* const second = plain->CreateReference(&user);
    EXPECT_TRUE(own->IsCompiled());
    EXPECT_TRUE(checks.IsEmpty());
    EXPECT_TRUE(plain->ReleaseReference(second));
    user.Shutdown();
    EXPECT_TRUE(plain->ReleaseReference(first));
}

TEST_F(ReferenceShaderTest, AForeignGraphThatDies_IsToldAndLeavesItsShaderToTheUser) {
    IShader* const plain = Make("Plain");
    ASSERT_NE(plain->CreateGraphKind0(), nullptr);
    Init(Make("Plain"));
    IReferenceShader* const reference = plain->CreateReference(&graph);
    ASSERT_TRUE(plain->DestroyGraphKind0());
    EXPECT_TRUE(checks.Contains("false", "Source/ReferenceShaderGraph"));
    EXPECT_TRUE(graph.GetGraphsForeign().empty());
    EXPECT_EQ(reference->GetShader(), plain);
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_NE(reference->GetReferencePrototype(), nullptr);
    EXPECT_EQ(reference->GetCountParameters(), 1);
    EXPECT_TRUE(graph.Compile(nullptr));
    EXPECT_NE(GetText("graph").find(plain->GetMethodNameMangled("Shade")), std::string::npos);
    EXPECT_TRUE(plain->ReleaseReference(reference));
}

TEST_F(ReferenceShaderTest, AChangeInAForeignGraph_FailsACheckAndIsPassedOn) {
    IShader* const paint = Make("Paint");
    paint->SetParameter(nullptr, "gain", 1.0f);
    paint->SetCoord(nullptr, "uv", "Coord");
    IGraph* const own = paint->CreateGraphKind0();
    Init(Make("Plain"));
    IReferenceShader* const reference = paint->CreateReference(&graph);
    EXPECT_EQ(graph.GetCountAttributes(), 1);
    ASSERT_TRUE(own->Compile(nullptr));
    Listener<IReferenceShader*> changed;
    reference->AddListenerChangeStructure(*changed);
    EXPECT_TRUE(checks.IsEmpty());
    EXPECT_TRUE(paint->SetCoord(nullptr, "uv", "Other"));
    EXPECT_GE(changed.count, 1);
    EXPECT_TRUE(checks.Contains("false", "Source/ReferenceShaderGraph"));
    reference->RemoveListenerChangeStructure(*changed);
    EXPECT_TRUE(paint->ReleaseReference(reference));
    EXPECT_EQ(graph.GetCountAttributes(), 0);
}

TEST_F(ReferenceShaderTest, AGraphOfNoKnownStage_FailsTheChecks) {
    Init(Make("Plain"), IKLShader::kType_Vertex);
    EXPECT_TRUE(checks.Contains("eType == IKLShader::kType_PrefixRay",
                                "Source/ReferenceShaderNode"));
    IShader* const other = Make("Plain");
    IReferenceShader* const reference = other->CreateReference(&graph);
    EXPECT_TRUE(checks.Contains("false", "Source/ReferenceShader"));
    EXPECT_EQ(reference->GetGraph(), &graph);
    EXPECT_TRUE(reference->Release());
}

TEST_F(ReferenceShaderTest, AMangledMethod_IsPrefixNameAndKey) {
    const std::unique_ptr<Module> module(Module::Create(nullptr));
    const std::unique_ptr<FunctionPrototype> shade(module->CreateFunctionPrototype(
        kFunctionQualifier_None, module->CreateType(kType_Void), module->CreateString("Shade")));
    const Key key(0x1a);
    EXPECT_EQ(MangleMethodPrefixKey(&key).Mangle("Foo_", shade.get()), "Foo_Shade_k1a");
}

} // namespace
} // namespace Tolen::Effects::Tests

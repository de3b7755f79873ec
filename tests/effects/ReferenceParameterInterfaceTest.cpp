#include "EffectsFixture.h"
#include "Graph.h"
#include "PrototypeShader.h"
#include "IReferencePrototypeParameter.h"
#include "ReferencePrototypeShader.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceParameter.h"
#include "TolenEffects/IReferenceShader.h"

#include <functional>
#include <vector>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
interface IShade { vec3 Shade(); }
class Leaf : IShade {
    input float level = 1.0;
    static float bias = 0.25;
    vec3 Shade() { return vec3(level + bias); }
}
class Mapped : IShade {
    coord vec2 uv;
    vec3 Shade() { return vec3(uv.x); }
}
class Writer : IShade {
    output vec4 o_extra;
    vec3 Shade() { accumulate(o_extra, vec4(1.0)); return vec3(0.0); }
}
class Clash : IShade {
    output vec4 o_color;
    vec3 Shade() { return vec3(0.0); }
}
class Pair : IShade {
    input IShade left;
    input IShade right;
    vec3 Shade() { return left.Shade() + right.Shade(); }
}
class Link : IShade {
    input IShade next;
    vec3 Shade() { return next.Shade(); }
}
class List : IShade {
    input IShade items[];
    vec3 Shade() {
        vec3 sum = vec3(0.0);
        for (int i = 0; i < items.length; i++) { sum += items[i].Shade(); }
        return sum;
    }
}
class Shared : IShade {
    static input IShade base;
    vec3 Shade() { return Shared.Base(); }
    static vec3 Base() { return base.Shade(); }
}
class Root {
    input IShade body;
    void Shade() { accumulate(o_color, body.Shade()); }
}
class RootList {
    input IShade items[];
    void Shade() {
        for (int i = 0; i < items.length; i++) { accumulate(o_color, items[i].Shade()); }
    }
}
)";

/// Runs a function when it is called as a listener.
template <class Argument>
class Action : public CreationOrder {
public:
    explicit Action(std::function<void()> run) : _run(std::move(run)) {}
    FastDelegate1<Argument, bool>& operator*() { return _delegate; }

private:
    bool _OnCall(Argument) {
        _run();
        return true;
    }
    std::function<void()> _run;
    FastDelegate1<Argument, bool> _delegate{this, &Action::_OnCall};
};

class ReferenceParameterInterfaceTest : public EffectsFixture {
protected:
    ReferenceParameterInterfaceTest() { Load(kSource); }

    void Connect(IShader* shader, const char* input, IShader* value) {
        Result result;
        EXPECT_TRUE(shader->SetParameter(&result, input, value)) << result.GetLast();
    }

    static int Count(const std::string& text, const std::string& part) {
        int count = 0;
        for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }

    /// The bodies of the functions of @p text whose names begin with @p name.
    static int CountDefinitions(const std::string& text, const std::string& name) {
        int count = 0;
        for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
            const auto end = text.find('\n', at);
            const bool isHead = text.rfind('\n', at) == text.rfind("\nvec3 ", at);
            count += isHead && text.compare(end, 2, "\n{") == 0 ? 1 : 0;
        }
        return count;
    }
};

/// A graph of its own, without an effect.
class ReferenceParameterInterfaceGraphTest : public ReferenceParameterInterfaceTest {
protected:
    ~ReferenceParameterInterfaceGraphTest() override { graph.Shutdown(); }

    IReferenceShader* Init(IShader* root) {
        EXPECT_TRUE(graph.Init(&manager, IKLShader::kType_Ray, root, "graph"));
        return graph.GetReferenceShader();
    }

    Graph graph;
};

TEST_F(ReferenceParameterInterfaceGraphTest, OneInstanceInTwoInputs_HasOneReferenceOfTwoUses) {
    IShader* const pair = Make("Pair");
    IShader* const leaf = Make("Leaf");
    IShader* const root = Make("Root");
    Connect(root, "body", pair);
    Connect(pair, "left", leaf);
    Connect(pair, "right", leaf);
    Init(root);
    ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    EXPECT_EQ(CountDefinitions(GetText("graph"), leaf->GetMethodNameMangled("Shade")), 1);

    IReferenceShader* const reference = leaf->GetReference(&graph);
    ASSERT_NE(reference, nullptr);
    Listener<IReferenceShader*> deleted;
    reference->AddListenerDelete(*deleted);
    Connect(pair, "left", nullptr);
    EXPECT_EQ(leaf->GetReference(&graph), reference);
    Connect(pair, "right", nullptr);
    EXPECT_EQ(leaf->GetReference(&graph), nullptr);
    EXPECT_EQ(deleted.count, 1);
}

TEST_F(ReferenceParameterInterfaceGraphTest, TwoInstancesOfAClass_HaveTwoSetsOfFunctions) {
    IShader* const pair = Make("Pair");
    IShader* const first = Make("Leaf");
    IShader* const second = Make("Leaf");
    IShader* const root = Make("Root");
    Connect(root, "body", pair);
    Connect(pair, "left", first);
    Connect(pair, "right", second);
    Init(root);
    ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    const std::string text = GetText("graph");
    ASSERT_NE(first->GetMethodNameMangled("Shade"), second->GetMethodNameMangled("Shade"));
    EXPECT_EQ(CountDefinitions(text, first->GetMethodNameMangled("Shade")), 1);
    EXPECT_EQ(CountDefinitions(text, second->GetMethodNameMangled("Shade")), 1);
    EXPECT_EQ(Count(text, "\t__ctor_Leaf();"), 1);
}

TEST_F(ReferenceParameterInterfaceGraphTest, AnUnconnectedInput_IsIncompleteWithoutAWord) {
    IShader* const root = Make("Root");
    IReferenceShader* const reference = Init(root);
    IReferenceParameter* const body = reference->GetParameter("body");
    ASSERT_NE(body, nullptr);
    EXPECT_EQ(body->GetParameter(), root->GetParameter("body"));
    EXPECT_EQ(body->GetGraph(), &graph);
    EXPECT_EQ(body->AcquireLocal(nullptr), nullptr);
    body->ReleaseLocal(nullptr);
    Result result;
    EXPECT_FALSE(body->IsComplete(&result));
    EXPECT_TRUE(result.IsEmpty());
    EXPECT_TRUE(body->Apply(nullptr, nullptr));

    IShader* const leaf = Make("Leaf");
    Connect(root, "body", leaf);
    EXPECT_TRUE(body->IsComplete(&result));
    EXPECT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    Connect(root, "body", nullptr);
    EXPECT_FALSE(body->IsComplete(&result));
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_FALSE(graph.Compile(&result));
    EXPECT_EQ(result.GetLast(), "Graph::Compile failed, graph graph is incomplete");
    EXPECT_EQ(graph.GetCountCompiles(), 1);
}

TEST_F(ReferenceParameterInterfaceGraphTest, ANewShader_IsTakenAfterTheOldOneIsLetGoAndTold) {
    IShader* const root = Make("Root");
    IShader* const before = Make("Leaf");
    IShader* const after = Make("Leaf");
    Connect(root, "body", before);
    IReferenceParameter* const body = Init(root)->GetParameter("body");
    ASSERT_TRUE(graph.Compile(nullptr));
    std::vector<std::string> notices;
    Action<IReferenceParameter*> listen([&] {
        notices.push_back(std::string(before->GetReference(&graph) != nullptr ? "before" : "") +
                          (after->GetReference(&graph) != nullptr ? "after" : ""));
        // Out of step with the parameter it is not complete, whoever asks.
        if (notices.back() != "after") {
            EXPECT_FALSE(body->IsComplete(nullptr));
            EXPECT_FALSE(graph.IsComplete(nullptr));
            EXPECT_FALSE(graph.Compile(nullptr));
        }
    });
    body->AddListenerChangeStructure(*listen);
    Connect(root, "body", after);
    body->RemoveListenerChangeStructure(*listen);
    ASSERT_GE(notices.size(), 2u);
    EXPECT_EQ(notices[notices.size() - 2], "");
    EXPECT_EQ(notices.back(), "after");
    EXPECT_TRUE(graph.Compile(nullptr));
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(ReferenceParameterInterfaceGraphTest, AChangeBelow_IsPassedOnAndLeavesTheReferences) {
    IShader* const root = Make("Root");
    IShader* const link = Make("Link");
    IShader* const mapped = Make("Mapped");
    Connect(root, "body", link);
    Connect(link, "next", mapped);
    mapped->SetCoord(nullptr, "uv", "A");
    IReferenceParameter* const body = Init(root)->GetParameter("body");
    IReferenceShader* const reference = link->GetReference(&graph);
    Listener<IReferenceParameter*> changed;
    body->AddListenerChangeStructure(*changed);
    ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    EXPECT_TRUE(mapped->SetCoord(nullptr, "uv", "B"));
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_EQ(link->GetReference(&graph), reference);
    body->RemoveListenerChangeStructure(*changed);
    ASSERT_TRUE(graph.Compile(nullptr));
    EXPECT_TRUE(mapped->SetCoord(nullptr, "uv", "A"));
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(graph.IsCompiled());
}

TEST_F(ReferenceParameterInterfaceGraphTest, AShaderThatIsDestroyed_LeavesItsInputsEmpty) {
    IShader* const root = Make("RootList");
    IShader* const kept = Make("Leaf");
    IShader* const twice = Make("Leaf");
    ASSERT_TRUE(root->GetParameter("items")->SetLength(3));
    IShader* items[] = {twice, kept, twice};
    ASSERT_TRUE(root->SetParameter(nullptr, "items", items, 3));
    IReferenceParameter* const reference = Init(root)->GetParameter("items");
    ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    IReferenceShader* const referenceKept = kept->GetReference(&graph);
    manager.DestroyShader(twice);
    EXPECT_FALSE(graph.IsCompiled());
    EXPECT_FALSE(reference->IsComplete(nullptr));
    EXPECT_EQ(kept->GetReference(&graph), referenceKept);
    EXPECT_FALSE(graph.Compile(nullptr));
    IShader* const next = Make("Leaf");
    ASSERT_TRUE(root->SetParameter(nullptr, "items", next, 0));
    ASSERT_TRUE(root->SetParameter(nullptr, "items", next, 2));
    EXPECT_TRUE(graph.Compile(nullptr));
    EXPECT_FALSE(console.Contains("Not Found"));
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(ReferenceParameterInterfaceGraphTest, AnArray_KeepsTheReferencesOfUnchangedCells) {
    IShader* const root = Make("RootList");
    ASSERT_TRUE(root->GetParameter("items")->SetLength(3));
    std::vector<IShader*> leaves = {Make("Leaf"), Make("Leaf"), Make("Leaf")};
    ASSERT_TRUE(root->SetParameter(nullptr, "items", leaves.data(), 3));
    Init(root);
    Listener<IReferenceShader*> deleted;
    for (IShader* leaf : leaves) {
        leaf->GetReference(&graph)->AddListenerDelete(*deleted);
    }
    IShader* const other = Make("Leaf");
    ASSERT_TRUE(root->SetParameter(nullptr, "items", other, 1));
    EXPECT_EQ(deleted.count, 1);
    EXPECT_EQ(leaves[1]->GetReference(&graph), nullptr);
    EXPECT_NE(other->GetReference(&graph), nullptr);
    // A shader in several cells goes with the last of them.
    ASSERT_TRUE(root->SetParameter(nullptr, "items", leaves[0], 1));
    ASSERT_TRUE(root->GetParameter("items")->SetLength(2));
    EXPECT_EQ(leaves[2]->GetReference(&graph), nullptr);
    ASSERT_TRUE(root->SetParameter(nullptr, "items", other, 0));
    EXPECT_NE(leaves[0]->GetReference(&graph), nullptr);
    ASSERT_TRUE(root->SetParameter(nullptr, "items", other, 1));
    EXPECT_EQ(leaves[0]->GetReference(&graph), nullptr);
    EXPECT_EQ(deleted.count, 3);
    EXPECT_TRUE(graph.Compile(nullptr)) << console.GetAll();
}

TEST_F(ReferenceParameterInterfaceGraphTest, AnArray_WritesItsCount) {
    IShader* const root = Make("RootList");
    ASSERT_TRUE(root->GetParameter("items")->SetLength(2));
    IShader* const leaf = Make("Leaf");
    IShader* items[] = {leaf, leaf};
    ASSERT_TRUE(root->SetParameter(nullptr, "items", items, 2));
    IReferenceParameter* const reference = Init(root)->GetParameter("items");
    ASSERT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    IKLProgram* const program = context.CreateProgram();
    program->AddShader(graph.GetKLShader());
    ASSERT_TRUE(program->Link(nullptr));
    std::string name;
    for (const std::string& uniform : context.GetPrograms().front()->GetUniforms()) {
        if (uniform.rfind("ParameterInterfaceArray", 0) == 0) {
            name = uniform;
        }
    }
    ASSERT_NE(name.find("_Count"), std::string::npos);
    RecordingPrimitive primitive(context);
    EXPECT_TRUE(reference->Apply(&primitive, program));
    EXPECT_EQ(primitive.GetUniform(name), "int 2");

    context.SetUnused(name);
    ASSERT_TRUE(program->Link(nullptr));
    console.Clear();
    EXPECT_FALSE(reference->Apply(&primitive, program));
    EXPECT_EQ(console.GetGeneral(),
              "ReferenceParameterInterfaceArray::Apply Count LocationUniform\n");
    context.DestroyProgram(program);
}

TEST_F(ReferenceParameterInterfaceGraphTest, AShaderThatTheGraphRefuses_FailsItsInput) {
    IShader* const root = Make("Root");
    Init(root);
    IShader* const clash = Make("Clash");
    EXPECT_FALSE(root->SetParameter(nullptr, "body", clash));
    EXPECT_FALSE(root->GetParameter("body") == nullptr);
    EXPECT_FALSE(graph.IsComplete(nullptr));
    EXPECT_FALSE(graph.Compile(nullptr));
    Connect(root, "body", Make("Leaf"));
    EXPECT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    // Deep below a shader that is about to come in, nothing of it stays.
    IShader* const link = Make("Link");
    IShader* const pair = Make("Pair");
    IShader* const writer = Make("Writer");
    Connect(link, "next", pair);
    Connect(pair, "left", writer);
    Connect(pair, "right", Make("Clash"));
    EXPECT_FALSE(root->SetParameter(nullptr, "body", link));
    EXPECT_FALSE(graph.IsComplete(nullptr));
    EXPECT_EQ(writer->GetReference(&graph), nullptr);
    EXPECT_EQ(graph.GetCountOutputs(), 0);
}

TEST_F(ReferenceParameterInterfaceGraphTest, ACoordThatTheGraphRefuses_FailsTheWholeGraph) {
    IShader* const root = Make("Root");
    IShader* const pair = Make("Pair");
    IShader* const mapped = Make("Mapped");
    mapped->SetCoord(nullptr, "uv", "A");
    Connect(root, "body", pair);
    Connect(pair, "left", mapped);
    Connect(pair, "right", mapped);
    Init(root);
    ASSERT_TRUE(graph.AcquireAttribute(kType_Vec3, "Taken", kTransformationCoord_Coord));
    EXPECT_FALSE(mapped->SetCoord(nullptr, "uv", "Taken"));
    Result result;
    EXPECT_FALSE(graph.IsComplete(&result));
    // Told once, although two ways lead there.
    ASSERT_EQ(result.GetCount(), 1u);
    EXPECT_EQ(result.GetLast(),
              "ReferenceParameterCoord::IsComplete() failed for Graph:graph Parameter:uv");
    EXPECT_FALSE(root->GetReference(&graph)->GetParameter("body")->IsComplete(nullptr));
    EXPECT_TRUE(graph.ReleaseAttribute("Taken"));
}

TEST_F(ReferenceParameterInterfaceGraphTest, AStaticInput_BringsItsShaderWithTheClass) {
    IShader* const root = Make("Root");
    Connect(root, "body", Make("Shared"));
    IShader* const base = Make("Leaf");
    Init(root);
    EXPECT_FALSE(graph.IsComplete(nullptr));
    ASSERT_TRUE(manager.GetPrototypeShader("Shared", nullptr)->SetParameter("base", base));
    EXPECT_NE(base->GetReference(&graph), nullptr);
    EXPECT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    Connect(root, "body", Make("Leaf"));
    EXPECT_EQ(base->GetReference(&graph), nullptr);
    EXPECT_TRUE(graph.Compile(nullptr)) << console.GetAll();
    ASSERT_TRUE(manager.GetPrototypeShader("Shared", nullptr)
                    ->SetParameter("base", static_cast<IShader*>(nullptr)));
}

TEST_F(ReferenceParameterInterfaceGraphTest, ThePrototypesOfInputs_AreReferencedAfreshEachTime) {
    ReferencePrototypeShader* const pair = [this] {
        IShader* const root = Make("Pair");
        return Init(root)->GetReferencePrototype();
    }();
    EXPECT_NE(pair->GetParameter("left"), nullptr);
    EXPECT_NE(pair->GetParameter("left"), pair->GetParameter("right"));
    EXPECT_EQ(pair->GetParameter("left")->GetGraph(), &graph);
    Listener<IReferencePrototypeParameter*> changed;
    EXPECT_TRUE(pair->GetParameter("left")->AddListenerChangeStructure(*changed));
    EXPECT_TRUE(pair->GetParameter("left")->RemoveListenerChangeStructure(*changed));
}

} // namespace
} // namespace Tolen::Effects::Tests

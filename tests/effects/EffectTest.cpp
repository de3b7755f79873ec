#include "Effect.h"

#include "EffectsFixture.h"
#include "GoldenFile.h"
#include "TolenEffects/IAttributeVertex.h"
#include "TolenEffects/ILocalParameter.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IReferenceEffect.h"

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kSource = R"(
float twice(float x) { return 2.0 * x; }
class Tools {
    static input float level = 3.0;
    static float Level(float x) { return twice(x) * level; }
}
class Surface {
    input vec3 color = vec3(0.5, 0.25, 1.0);
    input float weights[] = float[](1.0, 2.0);
    const float scale = 4.0;
    coord vec2 uv;
    normal vec3 bump;
    output vec4 o_extra;
    void Init() { }
    int GetRayCount(int rayClass) { return rayClass + 1; }
    void Shade() {
        vec3 sum = color * Tools.Level(uv.x);
        for (int i = 0; i < weights.length; i++) { sum += vec3(weights[i] * scale); }
        accumulate(o_color, sum);
    }
}
class Camera {
    input float gain = 1.0;
    int GetRayCount() { return 2; }
    void Render() { accumulate(o_color, vec3(gain)); }
}
class Prefix {
    input float density = 0.5;
    void Shade() { accumulate(o_color, vec3(density)); }
}
class NoShade { void Other() { } }
)";

class EffectTest : public EffectsFixture {
protected:
    EffectTest() { Load(kSource); }

    IShader* MakeRoot() {
        IShader* const shader = Make("Surface");
        EXPECT_TRUE(shader->SetCoord(nullptr, "uv", "Coord"));
        EXPECT_TRUE(shader->SetCoord(nullptr, "bump", "Bump"));
        return shader;
    }

    bool Update(IEffect* effect) {
        Result result;
        const bool updated = effect->Update(&result);
        EXPECT_TRUE(updated) << (result.IsEmpty() ? "" : result.GetLast()) << console.GetAll();
        return updated;
    }

    /// All texts of an effect, each under the name of its shader.
    std::string GetTexts() {
        std::string texts;
        for (const RecordingShader* shader : context.GetShaders()) {
            texts += "// " + shader->GetName() + "\n" + shader->GetText() + "\n";
        }
        return texts;
    }

    RecordingPrimitive primitive{context};
};

TEST_F(EffectTest, Surface_PrintsItsThreeTexts) {
    manager.AddRayAttribute(kType_Vec3, "throughput");
    manager.AddVariableGlobal(kType_Int, "counter");
    IEffect* const effect = manager.CreateEffectSurface();
    effect->SetName("effect");
    ASSERT_TRUE(effect->SetRoot(MakeRoot()));
    ASSERT_TRUE(Update(effect));
    ExpectGolden("effect_surface.txt", GetTexts());
}

TEST_F(EffectTest, Renderer_PrintsItsTwoTexts) {
    manager.AddRayAttribute(kType_Vec3, "throughput");
    manager.AddVariableGlobal(kType_Int, "counter");
    IEffect* const effect = manager.CreateEffectRenderer();
    effect->SetName("effect");
    ASSERT_TRUE(effect->SetRoot(Make("Camera")));
    ASSERT_TRUE(Update(effect));
    ExpectGolden("effect_renderer.txt", GetTexts());
}

TEST_F(EffectTest, Prefix_PrintsItsTwoTexts) {
    manager.AddRayAttribute(kType_Vec3, "throughput");
    manager.AddVariableGlobal(kType_Int, "counter");
    IEffect* const effect = manager.CreateEffectPrefix();
    effect->SetName("effect");
    ASSERT_TRUE(effect->SetRoot(Make("Prefix")));
    ASSERT_TRUE(Update(effect));
    ExpectGolden("effect_prefix.txt", GetTexts());
}

TEST_F(EffectTest, SetRoot_CompilesNothing) {
    IEffect* const effect = MakeSurface(MakeRoot());
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_EQ(context.GetLog().GetCount("SetString"), 0);
    ASSERT_TRUE(Update(effect));
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_EQ(context.GetLog().GetCount("Link"), 1);
}

TEST_F(EffectTest, SetRoot_WithTheSameShader_GivesNamesThatDiffer) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    Listener<IEffect*> changed;
    effect->AddListenerChangeStructure(*changed);
    ASSERT_TRUE(Update(effect));
    const std::string first = GetText("_root");
    ASSERT_TRUE(effect->SetRoot(root));
    EXPECT_EQ(changed.count, 1);
    EXPECT_FALSE(effect->IsCompiled());
    ASSERT_TRUE(Update(effect));
    EXPECT_NE(GetText("_root"), first);
}

TEST_F(EffectTest, SetRoot_Null_EndsTheEffect) {
    IEffect* const effect = MakeSurface(MakeRoot());
    ASSERT_TRUE(Update(effect));
    EXPECT_FALSE(effect->SetRoot(nullptr));
    EXPECT_TRUE(checks.Contains("pShader != NULL", "Source/Graph"));
    EXPECT_EQ(effect->GetKLProgram(), nullptr);
    EXPECT_TRUE(effect->Apply(&primitive, nullptr));
    EXPECT_EQ(effect->CreateReference(&primitive), nullptr);
    console.Clear();
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_EQ(console.GetGeneral(), "Effect::Apply Not Compiled for Shutdown\n"
                                    "MgrEffects pointer is NULL\n"
                                    "There is no graph in Effect Shutdown\n");
}

TEST_F(EffectTest, Update_WithoutARoot_SaysSo) {
    IEffect* const effect = manager.CreateEffectSurface();
    effect->SetName("bare");
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_EQ(console.GetGeneral(), "Effect::Apply Not Compiled for bare\n"
                                    "There is no graph in Effect bare\n");
}

TEST_F(EffectTest, Update_AfterTheRootDied_SaysSo) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    effect->SetName("orphan");
    ASSERT_TRUE(Update(effect));
    manager.DestroyShader(root);
    IShader* found = root;
    EXPECT_TRUE(effect->GetRoot(found));
    EXPECT_EQ(found, nullptr);
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_TRUE(console.Contains("Effect orphan doesn't have a root shader\n"));
}

TEST_F(EffectTest, Update_WithAnUnsetCoord_TellsWhatIsMissingAndFindsNoProblemInTheInputs) {
    IEffect* const effect = MakeSurface(Make("Surface"));
    effect->SetName("bare");
    Result result;
    EXPECT_FALSE(effect->Update(&result));
    ASSERT_GE(result.GetCount(), 2u);
    EXPECT_EQ(result.GetMessage(0),
              "ReferenceParameterCoord::IsComplete() failed for Graph:bare Parameter:bump");
    EXPECT_EQ(result.GetLast(), "Graph::Compile failed, graph bare is incomplete");
    EXPECT_TRUE(console.Contains("Could not find any problems for the Effect bare\n"));
}

TEST_F(EffectTest, Update_OfACompiledEffect_OnlyRunsTheListeners) {
    IEffect* const effect = MakeSurface(MakeRoot());
    ASSERT_TRUE(Update(effect));
    Listener<IEffect*> updated;
    effect->AddListenerUpdate(*updated);
    context.GetLog().Clear();
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(updated.count, 1);
    EXPECT_TRUE(context.GetLog().GetLines().empty());
    updated.answer = false;
    EXPECT_FALSE(effect->Update(nullptr));
}

TEST_F(EffectTest, Update_FromAListenerOfIt_AnswersFalse) {
    IEffect* const effect = MakeSurface(MakeRoot());
    bool nested = true;
    auto update = [&](IEffect* updated) {
        nested = updated->Update(nullptr);
        return true;
    };
    auto listener = FastDelegate1<IEffect*, bool>::Borrow(update);
    effect->AddListenerUpdate(listener);
    ASSERT_TRUE(Update(effect));
    EXPECT_FALSE(nested);
    effect->RemoveListenerUpdate(listener);
}

TEST_F(EffectTest, Update_WhoseListenerDestroysTheEffect_AnswersFalse) {
    IEffect* const effect = MakeSurface(MakeRoot());
    auto destroy = [this](IEffect* destroyed) {
        manager.DestroyEffectSurface(destroyed);
        return true;
    };
    auto listener = FastDelegate1<IEffect*, bool>::Borrow(destroy);
    effect->AddListenerCompile(listener);
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_TRUE(manager.Update());
}

TEST_F(EffectTest, Apply_OfADirtyEffect_TouchesNothing) {
    IEffect* const effect = MakeSurface(MakeRoot());
    context.GetLog().Clear();
    EXPECT_TRUE(effect->Apply(&primitive, nullptr));
    EXPECT_TRUE(effect->Apply(nullptr));
    EXPECT_TRUE(context.GetLog().GetLines().empty());
}

TEST_F(EffectTest, Apply_WithoutAPrimitive_AnswersFalse) {
    IEffect* const effect = MakeSurface(MakeRoot());
    ASSERT_TRUE(Update(effect));
    EXPECT_FALSE(effect->Apply(nullptr, nullptr));
}

TEST_F(EffectTest, Update_WritesEverythingOnAPrimitive) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    manager.SetOutputAttachmentIndex("o_color", 4);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(primitive.GetProgram(), effect->GetKLProgram());
    EXPECT_EQ(primitive.GetUniform("__outputAttachmentIndex_o_color"), "int 4");
    std::string all;
    for (const auto& [name, value] : primitive.GetUniforms()) {
        all += name.substr(0, name.find("_k")) + (name.find("Length") != std::string::npos ? "Length" : "") +
               "=" + value + "\n";
    }
    EXPECT_EQ(all, "Tools_level=float 3\n"
                   "__outputAttachmentIndex_o_color=int 4\n"
                   "color=vec3 (0.5,0.25,1)\n"
                   "weights=block buffer1\n"
                   "weightsLength=int 2\n");
    EXPECT_EQ(primitive.GetCountBound(), 0);
}

TEST_F(EffectTest, ANewValue_IsWrittenWithoutACompile) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    RecordingPrimitive second(context);
    effect->CreateReference(&primitive);
    IReferenceEffect* const reference = effect->CreateReference(&second);
    ASSERT_TRUE(Update(effect));
    context.GetLog().Clear();
    ASSERT_TRUE(root->SetParameter(nullptr, "color", Vector3f(1.0f, 2.0f, 3.0f)));
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_TRUE(context.GetLog().GetLines().empty());
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 2);
    EXPECT_EQ(context.GetLog().GetCount("SetString"), 0);
    EXPECT_EQ(context.GetLog().GetCount("Link"), 0);
    for (const RecordingPrimitive* written : {&primitive, &second}) {
        bool isFound = false;
        for (const auto& [name, value] : written->GetUniforms()) {
            isFound = isFound || value == "vec3 (1,2,3)";
        }
        EXPECT_TRUE(isFound);
    }
    effect->DestroyReference(reference);
}

TEST_F(EffectTest, ANewLengthOfAnArray_IsWrittenWithoutACompile) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(Update(effect));
    context.GetLog().Clear();
    ASSERT_TRUE(root->GetParameter("weights")->SetLength(5));
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(context.GetLog().GetCount("SetString"), 0);
    bool isFound = false;
    for (const auto& [name, value] : primitive.GetUniforms()) {
        isFound = isFound || value == "int 5";
    }
    EXPECT_TRUE(isFound);
}

TEST_F(EffectTest, AStaticInput_ReachesEveryPrimitive) {
    IEffect* const effect = MakeSurface(MakeRoot());
    effect->CreateReference(&primitive);
    ASSERT_TRUE(Update(effect));
    context.GetLog().Clear();
    ASSERT_TRUE(manager.GetPrototypeShader("Tools", nullptr)->SetParameter("level", 7.0f));
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(context.GetLog().GetCount("SetString"), 0);
    bool isFound = false;
    for (const auto& [name, value] : primitive.GetUniforms()) {
        isFound = isFound || (name.rfind("Tools_level", 0) == 0 && value == "float 7");
    }
    EXPECT_TRUE(isFound);
}

TEST_F(EffectTest, AChangeOfStructure_CompilesOnce) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(Update(effect));
    Listener<IEffect*> compiled;
    effect->AddListenerCompile(*compiled);
    root->SetCoord(nullptr, "uv", "Second");
    root->SetCoord(nullptr, "uv", "Third");
    EXPECT_FALSE(effect->IsCompiled());
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(compiled.count, 1);
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(compiled.count, 1);
}

TEST_F(EffectTest, AttachmentIndices_AreWrittenWithoutACompile) {
    IEffect* const effect = MakeSurface(MakeRoot());
    effect->CreateReference(&primitive);
    effect->CreateReference(nullptr);
    effect->Update(nullptr);
    context.GetLog().Clear();
    manager.SetOutputAttachmentIndex("o_color", 9);
    EXPECT_EQ(primitive.GetUniform("__outputAttachmentIndex_o_color"), "int 9");
    manager.SetOutputAttachmentIndex("o_color", -1);
    EXPECT_EQ(primitive.GetUniform("__outputAttachmentIndex_o_color"), "int 9");
    manager.ClearOutputAttachmentIndex("o_color");
    EXPECT_EQ(primitive.GetUniform("__outputAttachmentIndex_o_color"), "int 15");
    EXPECT_EQ(context.GetLog().GetCount("SetUniform"), 2);
}

TEST_F(EffectTest, AnIndexThatTheProgramLacks_IsPassedOver) {
    context.SetUnused("__outputAttachmentIndex_o_color");
    IEffect* const effect = MakeSurface(MakeRoot());
    effect->CreateReference(&primitive);
    ASSERT_TRUE(Update(effect));
    EXPECT_EQ(primitive.GetUniform("__outputAttachmentIndex_o_color"), "");
}

TEST_F(EffectTest, AUniformThatTheProgramLacks_StopsTheApplyUntilItIsThere) {
    IShader* const root = MakeRoot();
    IEffect* const effect = MakeSurface(root);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(effect->Update(nullptr));
    std::string name;
    for (const auto& [uniform, value] : primitive.GetUniforms()) {
        name = uniform.rfind("color_k", 0) == 0 ? uniform : name;
    }
    context.SetUnused(name);
    root->SetCoord(nullptr, "uv", "Second");
    EXPECT_FALSE(effect->Update(nullptr));
    EXPECT_TRUE(console.Contains(
        "ReferenceParameterValueSingleSeparate::Apply Value LocationUniform\n"));
}

TEST_F(EffectTest, SetName_NamesWhatTheEffectIsMadeOf) {
    IEffect* const effect = manager.CreateEffectSurface();
    EXPECT_EQ(static_cast<RecordingProgram*>(effect->GetKLProgram())->GetName(), "Init");
    effect->SetName("first");
    effect->SetRoot(MakeRoot());
    ASSERT_TRUE(Update(effect));
    EXPECT_FALSE(GetText("first_k").empty());
    effect->SetName("second");
    EXPECT_EQ(effect->GetKLProgram()->GetName(), "second");
    for (const RecordingShader* shader : context.GetShaders()) {
        EXPECT_EQ(shader->GetName(), "second");
    }
}

TEST_F(EffectTest, ALinkThatFails_LeavesTheEffectDirtyAndTheNextUpdateStartsAgain) {
    IEffect* const effect = MakeSurface(MakeRoot());
    context.GetLog().FailNth("Link", 1);
    effect->Update(nullptr);
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_TRUE(console.Contains("Effect::_Compile Link\n"));
    const int before = context.GetLog().GetCount("SetString");
    ASSERT_TRUE(Update(effect));
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_EQ(context.GetLog().GetCount("SetString"), 2 * before);
}

TEST_F(EffectTest, ARootWithoutItsMethod_StaysDirty) {
    IEffect* const effect = MakeSurface(Make("NoShade"));
    effect->Update(nullptr);
    EXPECT_FALSE(effect->IsCompiled());
    EXPECT_EQ(GetText("_root"), "");
    IEffect* const renderer = manager.CreateEffectRenderer();
    renderer->SetRoot(Make("NoShade"));
    renderer->Update(nullptr);
    EXPECT_FALSE(renderer->IsCompiled());
}

TEST_F(EffectTest, SetString_OfTheRootThatFails_IsToldByStage) {
    const auto compile = [this](IEffect* effect, const char* className, int nth) {
        IShader* const root = className == std::string("Surface") ? MakeRoot() : Make(className);
        effect->SetRoot(root);
        console.Clear();
        context.GetLog().FailNth("SetString", nth);
        effect->Update(nullptr);
        EXPECT_FALSE(effect->IsCompiled());
        context.GetLog().FailNone();
        return console.GetGeneral();
    };
    // The first text is the graph's, the second the root's, the third the vertex shader's.
    EXPECT_NE(compile(manager.CreateEffectSurface(), "Surface", 2)
                  .find("CompilerShaderRootRay::Compile SetString\n"),
              std::string::npos);
    EXPECT_NE(compile(manager.CreateEffectSurface(), "Surface", 3)
                  .find("ShaderVertex::Compile SetString\n"),
              std::string::npos);
    EXPECT_NE(compile(manager.CreateEffectPrefix(), "Prefix", 2)
                  .find("CompilerShaderRootPrefixRay::Compile SetString\n"),
              std::string::npos);
    EXPECT_EQ(compile(manager.CreateEffectRenderer(), "Camera", 2).find("Compile SetString"),
              std::string::npos);
}

TEST_F(EffectTest, FailuresOfTheApi_AreToldAndLeaveNothingBehind) {
    struct Case {
        const char* operation;
        int nth;
        const char* text;
    };
    // The first shader and its adding are the vertex stage's, the next ones the graph's and the
    // root's.
    for (const Case& failure : {Case{"CreateShader", 2, "Effect::Init CreateShader\n"},
                                Case{"AddShader", 1, "Effect::Init AddShader\n"},
                                Case{"AddShader", 2, "Effect::InitGraph AddShader\n"}}) {
        SCOPED_TRACE(failure.text);
        IShader* const root = MakeRoot();
        IEffect* const effect = MakeSurface(root);
        console.Clear();
        context.GetLog().FailNth(failure.operation, failure.nth);
        EXPECT_FALSE(effect->Update(nullptr));
        EXPECT_TRUE(console.Contains(failure.text));
        EXPECT_EQ(effect->GetKLProgram(), nullptr);
        EXPECT_EQ(effect->GetMgrEffects(), nullptr);
        context.GetLog().FailNone();
        manager.DestroyEffectSurface(effect);
        manager.DestroyShader(root);
        EXPECT_EQ(context.GetCountLive(), 0);
    }
}

TEST_F(EffectTest, CreateEffect_WithoutAProgram_AnswersNullAndKeepsTheEmptyPlace) {
    context.GetLog().FailNth("CreateProgram", 1);
    EXPECT_EQ(manager.CreateEffectSurface(), nullptr);
    EXPECT_TRUE(console.Contains("Effect::Init CreateProgram\n"));
    int nulls = 0;
    auto visit = [&nulls](IEffect* effect) {
        nulls += effect == nullptr ? 1 : 0;
        return true;
    };
    auto visitor = FastDelegate1<IEffect*, bool>::Borrow(visit);
    EXPECT_TRUE(manager.VisitEffectsSurface(visitor));
    EXPECT_EQ(nulls, 1);
    EXPECT_TRUE(manager.Update());
}

TEST_F(EffectTest, CreateEffectSurface_WithoutItsVertexShader_AnswersNull) {
    context.GetLog().FailNth("AddShader", 1);
    EXPECT_EQ(manager.CreateEffectSurface(), nullptr);
    EXPECT_TRUE(console.Contains("PolicyVertexSurface::Init Add Shader\n"));
    context.GetLog().FailNth("CreateShader", 1);
    EXPECT_EQ(manager.CreateEffectSurface(), nullptr);
}

TEST_F(EffectTest, EveryFailureOfTheApi_LeavesNoObjectBehind) {
    for (const char* operation : {"CreateShader", "CreateProgram", "AddShader", "SetString", "Link",
                                  "CreateBuffer", "BufferInit", "SetUniform", "SetUniformBlock"}) {
        for (int nth = 1; nth <= 4; ++nth) {
            SCOPED_TRACE(std::string(operation) + " " + std::to_string(nth));
            context.GetLog().FailNth(operation, nth);
            IShader* const root = manager.CreateShader("Surface", nullptr);
            IEffect* const effect = manager.CreateEffectSurface();
            if (root != nullptr && effect != nullptr) {
                root->SetCoord(nullptr, "uv", "Coord");
                root->SetCoord(nullptr, "bump", "Bump");
                effect->SetRoot(root);
                effect->CreateReference(&primitive);
                effect->Update(nullptr);
                root->SetParameter(nullptr, "color", Vector3f(1.0f, 1.0f, 1.0f));
                effect->Update(nullptr);
            }
            manager.DestroyEffectSurface(effect);
            manager.DestroyShader(root);
            context.GetLog().FailNone();
            EXPECT_EQ(context.GetCountLive(), 0);
        }
    }
}

TEST_F(EffectTest, VisitAttributes_TellsTheVertexAttributesByName) {
    IEffect* const effect = MakeSurface(MakeRoot());
    ASSERT_TRUE(Update(effect));
    std::string names;
    auto visit = [&names](const std::string& name, IAttributeVertex* attribute) {
        names += name + ":" + attribute->GetNameAttribute() + ":" +
                 std::to_string(attribute->GetSemantic()) +
                 (attribute->GetKLLocation() >= 0 ? " " : "? ");
        return true;
    };
    auto visitor = FastDelegate2<const std::string&, IAttributeVertex*, bool>::Borrow(visit);
    EXPECT_TRUE(effect->VisitAttributes(visitor));
    EXPECT_EQ(names, "Bump:a_Bump:2 Coord:a_Coord:2 Normal:a_Normal:1 Position:a_Position:0 ");
    names.clear();
    IEffect* const renderer = manager.CreateEffectRenderer();
    EXPECT_TRUE(renderer->VisitAttributes(visitor));
    EXPECT_EQ(names, "");
}

TEST_F(EffectTest, SetRoot_WithAnAttributeThatTheVertexStageRefuses_LeavesAUsableEffect) {
    IShader* const root = MakeRoot();
    root->SetCoord(nullptr, "bump", "Position");
    IEffect* const effect = manager.CreateEffectSurface();
    EXPECT_FALSE(effect->SetRoot(root));
    EXPECT_TRUE(console.Contains("ShaderVertex::AcquireAttribute Type Conflict\n"));
    root->SetCoord(nullptr, "bump", "Normal");
    EXPECT_TRUE(effect->SetRoot(root));
    EXPECT_TRUE(Update(effect));
}

TEST_F(EffectTest, ChangeAttributeListeners_HearOfEveryAttribute) {
    IEffect* const effect = manager.CreateEffectSurface();
    Listener<IEffect*> changed;
    effect->AddListenerChangeAttribute(*changed);
    effect->SetRoot(MakeRoot());
    EXPECT_EQ(changed.count, 2);
    manager.DestroyEffectSurface(effect);
    EXPECT_EQ(changed.count, 2 + 2);
}

TEST_F(EffectTest, DestroyEffect_OfAStranger_PrintsALine) {
    IEffect* const effect = manager.CreateEffectPrefix();
    manager.DestroyEffectSurface(effect);
    EXPECT_EQ(console.GetGeneral(), "FactoryTEffect::DestroyEffect Effect Not Found\n");
    Listener<IEffect*> deleted;
    effect->AddListenerDelete(*deleted);
    manager.DestroyEffectPrefix(effect);
    EXPECT_EQ(deleted.count, 1);
}

TEST_F(EffectTest, TheSameCalls_GiveTheSameTextsInAnotherManager) {
    const auto print = [this] {
        MgrEffects other;
        RecordingContext otherContext;
        EXPECT_TRUE(other.Init(console.Get(), &otherContext, nullptr));
        EXPECT_TRUE(other.AddLibrary("library", kSource, nullptr));
        // Objects in between lie at other addresses the second time.
        std::vector<std::unique_ptr<int>> noise;
        noise.reserve(100);
        for (int i = 0; i < 100; ++i) {
            noise.push_back(std::make_unique<int>(i));
        }
        IShader* const root = other.CreateShader("Surface", nullptr);
        root->SetCoord(nullptr, "uv", "Coord");
        root->SetCoord(nullptr, "bump", "Bump");
        IEffect* const effect = other.CreateEffectSurface();
        effect->SetRoot(root);
        EXPECT_TRUE(effect->Update(nullptr));
        std::string texts;
        for (const RecordingShader* shader : otherContext.GetShaders()) {
            texts += shader->GetName() + "\n" + shader->GetText();
        }
        other.Shutdown();
        return texts;
    };
    EXPECT_EQ(print(), print());
}

} // namespace
} // namespace Tolen::Effects::Tests

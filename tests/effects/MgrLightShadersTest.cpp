#include "LightsFixture.h"
#include "support/RecordingPrimitive.h"

#include "TolenEffects/IMember.h"

#include <functional>
#include <set>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kUnit = "Source/MgrLightShaders";

using MgrLightShadersTest = LightsFixture;

bool HasError(const CapturedConsole& console, const std::string& text) {
    return console.GetErrors().find(text) != std::string::npos;
}

TEST(MgrLightShadersGlobal, Create_MakesOneForTheProcess_UntilDestroy) {
    IMgrLightShaders* const first = CreateMgrLightShaders();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(CreateMgrLightShaders(), first);
    DestroyMgrLightShaders();
    DestroyMgrLightShaders();
    IMgrLightShaders* const second = CreateMgrLightShaders();
    second->AddArrayClass("Lamp");
    second->Destroy();
    // A new one, which knows nothing of the other.
    IMgrLightShaders* const third = CreateMgrLightShaders();
    EXPECT_TRUE(third->Update(false));
    DestroyMgrLightShaders();
}

TEST(MgrLightShadersGlobal, Destroy_OfAnotherManager_LeavesTheOneOfTheProcess) {
    IMgrLightShaders* const global = CreateMgrLightShaders();
    (new MgrLightShaders)->Destroy();
    EXPECT_EQ(CreateMgrLightShaders(), global);
    DestroyMgrLightShaders();
}

class UninitialisedLights : public EffectsFixture {
protected:
    MgrLightShaders lights;
};

TEST_F(UninitialisedLights, Init_WithoutManagerOrConsole_AnswersFalse) {
    Load(LightLibraryText::Make());
    EXPECT_FALSE(lights.Init(nullptr, console.Get()));
    EXPECT_FALSE(lights.Init(&manager, nullptr));
    EXPECT_EQ(lights.CreateShader("LightPointArray", nullptr), nullptr);
    EXPECT_TRUE(checks.Contains("_pMgrEffects != NULL", kUnit));
    EXPECT_TRUE(lights.Init(&manager, console.Get()));
    EXPECT_FALSE(lights.Init(&manager, console.Get()));
    EXPECT_NE(lights.CreateShader("LightPointArray", nullptr), nullptr);
}

TEST_F(UninitialisedLights, Init_WithoutTheClassesOfALibrary_AnswersFalse) {
    EXPECT_FALSE(lights.Init(&manager, console.Get()));
    lights.Shutdown();
    Load(LightLibraryText::Make());
    EXPECT_TRUE(lights.Init(&manager, console.Get()));
}

TEST_F(UninitialisedLights, Init_WithoutTextureBlack_KeepsTheNullShadersBefore) {
    Load(LightLibraryText::Make("TextureBlack"));
    EXPECT_FALSE(lights.Init(&manager, console.Get()));
    // Lights find the null shader for their decay.
    IShader* const light = lights.CreateShader("LightPointArray", nullptr);
    ASSERT_NE(light, nullptr);
    IShader* decay = nullptr;
    EXPECT_TRUE(light->GetParameter("decay")->Get(decay));
    ASSERT_NE(decay, nullptr);
    EXPECT_EQ(decay->GetClassName(), "LightDecayNullArray");
    EXPECT_FALSE(HasError(console, "No NULL shader"));
}

TEST_F(UninitialisedLights, Init_WithTwoNullShadersOfOneInterface_AnswersFalse) {
    std::string text = LightLibraryText::Make("Integrator3Null");
    text += "class Integrator3Null : IIntegrator2 { float Get() { return 0.0; } }\n";
    Load(text);
    EXPECT_FALSE(lights.Init(&manager, console.Get()));
}

TEST_F(UninitialisedLights, Shutdown_WithoutInit_IsHarmless) {
    lights.Shutdown();
    lights.Shutdown();
    EXPECT_TRUE(lights.DestroyShader(nullptr));
    EXPECT_TRUE(lights.Update(false));
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(MgrLightShadersTest, Init_EntersTheClassesOfTheLibrary) {
    std::set<std::string> names = {"LightInstanceNullArray", "LightInstanceStandardArray",
                                   "LightNullArray"};
    for (const std::string& name : LightLibraryText::GetLights()) {
        names.insert(name);
    }
    for (const auto& kind : LightLibraryText::GetParts()) {
        names.insert(kind.names.begin(), kind.names.end());
    }
    EXPECT_EQ(names.size(), 44u);
    for (const std::string& name : names) {
        IShader* const light = Light(name);
        EXPECT_NE(dynamic_cast<Shader_LightShader*>(light), nullptr) << name;
        EXPECT_EQ(light->GetClassName(), name);
    }
    EXPECT_NE(dynamic_cast<Shader_LightShaderReceiver*>(Light("LightManagerArray")), nullptr);
}

TEST_F(MgrLightShadersTest, CreateShader_Twice_GivesTwoCellsOfOneShader) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    EXPECT_NE(first, second);
    EXPECT_EQ(CellOf(first), 0);
    EXPECT_EQ(CellOf(second), 1);
    EXPECT_EQ(RealOf(first), RealOf(second));
    for (const char* name : {"intensity", "color", "decayRef"}) {
        EXPECT_EQ(Real(first, name)->GetLength(), 2) << name;
    }
    // An array of shaders grows by what is connected and not by lights.
    EXPECT_EQ(Real(first, "decay")->GetLength(), 1);
}

TEST_F(MgrLightShadersTest, CreateShader_ResizesMembersThatAreArrays) {
    Load("class Moving : ILight { float at[]; input float speed[];"
         " float Get(int cell) { return at[cell] + speed[cell]; } }");
    EXPECT_TRUE(lights->AddArrayClass("Moving"));
    IShader* const first = Light("Moving");
    Light("Moving");
    EXPECT_EQ(RealOf(first)->GetMember("at")->GetLength(), 2);
    lights->DestroyShader(first);
    EXPECT_TRUE(lights->Update(false));
}

TEST_F(MgrLightShadersTest, CreateShader_WithAnArrayOfFixedLength_ResizesNoFurther) {
    Load("class Fixed : ILight { input float a[]; input float b[2]; input float c[];"
         " float Get(int cell) { return a[cell] + b[cell] + c[cell]; } }");
    lights->AddArrayClass("Fixed");
    IShader* const light = Light("Fixed");
    EXPECT_EQ(Real(light, "a")->GetLength(), 1);
    EXPECT_EQ(Real(light, "b")->GetLength(), 2);
    EXPECT_EQ(Real(light, "c")->GetLength(), 0);
    EXPECT_FALSE(lights->Update(false));
}

TEST_F(MgrLightShadersTest, CreateShader_OfAnUnknownClass_LeavesNoRecord) {
    lights->AddArrayClass("Nowhere");
    Result result;
    EXPECT_EQ(lights->CreateShader("Nowhere", &result), nullptr);
    EXPECT_GT(result.GetCount(), 0u);
    Load("class Nowhere : ILight { input float a[]; float Get(int cell) { return a[cell]; } }");
    EXPECT_NE(lights->CreateShader("Nowhere", nullptr), nullptr);
}

TEST_F(MgrLightShadersTest, CreateShader_OutsideTheTables_GivesAShaderOfTheManager) {
    IShader* const shader = Light("TextureWhite");
    EXPECT_EQ(shader->GetShaderType(), IShader::kShaderType_Shader);
    Listener<IShader*> onDelete;
    shader->AddListenerDelete(*onDelete);
    EXPECT_TRUE(lights->DestroyShader(shader));
    EXPECT_EQ(onDelete.count, 1);
}

TEST_F(MgrLightShadersTest, CreateShader_OfAReceiver_GivesEachItsOwnShader) {
    IShader* const first = Light("LightManagerArray");
    IShader* const second = Light("LightManagerArray");
    EXPECT_NE(RealOf(first), RealOf(second));
    Listener<IShader*> onDelete;
    RealOf(first)->AddListenerDelete(*onDelete);
    EXPECT_TRUE(lights->DestroyShader(first));
    EXPECT_EQ(onDelete.count, 1);
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(MgrLightShadersTest, CreateShader_OfAReceiverWithoutAClass_IsNullAndToldAtShutdown) {
    lights->AddReceiverClass("Nowhere");
    EXPECT_EQ(lights->CreateShader("Nowhere", nullptr), nullptr);
    lights->Shutdown();
    EXPECT_TRUE(checks.Contains("null shader in the wrapper", kUnit));
}

TEST_F(MgrLightShadersTest, CreateShader_ConnectsNullShaders) {
    IShader* const light = Light("LightPointArray");
    IShader* const decay = Connected(light, "decay");
    EXPECT_EQ(decay->GetClassName(), "LightDecayNullArray");
    EXPECT_EQ(Cell<IShader*>(light, "decay", 0), RealOf(decay));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(0, CellOf(decay)));
    EXPECT_TRUE(RealOf(light)->IsComplete(nullptr));
}

TEST_F(MgrLightShadersTest, CreateShader_WithAnInterfaceWithoutNullShader_SaysSo) {
    Load("interface IOther { float Get(); }\n"
         "class Other : ILight { input IOther other; float Get(int cell) { return other.Get(); } }");
    lights->AddArrayClass("Other");
    IShader* const light = Light("Other");
    EXPECT_TRUE(HasError(console, "No NULL shader for IOther?"));
    EXPECT_EQ(Connected(light, "other"), nullptr);
}

TEST_F(MgrLightShadersTest, CreateShader_WithAnUnwrappedArrayOfShaders_IsNull) {
    Load("class Bare : ILight { input ILightDecay decay[]; input float a[];"
         " float Get(int cell) { return decay[0].Get(0) * a[cell]; } }");
    lights->AddArrayClass("Bare");
    EXPECT_EQ(lights->CreateShader("Bare", nullptr), nullptr);
    // The cell is taken all the same.
    EXPECT_EQ(lights->CreateShader("Bare", nullptr), nullptr);
    EXPECT_TRUE(lights->Update(false));
}

TEST_F(MgrLightShadersTest, CreateShader_ConnectsNullShadersToInputsThatAllLightsShare) {
    Load("class Soft : ILight { input IIntegrator2 integrator; input float a[];"
         " float Get(int cell) { return integrator.Get() * a[cell]; } }");
    lights->AddArrayClass("Soft");
    IShader* const light = Light("Soft");
    EXPECT_EQ(Connected(light, "integrator")->GetClassName(), "Integrator2Null");
    EXPECT_EQ(Connected(Light("Soft"), "integrator"), Connected(light, "integrator"));
}

TEST_F(MgrLightShadersTest, DestroyShader_LeavesAHoleUntilUpdate) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    second->SetParameter(nullptr, "intensity", 7.0f);
    EXPECT_TRUE(lights->DestroyShader(first));
    EXPECT_EQ(CellOf(second), 1);
    EXPECT_EQ(Real(second, "intensity")->GetLength(), 2);
    EXPECT_EQ(Cell<Vector2i>(second, "decayRef", 0), Vector2i(-2, -2));

    EXPECT_TRUE(lights->Update(false));
    EXPECT_EQ(CellOf(second), 0);
    EXPECT_EQ(Real(second, "intensity")->GetLength(), 1);
    EXPECT_EQ(Value<float>(second, "intensity"), 7.0f);
    EXPECT_EQ(Cell<float>(second, "intensity", 0), 7.0f);
}

TEST_F(MgrLightShadersTest, CreateShader_BehindUpdate_TakesACellPastTheLength) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    lights->DestroyShader(first);
    EXPECT_TRUE(lights->Update(false));
    IShader* const third = Light("LightPointArray");
    EXPECT_EQ(CellOf(third), 2);
    EXPECT_EQ(Real(third, "intensity")->GetLength(), 3);
    EXPECT_TRUE(lights->Update(false));
    EXPECT_EQ(CellOf(second), 0);
    EXPECT_EQ(CellOf(third), 1);
    EXPECT_EQ(Real(third, "intensity")->GetLength(), 2);
}

TEST_F(MgrLightShadersTest, Update_KeepsTheValuesOfAllLights) {
    std::vector<IShader*> all;
    for (int i = 0; i < 20; ++i) {
        all.push_back(Light("LightPointArray"));
        all.back()->SetParameter(nullptr, "intensity", static_cast<float>(i));
        all.back()->SetParameter(nullptr, "color", Vector3f(static_cast<float>(i), 0.0f, 1.0f));
    }
    for (const int i : {0, 3, 4, 5, 19, 11}) {
        EXPECT_TRUE(lights->DestroyShader(all[static_cast<std::size_t>(i)]));
        all[static_cast<std::size_t>(i)] = nullptr;
    }
    EXPECT_TRUE(lights->Update(false));
    int cell = 0;
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (all[i] != nullptr) {
            EXPECT_EQ(CellOf(all[i]), cell++);
            EXPECT_EQ(Value<float>(all[i], "intensity"), static_cast<float>(i));
            EXPECT_EQ(Value<Vector3f>(all[i], "color").x, static_cast<float>(i));
        }
    }
    EXPECT_EQ(cell, 14);
}

TEST_F(MgrLightShadersTest, Update_WithTrue_IsAFailedCheckBehindTheWork) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    lights->DestroyShader(first);
    EXPECT_FALSE(lights->Update(true));
    EXPECT_TRUE(checks.Contains("implement", kUnit));
    EXPECT_EQ(CellOf(second), 0);
}

TEST_F(MgrLightShadersTest, Update_WithAValueThatCannotMove_AnswersFalseAndLeavesTheLength) {
    Load("class Mapped : ILight { input sampler2D map[]; input float value[];"
         " float Get(int cell) { return value[cell]; } }");
    lights->AddArrayClass("Mapped");
    IShader* const first = Light("Mapped");
    IShader* const second = Light("Mapped");
    lights->DestroyShader(first);
    EXPECT_FALSE(lights->Update(false));
    EXPECT_TRUE(checks.Contains("don't know what to do", "Source/Parameter_WrapperValueArrayCell"));
    EXPECT_EQ(Real(second, "value")->GetLength(), 2);
}

TEST_F(MgrLightShadersTest, Update_TellsListenersOfTheCellBefore) {
    IShader* const first = Light("LightPointArray");
    Shader_LightShader* const second = AsView(Light("LightPointArray"));
    Listener<Shader_LightShader*, int> onChange;
    EXPECT_TRUE(second->AddListenerChangeIndex(*onChange));
    EXPECT_TRUE(lights->Update(false));
    EXPECT_EQ(onChange.count, 0);
    lights->DestroyShader(first);
    EXPECT_TRUE(lights->Update(false));
    EXPECT_EQ(onChange.count, 1);
    EXPECT_TRUE(second->RemoveListenerChangeIndex(*onChange));
    second->SetSubIndex(5, false);
    EXPECT_EQ(onChange.count, 1);
}

TEST_F(MgrLightShadersTest, DestroyShader_OfNull_AnswersTrue) {
    EXPECT_TRUE(lights->DestroyShader(nullptr));
}

TEST_F(MgrLightShadersTest, DestroyShader_OfAViewOfNoRecord_IsAFailedCheck) {
    IShader* const real = Make("TextureWhite");
    Shader_LightShader view;
    ASSERT_TRUE(view.Init(&manager, real, 0));
    EXPECT_FALSE(lights->DestroyShader(&view));
    EXPECT_TRUE(checks.Contains("Corrupted light shader record", kUnit));
}

TEST_F(MgrLightShadersTest, DestroyShader_OfAViewOfAnotherShader_IsAFailedCheck) {
    Light("LightPointArray");
    Shader_LightShader view;
    ASSERT_TRUE(view.Init(&manager, Make("LightPointArray"), 0));
    EXPECT_FALSE(lights->DestroyShader(&view));
    EXPECT_TRUE(checks.Contains("The records don't match", kUnit));
    checks.Clear();
    view.Shutdown();
}

TEST_F(MgrLightShadersTest, DestroyShader_OfAViewThatIsNotInTheRecord_IsAFailedCheck) {
    IShader* const light = Light("LightPointArray");
    Shader_LightShader view;
    ASSERT_TRUE(view.Init(&manager, RealOf(light), 0));
    EXPECT_FALSE(lights->DestroyShader(&view));
    EXPECT_TRUE(checks.Contains("LightShaderWrapper is not in the records", kUnit));
}

TEST_F(MgrLightShadersTest, DestroyShader_OfAnotherManagersReceiver_IsAFailedCheck) {
    Shader_LightShaderReceiver receiver;
    ASSERT_TRUE(receiver.Init(&manager, Make("LightManagerArray")));
    EXPECT_FALSE(lights->DestroyShader(&receiver));
    EXPECT_TRUE(checks.Contains("missing record", kUnit));
}

TEST_F(MgrLightShadersTest, DestroyShader_OfAViewWhoseShaderIsGone_AnswersFalse) {
    IShader* const light = Light("LightPointArray");
    manager.DestroyShader(RealOf(light));
    EXPECT_TRUE(checks.Contains("possible object leak", "Source/Shader_PassThrough"));
    EXPECT_FALSE(lights->DestroyShader(light));
    EXPECT_EQ(lights->CreateShader("LightPointArray", nullptr), nullptr);
}

TEST_F(MgrLightShadersTest, DestroyShader_OfANullShader_LeavesItsInterfaceWithout) {
    IShader* const light = Light("LightPointArray");
    EXPECT_TRUE(lights->DestroyShader(Connected(light, "decay")));
    EXPECT_EQ(Connected(light, "decay"), nullptr);
    IShader* const second = Light("LightPointArray");
    EXPECT_TRUE(HasError(console, "No NULL shader for ILightDecay?"));
    EXPECT_EQ(Connected(second, "decay"), nullptr);
}

TEST_F(MgrLightShadersTest, DestroyShader_OfTheEffectsManager_PassesViewsOver) {
    IShader* const light = Light("LightPointArray");
    manager.DestroyShader(light);
    EXPECT_EQ(Value<float>(light, "intensity"), 1.0f);
    EXPECT_TRUE(lights->DestroyShader(light));
}

TEST_F(MgrLightShadersTest, Shutdown_DestroysEverythingAndMayBeRepeated) {
    IShader* const light = Light("LightPointArray");
    IShader* const receiver = Light("LightManagerArray");
    Listener<IShader*> onDeleteReal;
    Listener<IShader*> onDeleteView;
    RealOf(light)->AddListenerDelete(*onDeleteReal);
    RealOf(receiver)->AddListenerDelete(*onDeleteReal);
    light->AddListenerDelete(*onDeleteView);
    lights->Shutdown();
    lights->Shutdown();
    EXPECT_EQ(onDeleteReal.count, 2);
    EXPECT_EQ(onDeleteView.count, 1);
    EXPECT_TRUE(checks.IsEmpty());

    EXPECT_TRUE(lights->Init(&manager, console.Get()));
    EXPECT_EQ(CellOf(Light("LightPointArray")), 0);
}

TEST_F(MgrLightShadersTest, Shutdown_BehindTheEffectsManagers_IsAFailedCheckAndSafe) {
    IShader* const light = Light("LightPointArray");
    IShader* const receiver = Light("LightManagerArray");
    receiver->GetParameter("lights")->SetLength(1);
    manager.Shutdown();
    EXPECT_TRUE(checks.Contains("possible object leak", "Source/Shader_PassThrough"));
    EXPECT_EQ(light->GetParameter("scale"), nullptr);
    EXPECT_FALSE(light->SetParameter(nullptr, "intensity", 1.0f));
    EXPECT_FALSE(lights->DestroyShader(light));
    checks.Clear();
    lights->Shutdown();
    EXPECT_TRUE(checks.Contains("null shader in the records", kUnit));
}

TEST_F(MgrLightShadersTest, Shutdown_BehindTheDeathOfTheEffectsManager_IsSafe) {
    auto effects = std::make_unique<MgrEffects>();
    RecordingContext other;
    ASSERT_TRUE(effects->Init(console.Get(), &other, nullptr));
    ASSERT_TRUE(effects->AddLibrary("lights", LightLibraryText::Make(), nullptr));
    MgrLightShaders second;
    ASSERT_TRUE(second.Init(effects.get(), console.Get()));
    IShader* const light = second.CreateShader("LightPointArray", nullptr);
    second.CreateShader("LightManagerArray", nullptr);
    effects.reset();
    EXPECT_FALSE(second.DestroyShader(light));
    second.Shutdown();
}

/// Calls what it is given, once.
class OnceCall : public CreationOrder {
public:
    explicit OnceCall(std::function<void()> call) : _call(std::move(call)) {}
    FastDelegate1<IShader*, bool>& OnShader() { return _onShader; }
    FastDelegate1<IParameter*, bool>& OnParameter() { return _onParameter; }
    FastDelegate2<Shader_LightShader*, int, bool>& OnIndex() { return _onIndex; }
    int count = 0;

private:
    bool _Call() {
        if (++count == 1) {
            _call();
        }
        return true;
    }
    bool _Shader(IShader*) { return _Call(); }
    bool _Parameter(IParameter*) { return _Call(); }
    bool _Index(Shader_LightShader*, int) { return _Call(); }

    std::function<void()> _call;
    FastDelegate1<IShader*, bool> _onShader{this, &OnceCall::_Shader};
    FastDelegate1<IParameter*, bool> _onParameter{this, &OnceCall::_Parameter};
    FastDelegate2<Shader_LightShader*, int, bool> _onIndex{this, &OnceCall::_Index};
};

TEST_F(MgrLightShadersTest, Listener_ThatCreatesALightWhileOneIsCreated_GetsACellOfItsOwn) {
    IShader* const first = Light("LightPointArray");
    IShader* inner = nullptr;
    OnceCall create([&] { inner = Light("LightPointArray"); });
    Real(first, "intensity")->AddListenerChangeValue(create.OnParameter());
    // Growing writes the default into the new cell, which is told.
    IShader* const outer = Light("LightPointArray");
    ASSERT_GT(create.count, 0);
    EXPECT_EQ(CellOf(outer), 1);
    EXPECT_EQ(CellOf(inner), 2);
    for (const char* name : {"intensity", "color", "decayRef"}) {
        EXPECT_EQ(Real(first, name)->GetLength(), 3) << name;
    }
}

TEST_F(MgrLightShadersTest, Listener_ThatShutsTheManagerDownWhileALightIsCreated_LeavesNone) {
    IShader* const first = Light("LightPointArray");
    OnceCall shutdown([&] { lights->Shutdown(); });
    Real(first, "intensity")->AddListenerChangeValue(shutdown.OnParameter());
    EXPECT_EQ(lights->CreateShader("LightPointArray", nullptr), nullptr);
    EXPECT_EQ(lights->CreateShader("LightPointArray", nullptr), nullptr);
    EXPECT_TRUE(checks.Contains("_pMgrEffects != NULL", kUnit));
}

TEST_F(MgrLightShadersTest, Listener_ThatDestroysTheManagerDuringUpdate_LetsItEnd) {
    auto* const other = new MgrLightShaders;
    ASSERT_TRUE(other->Init(&manager, console.Get()));
    IShader* const first = other->CreateShader("LightPointArray", nullptr);
    Shader_LightShader* const second = AsView(other->CreateShader("LightPointArray", nullptr));
    IShader* const third = other->CreateShader("LightPointArray", nullptr);
    OnceCall destroy([&] {
        other->DestroyShader(third);
        other->Destroy();
    });
    Listener<IShader*> onDelete;
    third->AddListenerDelete(*onDelete);
    second->AddListenerChangeIndex(destroy.OnIndex());
    other->DestroyShader(first);
    EXPECT_TRUE(other->Update(false));
    EXPECT_EQ(destroy.count, 1);
    EXPECT_EQ(onDelete.count, 1);
}

TEST_F(MgrLightShadersTest, Listener_ThatDestroysLightsWhileTheManagerShutsDown_IsHeard) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    OnceCall destroy([&] {
        EXPECT_TRUE(lights->DestroyShader(second));
        EXPECT_EQ(lights->CreateShader("LightPointArray", nullptr), nullptr);
    });
    Listener<IShader*> onDelete;
    second->AddListenerDelete(*onDelete);
    first->AddListenerDelete(destroy.OnShader());
    lights->Shutdown();
    EXPECT_EQ(onDelete.count, 1);
}

TEST_F(MgrLightShadersTest, Listener_ThatDestroysTheLightWhoseValueChanges_IsSafe) {
    IShader* const light = Light("LightPointArray");
    OnceCall destroy([&] { lights->DestroyShader(light); });
    Real(light, "decayRef")->AddListenerChangeValue(destroy.OnParameter());
    light->SetParameter(nullptr, "decay", Light("LightDecayDoubleArray"));
    EXPECT_GT(destroy.count, 0);
}

TEST_F(MgrLightShadersTest, Listener_ThatShutsTheEffectsManagerDown_IsSafe) {
    IShader* const light = Light("LightPointArray");
    OnceCall shutdown([&] { manager.Shutdown(); });
    Real(light, "decay")->AddListenerChangeStructure(shutdown.OnParameter());
    light->SetParameter(nullptr, "decay", Light("LightDecayDoubleArray"));
    EXPECT_GT(shutdown.count, 0);
    EXPECT_EQ(light->GetClassName(), "");
}

/// A program over all lights of a receiver, applied to one primitive.
class LightsProgramTest : public LightsFixture {
protected:
    LightsProgramTest() {
        receiver = Light("LightManagerArray");
        root = Make("Root");
        EXPECT_TRUE(root->SetParameter(nullptr, "lighting", receiver));
        effect = MakeSurface(root);
    }
    ~LightsProgramTest() override {
        effect = nullptr;
        lights.reset();
        manager.Shutdown();
    }

    /// A new light in the world, at the end of the receiver's.
    IShader* AddLight(float intensity) {
        IShader* const light = Light("LightPointArray");
        light->SetParameter(nullptr, "intensity", intensity);
        IShader* const instance = Light("LightInstanceStandardArray");
        EXPECT_TRUE(instance->SetParameter(nullptr, "light", light));
        IParameter* const all = receiver->GetParameter("lights");
        const int index = all->GetLength();
        EXPECT_TRUE(all->SetLength(index + 1));
        EXPECT_TRUE(receiver->SetParameter(nullptr, "lights", instance, index));
        return light;
    }
    int CountCompiles() { return context.GetLog().GetCount("SetString"); }

    RecordingPrimitive primitive{context};
    IShader* receiver;
    IShader* root;
    IEffect* effect;
};

TEST_F(LightsProgramTest, AddingLightsOfAKindThatIsThere_CompilesNothing) {
    AddLight(1.0f);
    ASSERT_NE(effect->CreateReference(&primitive), nullptr);
    Result result;
    ASSERT_TRUE(manager.Update(&result)) << result.GetLast();
    const int before = CountCompiles();
    EXPECT_GT(before, 0);
    for (int i = 1; i < 1000; ++i) {
        AddLight(static_cast<float>(i));
        if (i % 100 == 0) {
            EXPECT_TRUE(manager.Update(&result));
        }
    }
    EXPECT_TRUE(manager.Update(&result));
    EXPECT_EQ(CountCompiles(), before);
    EXPECT_EQ(receiver->GetParameter("lights")->GetLength(), 1000);
    EXPECT_EQ(Real(receiver, "lights")->GetLength(), 1);

    // Removing them doesn't, either.
    for (int i = 999; i > 500; --i) {
        IShader* instance = nullptr;
        ASSERT_TRUE(receiver->GetParameter("lights")->Get(instance, i));
        EXPECT_TRUE(receiver->GetParameter("lights")->SetLength(i));
        EXPECT_TRUE(lights->DestroyShader(instance));
    }
    EXPECT_TRUE(lights->Update(false));
    EXPECT_TRUE(manager.Update(&result));
    EXPECT_EQ(CountCompiles(), before);
}

TEST_F(LightsProgramTest, AddingALightOfANewKind_CompilesOnce) {
    AddLight(1.0f);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(manager.Update());
    const int before = CountCompiles();
    IShader* const instance = Light("LightInstanceStandardArray");
    EXPECT_TRUE(instance->SetParameter(nullptr, "light", Light("LightDirectArray")));
    EXPECT_TRUE(manager.Update());
    const int after = CountCompiles();
    EXPECT_GT(after, before);
    EXPECT_TRUE(Light("LightInstanceStandardArray")
                    ->SetParameter(nullptr, "light", Light("LightDirectArray")));
    EXPECT_TRUE(manager.Update());
    EXPECT_EQ(CountCompiles(), after);
}

TEST_F(LightsProgramTest, ValuesOfLights_ReachTheBuffersAndUniformsOfTheProgram) {
    IShader* const first = AddLight(2.0f);
    IShader* const second = AddLight(3.0f);
    effect->CreateReference(&primitive);
    ASSERT_TRUE(manager.Update());
    const auto find = [&](const std::string& name) {
        for (const auto& [uniform, value] : primitive.GetUniforms()) {
            if (uniform.find(name) == 0) {
                return value;
            }
        }
        return std::string("none");
    };
    const std::string block = find("BlockBuffer_intensity");
    EXPECT_EQ(find("scale"), "float 1");
    first->SetParameter(nullptr, "scale", 4.0f);
    second->SetParameter(nullptr, "intensity", 5.0f);
    EXPECT_TRUE(manager.Update());
    EXPECT_EQ(find("scale"), "float 4");
    bool isThere = false;
    for (const RecordingBuffer* buffer : context.GetBuffers()) {
        isThere = isThere || buffer->GetElements<float>() == std::vector<float>{2.0f, 5.0f};
    }
    EXPECT_TRUE(isThere) << block;
}

TEST_F(LightsProgramTest, AViewAsRoot_CompilesAndGoesWithTheView) {
    Load("class Glow : ILight { input float a[]; float Get(int cell) { return a[cell]; }"
         " void Shade() { accumulate(o_color, vec3(a[0])); } }");
    lights->AddArrayClass("Glow");
    IShader* const light = Light("Glow");
    IEffect* const other = MakeSurface(light);
    IShader* found = nullptr;
    EXPECT_TRUE(other->GetRoot(found));
    EXPECT_EQ(found, light);
    Result result;
    EXPECT_TRUE(other->Update(&result)) << result.GetLast();
    EXPECT_TRUE(lights->DestroyShader(light));
    other->GetRoot(found);
    EXPECT_EQ(found, nullptr);
    EXPECT_FALSE(other->Update(nullptr));
    EXPECT_TRUE(other->SetRoot(Light("Glow")));
    EXPECT_TRUE(other->Update(nullptr));
}

} // namespace
} // namespace Tolen::Effects::Tests

#include "LightsFixture.h"

#include "Shader_LightShaderReceiver.h"

#include "TolenEffects/IGraph.h"
#include "TolenEffects/IMember.h"

#include <deque>
#include <map>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kView = "Source/Shader_LightShader";
constexpr const char* kReceiver = "Source/Shader_LightShaderReceiver";
constexpr const char* kPassThrough = "Source/Shader_PassThrough";

/// The names that a visit of the parameters meets, up to the first that it answers false for.
std::vector<std::string> Visit(IShader* shader, const std::string& stop = "") {
    std::vector<std::string> names;
    auto add = [&](const std::string& name, IParameter*) {
        names.push_back(name);
        return name != stop;
    };
    auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(add);
    EXPECT_EQ(shader->VisitParameters(visit), stop.empty());
    return names;
}

/// A shader whose parameters a test makes up.
class MadeUpShader : public IShader, public CreationOrder {
public:
    IParameter* GetParameter(const std::string& name) override {
        const auto found = parameters.find(name);
        return found == parameters.end() ? nullptr : found->second;
    }
    bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) override {
        for (const auto& [name, parameter] : parameters) {
            visit(name, parameter);
        }
        return true;
    }
    bool AddListenerDelete(FastDelegate1<IShader*, bool>& listener) override {
        return takesListeners && _listeners.Add(listener);
    }
    bool RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener) override {
        return _listeners.Remove(listener);
    }

    std::map<std::string, IParameter*> parameters;
    bool takesListeners = true;

private:
    ListenerSet<FastDelegate1<IShader*, bool>> _listeners;
};

/// An array of a kind that a test makes up.
class MadeUpArray : public IParameter {
public:
    explicit MadeUpArray(ParameterClass kind) : _kind(kind) {}
    ParameterClass GetClass() override { return _kind; }
    bool IsArray() const override { return true; }

private:
    ParameterClass _kind;
};

class PassThroughTest : public EffectsFixture {
protected:
    PassThroughTest() {
        Load(R"(
interface INode { float Get(); }
class Leaf : INode {
    input float value = 1.0;
    float memory;
    coord vec2 uv;
    float Get() { return value + memory + uv.x; }
}
class Pair : INode { input INode a; input INode list[]; float Get() { return a.Get(); } }
)");
        real = Make("Leaf");
        EXPECT_TRUE(real->SetCoord(nullptr, "uv", "uv7"));
        EXPECT_TRUE(view.Init(&manager, real, false));
    }

    IShader* real;
    Shader_PassThrough view;
};

TEST_F(PassThroughTest, Init_WithoutManagerOrShader_AnswersFalse) {
    // It goes last, since nobody hears of its end.
    MadeUpShader deaf;
    Shader_PassThrough other;
    EXPECT_FALSE(other.Init(nullptr, real, false));
    EXPECT_FALSE(other.Init(&manager, nullptr, false));
    deaf.takesListeners = false;
    EXPECT_FALSE(other.Init(&manager, &deaf, false));
}

TEST_F(PassThroughTest, Operations_GoToTheRealShader) {
    EXPECT_EQ(view.GetShader(), real);
    EXPECT_EQ(view.GetClassName(), "Leaf");
    EXPECT_EQ(view.GetInterfaceName(), "INode");
    EXPECT_EQ(view.GetKeyName(), real->GetKeyName());
    EXPECT_TRUE(view.HasMethod("Get"));
    EXPECT_EQ(view.GetMethodNameMangled("Get"), real->GetMethodNameMangled("Get"));
    EXPECT_TRUE(view.HasConstructor());
    EXPECT_EQ(view.GetConstructorName(), real->GetConstructorName());
    EXPECT_EQ(view.GetPrototype(), real->GetPrototype());
    EXPECT_EQ(view.GetMgrEffects(), &manager);
    EXPECT_EQ(view.GetParameter("value"), real->GetParameter("value"));
    EXPECT_EQ(view.GetMember("memory"), real->GetMember("memory"));
    EXPECT_EQ(view.GetCoord("uv"), real->GetCoord("uv"));
    EXPECT_TRUE(view.SetCoord(nullptr, "uv", "uv0"));
    EXPECT_TRUE(view.IsComplete(nullptr));
    EXPECT_TRUE(view.SetName("lamp"));
    EXPECT_EQ(real->GetName(), "lamp");
    EXPECT_EQ(view.GetName(), "lamp");
    IGraph* const graph = view.CreateGraphKind0();
    EXPECT_NE(graph, nullptr);
    EXPECT_EQ(real->GetGraphKind0(), graph);
    EXPECT_TRUE(view.DestroyGraphKind0());
    EXPECT_EQ(view.GetGraphKind0(), nullptr);
}

TEST_F(PassThroughTest, GetShaderType_IsThatOfNoKind) {
    EXPECT_EQ(view.GetShaderType(), 0);
    EXPECT_EQ(real->GetShaderType(), 1);
}

TEST_F(PassThroughTest, SetParameter_UsesNoResult) {
    Result result;
    EXPECT_TRUE(view.SetParameter(&result, "value", 2.0f));
    EXPECT_FALSE(view.SetParameter(&result, "value", 2));
    EXPECT_FALSE(view.SetParameter(&result, "nothing", 2.0f));
    EXPECT_FALSE(view.SetParameter(&result, "nothing", 2.0f, 0));
    EXPECT_FALSE(view.SetParameter(&result, "nothing", &view));
    EXPECT_EQ(result.GetCount(), 0u);
    float value = 0.0f;
    EXPECT_TRUE(real->GetParameter("value")->Get(value));
    EXPECT_EQ(value, 2.0f);
}

TEST_F(PassThroughTest, SetParameter_OfAView_PassesAViewAsItIs) {
    Shader_PassThrough pair;
    ASSERT_TRUE(pair.Init(&manager, Make("Pair"), false));
    IShader* set = nullptr;
    EXPECT_TRUE(pair.SetParameter(nullptr, "a", &view));
    EXPECT_TRUE(pair.GetParameter("a")->Get(set));
    EXPECT_EQ(set, &view);
    EXPECT_TRUE(pair.SetParameter(nullptr, "list", &view, 0));
    EXPECT_TRUE(pair.GetParameter("list")->Get(set));
    EXPECT_EQ(set, &view);
    IShader* both[] = {&view};
    EXPECT_TRUE(pair.SetParameter(nullptr, "list", both, 1));
}

TEST_F(PassThroughTest, SetParameter_OfAShader_UsesTheOneBehindAView) {
    IShader* const pair = Make("Pair");
    IShader* set = nullptr;
    EXPECT_TRUE(pair->SetParameter(nullptr, "a", &view));
    EXPECT_TRUE(pair->GetParameter("a")->Get(set));
    EXPECT_EQ(set, real);
    IShader* both[] = {&view, nullptr};
    EXPECT_TRUE(pair->GetParameter("list")->SetLength(2));
    EXPECT_TRUE(pair->SetParameter(nullptr, "list", both, 2));
    EXPECT_TRUE(pair->GetParameter("list")->Get(set));
    EXPECT_EQ(set, real);
    EXPECT_TRUE(pair->SetParameter(nullptr, "list", &view, 1));
    EXPECT_FALSE(pair->SetParameter(nullptr, "list", static_cast<IShader**>(nullptr), 2));
}

TEST_F(PassThroughTest, Input_ThatHoldsAView_IsEmptiedByTheEndOfEither) {
    IShader* const pair = Make("Pair");
    IParameter* const list = pair->GetParameter("list");
    ASSERT_TRUE(list->SetLength(3));
    {
        Shader_PassThrough second;
        ASSERT_TRUE(second.Init(&manager, real, false));
        EXPECT_TRUE(list->Set(&view, 0));
        EXPECT_TRUE(list->Set(&second, 1));
        EXPECT_TRUE(list->Set(&second, 2));
        EXPECT_TRUE(pair->GetParameter("a")->Set(&second));
        Listener<IParameter*> onChange;
        list->AddListenerChangeStructure(*onChange);
        EXPECT_TRUE(pair->IsComplete(nullptr));
        second.Shutdown();
        EXPECT_EQ(onChange.count, 1);
        list->RemoveListenerChangeStructure(*onChange);
    }
    IShader* set = nullptr;
    for (const int i : {1, 2}) {
        EXPECT_TRUE(list->Get(set, i));
        EXPECT_EQ(set, nullptr);
    }
    EXPECT_TRUE(pair->GetParameter("a")->Get(set));
    EXPECT_EQ(set, nullptr);
    EXPECT_TRUE(list->Get(set, 0));
    EXPECT_EQ(set, &view);
    manager.DestroyShader(real);
    EXPECT_TRUE(list->Get(set, 0));
    EXPECT_EQ(set, nullptr);
    EXPECT_FALSE(pair->IsComplete(nullptr));
}

TEST_F(PassThroughTest, Input_RefusesAViewThatLeadsBack) {
    IShader* const pair = Make("Pair");
    Shader_PassThrough around;
    ASSERT_TRUE(around.Init(&manager, pair, false));
    Result result;
    EXPECT_FALSE(pair->SetParameter(&result, "a", &around));
    ASSERT_GT(result.GetCount(), 0u);
    EXPECT_NE(result.GetMessage(0).find("Input cycle."), std::string::npos);
}

TEST_F(PassThroughTest, Input_RefusesAViewThatIsGoing) {
    IShader* const pair = Make("Pair");
    struct Connect : CreationOrder {
        bool OnDelete(IShader* shader) {
            isConnected = input->Set(shader);
            return true;
        }
        IParameter* input;
        bool isConnected = true;
    } connect;
    connect.input = pair->GetParameter("a");
    auto onDelete = MakeDelegate(&connect, &Connect::OnDelete);
    view.AddListenerDelete(onDelete);
    view.Shutdown();
    EXPECT_FALSE(connect.isConnected);
    IShader* set = &view;
    EXPECT_TRUE(connect.input->Get(set));
    EXPECT_EQ(set, nullptr);
}

TEST_F(PassThroughTest, Listeners_HearOfTheRealShaderUntilTheViewGoes) {
    Listener<IShader*> onStructure;
    Listener<IShader*, IGraph*> onGraph;
    EXPECT_TRUE(view.AddListenerChangeStructure(*onStructure));
    EXPECT_TRUE(view.AddListenerChangeStructure(*onStructure));
    EXPECT_TRUE(view.AddListenerCreateGraphKind2(*onGraph));
    real->SetCoord(nullptr, "uv", "uv0");
    EXPECT_EQ(onStructure.count, 1);
    real->CreateGraphKind2();
    EXPECT_EQ(onGraph.count, 1);
    EXPECT_TRUE(view.RemoveListenerChangeStructure(*onStructure));
    real->SetCoord(nullptr, "uv", "uv1");
    EXPECT_EQ(onStructure.count, 1);
    EXPECT_TRUE(view.AddListenerChangeStructure(*onStructure));
    view.Shutdown();
    real->SetCoord(nullptr, "uv", "uv0");
    real->DestroyGraphKind2();
    real->CreateGraphKind2();
    EXPECT_EQ(onStructure.count, 1);
    EXPECT_EQ(onGraph.count, 1);
}

/// Notes of which shader a delete listener has heard.
struct Heard : CreationOrder {
    bool OnDelete(IShader* shader) {
        shaders.push_back(shader);
        return answer;
    }
    FastDelegate1<IShader*, bool> delegate = MakeDelegate(this, &Heard::OnDelete);
    std::vector<IShader*> shaders;
    bool answer = true;
};

TEST_F(PassThroughTest, DeleteListeners_HearOfTheViewsOwnEndOnly) {
    Heard heard;
    Shader_PassThrough second;
    ASSERT_TRUE(second.Init(&manager, real, false));
    EXPECT_TRUE(view.AddListenerDelete(heard.delegate));
    EXPECT_TRUE(second.AddListenerDelete(heard.delegate));
    view.Shutdown();
    EXPECT_EQ(heard.shaders, std::vector<IShader*>{&view});
    EXPECT_TRUE(second.RemoveListenerDelete(heard.delegate));
    second.Shutdown();
    manager.DestroyShader(real);
    EXPECT_EQ(heard.shaders.size(), 1u);
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(PassThroughTest, RealShader_ThatGoesFirst_IsAFailedCheckAndLeavesAnEmptyView) {
    Heard heard;
    heard.answer = false;
    // Not even a listener that answers false keeps the view from hearing.
    real->AddListenerDelete(heard.delegate);
    view.AddListenerDelete(heard.delegate);
    manager.DestroyShader(real);
    EXPECT_EQ(heard.shaders, (std::vector<IShader*>{real, real}));
    EXPECT_TRUE(checks.Contains("possible object leak", kPassThrough));
    EXPECT_EQ(view.GetShader(), nullptr);
    EXPECT_EQ(view.GetClassName(), "");
    EXPECT_EQ(view.GetName(), "");
    EXPECT_EQ(view.GetParameter("value"), nullptr);
    EXPECT_EQ(view.GetPrototype(), nullptr);
    EXPECT_FALSE(view.IsComplete(nullptr));
    EXPECT_FALSE(view.HasConstructor());
    EXPECT_FALSE(view.SetParameter(nullptr, "value", 1.0f));
    EXPECT_FALSE(view.AddListenerDelete(heard.delegate));
    EXPECT_FALSE(view.AddListenerChangeStructure(heard.delegate));
    EXPECT_FALSE(view.RemoveListenerChangeStructure(heard.delegate));
    EXPECT_EQ(view.CreateReference(nullptr), nullptr);
    EXPECT_FALSE(Make("Pair")->SetParameter(nullptr, "a", &view));
    view.Shutdown();
    EXPECT_EQ(heard.shaders, (std::vector<IShader*>{real, real, &view}));
}

TEST_F(PassThroughTest, Shutdown_OfAnOwner_DestroysTheShader) {
    Heard heard;
    IShader* const owned = Make("Leaf");
    owned->AddListenerDelete(heard.delegate);
    {
        Shader_PassThrough owner;
        ASSERT_TRUE(owner.Init(&manager, owned, true));
    }
    EXPECT_EQ(heard.shaders, std::vector<IShader*>{owned});
    EXPECT_TRUE(checks.IsEmpty());
}

using LightShaderTest = LightsFixture;

TEST_F(LightShaderTest, Index_IsNoCellBeforeInitAndBehindShutdown) {
    Shader_LightShader view;
    EXPECT_EQ(view.GetSubIndex(), -1);
    EXPECT_FALSE(view.Init(&manager, nullptr, 3));
    ASSERT_TRUE(view.Init(&manager, RealOf(Light("LightPointArray")), 0));
    EXPECT_EQ(view.GetSubIndex(), 0);
    view.Shutdown();
    EXPECT_EQ(view.GetSubIndex(), -2);
    EXPECT_TRUE(Visit(&view, "none").empty());
}

TEST_F(LightShaderTest, Views_OfOneClassShareTheirShaderAndItsSingleInputs) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    EXPECT_EQ(RealOf(first), RealOf(second));
    EXPECT_EQ(first->GetParameter("scale"), second->GetParameter("scale"));
    EXPECT_NE(first->GetParameter("intensity"), second->GetParameter("intensity"));
    first->SetParameter(nullptr, "scale", 3.0f);
    EXPECT_EQ(Value<float>(second, "scale"), 3.0f);
    first->SetParameter(nullptr, "intensity", 3.0f);
    EXPECT_EQ(Value<float>(second, "intensity"), 1.0f);
}

TEST_F(LightShaderTest, VisitParameters_MeetsWhatIsPerLightFirstAndNoCompanions) {
    IShader* const light = Light("LightPointArray");
    const std::vector<std::string> all = {"color", "decay", "intensity", "scale"};
    EXPECT_EQ(Visit(light), all);
    EXPECT_EQ(Visit(light, "decay"), std::vector<std::string>(all.begin(), all.begin() + 2));
    EXPECT_EQ(Visit(light, "scale"), all);
    EXPECT_EQ(light->GetParameter("decayRef"), nullptr);
    EXPECT_EQ(light->GetParameter("nothing"), nullptr);
    EXPECT_NE(RealOf(light)->GetParameter("decayRef"), nullptr);
}

TEST_F(LightShaderTest, IsArray_OfAnArrayOfValues_AnswersFalse) {
    IShader* const light = Light("LightPointArray");
    EXPECT_FALSE(light->GetParameter("intensity")->IsArray());
    EXPECT_TRUE(Real(light, "intensity")->IsArray());
}

TEST_F(LightShaderTest, ArrayOfShaders_WithoutACompanion_StaysAsItIs) {
    Load("class Bare : ILight { input ILightDecay decay[]; input float a[];"
         " float Get(int cell) { return a[cell]; } }");
    Shader_LightShader view;
    IShader* const real = Make("Bare");
    ASSERT_TRUE(view.Init(&manager, real, 0));
    EXPECT_EQ(view.GetParameter("decay"), real->GetParameter("decay"));
    EXPECT_TRUE(view.GetParameter("decay")->IsArray());
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(LightShaderTest, Companion_OfAWrongType_EndsTheWrapping) {
    Load("class Wrong : ILight { input float a[]; input ILightDecay x[]; input int xRef[];"
         " float Get(int cell) { return a[cell]; } }");
    Shader_LightShader view;
    IShader* const real = Make("Wrong");
    EXPECT_FALSE(view.Init(&manager, real, 0));
    EXPECT_TRUE(checks.Contains("array interface input requires ivec2 indexer parameter.", kView));
    EXPECT_EQ(view.GetParameter("xRef"), real->GetParameter("xRef"));
    lights->AddArrayClass("Wrong");
    EXPECT_EQ(lights->CreateShader("Wrong", nullptr), nullptr);
}

TEST_F(LightShaderTest, Companion_OfAnotherClass_IsNone) {
    Load("class Odd : ILight { input ILightDecay x[]; input ILightDecay xRef;"
         " float Get(int cell) { return xRef.Get(cell); } }");
    Shader_LightShader view;
    IShader* const real = Make("Odd");
    EXPECT_TRUE(view.Init(&manager, real, 0));
    EXPECT_EQ(view.GetParameter("x"), real->GetParameter("x"));
    EXPECT_EQ(view.GetParameter("xRef"), real->GetParameter("xRef"));
}

TEST_F(LightShaderTest, Arrays_OfNoKindOrOfCoords_AreFailedChecks) {
    MadeUpArray none(IParameter::kClass_Undefined);
    MadeUpArray coord(IParameter::kClass_Coord);
    MadeUpArray value(IParameter::kClass_Value);
    MadeUpShader real;
    real.parameters = {{"a", &none}, {"b", &value}};
    {
        Shader_LightShader view;
        EXPECT_TRUE(view.Init(&manager, &real, 0));
        EXPECT_TRUE(checks.Contains("don't know how to wrap kClass_Undefined", kView));
        EXPECT_EQ(view.GetParameter("a"), &none);
        EXPECT_NE(view.GetParameter("b"), &value);
    }
    real.parameters["aa"] = &coord;
    Shader_LightShader view;
    EXPECT_FALSE(view.Init(&manager, &real, 0));
    EXPECT_TRUE(checks.Contains("wrapping vectorized kClass_Coord param is not possible yet.",
                                kView));
    EXPECT_EQ(view.GetParameter("b"), &value);
}

TEST_F(LightShaderTest, SetSubIndex_ToTheSameCell_TellsNobody) {
    Shader_LightShader* const light = AsView(Light("LightPointArray"));
    Listener<Shader_LightShader*, int> onChange;
    light->AddListenerChangeIndex(*onChange);
    EXPECT_TRUE(light->SetSubIndex(0, true));
    EXPECT_EQ(onChange.count, 0);
    Light("LightPointArray");
    light->SetParameter(nullptr, "intensity", 9.0f);
    EXPECT_TRUE(light->SetSubIndex(1, true));
    EXPECT_EQ(onChange.count, 1);
    EXPECT_EQ(Cell<float>(light, "intensity", 1), 9.0f);
    EXPECT_TRUE(light->SetSubIndex(0, false));
    EXPECT_EQ(Value<float>(light, "intensity"), 9.0f);
    light->SetParameter(nullptr, "intensity", 1.0f);
    EXPECT_EQ(Cell<float>(light, "intensity", 1), 9.0f);
}

TEST_F(LightShaderTest, SetSubIndex_OutsideTheArrays_FailsWithTheCellTakenAllTheSame) {
    Shader_LightShader* const light = AsView(Light("LightPointArray"));
    EXPECT_FALSE(light->SetSubIndex(100, true));
    EXPECT_EQ(light->GetSubIndex(), 100);
    EXPECT_TRUE(light->SetSubIndex(0, false));
}

TEST_F(LightShaderTest, Receiver_HidesCompanionsOfArraysAndOfSingleInputs) {
    Load("class Two : ILighting { input ILightInstance one; input int oneRef;"
         " input ILightInstance many[]; input ivec2 manyRef[]; input ILightInstance plain;"
         " float Sum() { return one.Get(oneRef); } }");
    lights->AddReceiverClass("Two");
    IShader* const receiver = Light("Two");
    EXPECT_EQ(Visit(receiver), (std::vector<std::string>{"many", "one", "plain"}));
    EXPECT_EQ(receiver->GetParameter("oneRef"), nullptr);
    EXPECT_TRUE(receiver->GetParameter("many")->IsArray());
    EXPECT_FALSE(receiver->GetParameter("one")->IsArray());
    EXPECT_EQ(receiver->GetParameter("plain"), Real(receiver, "plain"));
}

TEST_F(LightShaderTest, Receiver_WithCompanionsOfAWrongType_IsAFailedCheck) {
    Load("class WrongArray : ILighting { input ILightInstance x[]; input int xRef[];"
         " float Sum() { return 0.0; } }\n"
         "class WrongSingle : ILighting { input ILightInstance x; input ivec2 xRef;"
         " float Sum() { return 0.0; } }");
    lights->AddReceiverClass("WrongArray");
    lights->AddReceiverClass("WrongSingle");
    EXPECT_EQ(lights->CreateShader("WrongArray", nullptr), nullptr);
    EXPECT_TRUE(
        checks.Contains("array interface input requires ivec2 indexer parameter.", kReceiver));
    EXPECT_EQ(lights->CreateShader("WrongSingle", nullptr), nullptr);
    EXPECT_TRUE(checks.Contains("interface input requires int indexer parameter.", kReceiver));
}

} // namespace
} // namespace Tolen::Effects::Tests

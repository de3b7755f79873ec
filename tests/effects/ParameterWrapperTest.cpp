#include "LightsFixture.h"

#include "Parameter_WrapperArrayCell.h"
#include "Parameter_WrapperVectorInterfaceMultiToSingle.h"

#include <sstream>

namespace Tolen::Effects::Tests {
namespace {

constexpr const char* kToSingle = "Source/Parameter_WrapperVectorInterfaceMultiToSingle";
constexpr const char* kSingle = "Source/Parameter_WrapperVectorInterfaceSingle";
constexpr const char* kCell = "Source/Parameter_WrapperValueArrayCell";

std::string TextOf(const IShader* shader) {
    std::ostringstream stream;
    stream << static_cast<const void*>(shader);
    return stream.str();
}

class ParameterWrapperTest : public LightsFixture {
protected:
    ParameterWrapperTest() {
        Load(R"(
class AllTypes : ILight {
    input float valueFloat[]; input int valueInt[]; input bool valueBool[];
    input vec2 valueVec2[]; input vec3 valueVec3[]; input vec4 valueVec4[];
    input ivec2 valueIVec2[]; input ivec3 valueIVec3[]; input ivec4 valueIVec4[];
    input mat3 valueMat3[]; input mat4 valueMat4[];
    float Get(int cell) { return valueFloat[cell]; }
}
class Receiver : ILighting {
    input ILightInstance one; input int oneRef;
    input ILightInstance row; input int rowRef[];
    input ILightInstance many[]; input ivec2 manyRef[];
    float Sum() { return one.Get(oneRef) + row.Get(rowRef[0]) + many[0].Get(manyRef[0].y); }
}
)");
        lights->AddArrayClass("AllTypes");
        lights->AddReceiverClass("Receiver");
        for (const char* name : {"LightInstanceStandardArray", "LightInstanceStandardArray"}) {
            instances.push_back(Light(name));
        }
        other = Light("LightInstanceNullArray");
    }

    std::vector<IShader*> instances;
    IShader* other;
};

TEST_F(ParameterWrapperTest, Cell_ShowsOneValueOfTheArray) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    IParameter* const cell = second->GetParameter("intensity");
    EXPECT_EQ(cell->GetClass(), IParameter::kClass_Value);
    EXPECT_EQ(cell->GetTypeSpecifier(), kType_Float);
    EXPECT_EQ(cell->GetType(), "float");
    EXPECT_EQ(cell->GetName(), "intensity");
    EXPECT_TRUE(cell->IsComplete(nullptr));
    EXPECT_FALSE(cell->IsArray());
    EXPECT_EQ(cell->GetLength(), 1);
    EXPECT_FALSE(cell->SetLength(1));
    EXPECT_FALSE(cell->SetLength(5));
    EXPECT_FALSE(cell->IsResizable());
    EXPECT_FALSE(cell->IsDefault());
    EXPECT_FALSE(cell->IsDefault(0));
    EXPECT_TRUE(cell->Set(4.5f));
    EXPECT_EQ(Cell<float>(first, "intensity", 1), 4.5f);
    EXPECT_EQ(Value<float>(first, "intensity"), 1.0f);
    std::string text;
    EXPECT_TRUE(cell->GetAsString(text));
    EXPECT_EQ(text, "4.5");
    EXPECT_FALSE(cell->GetAsString(text, 1));
}

TEST_F(ParameterWrapperTest, Cell_IsNoPlaceForArraysListenersAndCode) {
    IParameter* const cell = Light("LightPointArray")->GetParameter("intensity");
    const float values[] = {1.0f};
    float value = 0.0f;
    EXPECT_FALSE(cell->Set(2.0f, 0));
    EXPECT_FALSE(cell->Set(values, 1));
    EXPECT_FALSE(cell->Get(value, 0));
    EXPECT_FALSE(cell->Set(std::string("uv0")));
    EXPECT_FALSE(cell->Set(2));
    EXPECT_FALSE(cell->Set(other));
    EXPECT_FALSE(cell->Set(other, 0));
    Listener<IParameter*> listener;
    EXPECT_FALSE(cell->AddListenerChangeValue(*listener));
    EXPECT_FALSE(cell->RemoveListenerChangeValue(*listener));
    EXPECT_FALSE(cell->AddListenerChangeStructure(*listener));
    EXPECT_FALSE(cell->RemoveListenerChangeStructure(*listener));
    EXPECT_EQ(cell->CreateReference(nullptr), nullptr);
    EXPECT_FALSE(cell->DestroyReference(nullptr));
    EXPECT_FALSE(cell->CollectConstructor(nullptr));
    EXPECT_FALSE(cell->CollectShader(nullptr));
    auto visit = FastDelegate2<Class, Visitor*, bool>();
    EXPECT_FALSE(cell->VisitTransformations(visit));
}

/// Sets the value of one light, moves the light and finds the value again, for each element type.
template <class T>
void ExpectMoves(MgrLightShaders& lights, const std::string& name, const T& value) {
    auto* const first =
        dynamic_cast<Shader_LightShader*>(lights.CreateShader("AllTypes", nullptr));
    ASSERT_NE(first, nullptr);
    IParameter* const cell = first->GetParameter(name);
    T read{};
    EXPECT_TRUE(cell->Set(value)) << name;
    EXPECT_TRUE(cell->Get(read)) << name;
    EXPECT_EQ(read, value) << name;
    const int before = first->GetSubIndex();
    ASSERT_NE(lights.CreateShader("AllTypes", nullptr), nullptr);
    EXPECT_TRUE(first->SetSubIndex(before + 1, true)) << name;
    read = T{};
    EXPECT_TRUE(cell->Get(read)) << name;
    EXPECT_EQ(read, value) << name;
    read = T{};
    EXPECT_TRUE(first->GetShader()->GetParameter(name)->Get(read, before + 1)) << name;
    EXPECT_EQ(read, value) << name;
    EXPECT_TRUE(first->SetSubIndex(before, false));
}

TEST_F(ParameterWrapperTest, Cell_OfEachTypeThatMoves_IsSetAndReadAndTakenAlong) {
    ExpectMoves(*lights, "valueFloat", 1.5f);
    ExpectMoves(*lights, "valueInt", -7);
    ExpectMoves(*lights, "valueBool", true);
    ExpectMoves(*lights, "valueVec2", Vector2f(1.0f, 2.0f));
    ExpectMoves(*lights, "valueVec3", Vector3f(1.0f, 2.0f, 3.0f));
    ExpectMoves(*lights, "valueVec4", Vector4f(1.0f, 2.0f, 3.0f, 4.0f));
    ExpectMoves(*lights, "valueIVec2", Vector2i(1, 2));
    ExpectMoves(*lights, "valueIVec3", Vector3i(1, 2, 3));
    ExpectMoves(*lights, "valueIVec4", Vector4i(1, 2, 3, 4));
    ExpectMoves(*lights, "valueMat3", Matrix33f(3.0f));
    ExpectMoves(*lights, "valueMat4", Matrix44f(4.0f));
}

TEST_F(ParameterWrapperTest, Cell_OfATypeThatDoesNotMove_IsAFailedCheckAndStays) {
    Load("class Mapped : ILight { input sampler2D map[]; float Get(int cell) { return 1.0; } }");
    lights->AddArrayClass("Mapped");
    IShader* const light = Light("Mapped");
    auto* const cell = dynamic_cast<Parameter_WrapperArrayCell*>(light->GetParameter("map"));
    ASSERT_NE(cell, nullptr);
    EXPECT_TRUE(cell->SetSubIndex(0, true));
    EXPECT_FALSE(cell->SetSubIndex(1, true));
    EXPECT_TRUE(checks.Contains("don't know what to do", kCell));
    EXPECT_EQ(cell->GetSubIndex(), 0);
    EXPECT_TRUE(cell->SetSubIndex(1, false));
    EXPECT_EQ(cell->GetSubIndex(), 1);
}

TEST_F(ParameterWrapperTest, ToSingle_StartsWithTheNullShader) {
    IParameter* const input = Light("LightPointArray")->GetParameter("decay");
    EXPECT_EQ(input->GetClass(), IParameter::kClass_Interface);
    EXPECT_EQ(input->GetType(), "ILightDecay");
    EXPECT_EQ(input->GetLength(), 1);
    std::string text;
    EXPECT_TRUE(input->GetAsString(text));
    IShader* connected = nullptr;
    EXPECT_TRUE(input->Get(connected));
    EXPECT_EQ(text, TextOf(connected));
}

TEST_F(ParameterWrapperTest, ToSingle_AnotherLightOfTheKind_DiffersInItsCellOnly) {
    IShader* const light = Light("LightPointArray");
    IShader* const first = Light("LightDecayDoubleArray");
    IShader* const second = Light("LightDecayDoubleArray");
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", first));
    EXPECT_EQ(Real(light, "decay")->GetLength(), 2);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 0));
    Listener<IParameter*> onStructure;
    Real(light, "decay")->AddListenerChangeStructure(*onStructure);
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", second));
    EXPECT_EQ(Real(light, "decay")->GetLength(), 2);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 1));
    EXPECT_EQ(Connected(light, "decay"), second);
    EXPECT_EQ(onStructure.count, 0);

    IShader* const neighbour = Light("LightPointArray");
    EXPECT_TRUE(neighbour->SetParameter(nullptr, "decay", first));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 1));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 1), Vector2i(1, 0));
    EXPECT_EQ(onStructure.count, 0);
    EXPECT_TRUE(neighbour->SetParameter(nullptr, "decay", Light("LightDecayInverseArray")));
    EXPECT_EQ(Real(light, "decay")->GetLength(), 3);
    EXPECT_GT(onStructure.count, 0);
    Real(light, "decay")->RemoveListenerChangeStructure(*onStructure);
}

TEST_F(ParameterWrapperTest, ToSingle_AnUnusedArrayOfOne_TakesTheFirstShaderThere) {
    IShader* const real = Make("LightPointArray");
    real->GetParameter("decayRef")->SetLength(1);
    Shader_LightShader light;
    ASSERT_TRUE(light.Init(&manager, real, 0));
    IShader* const decay = Make("LightDecayDoubleArray");
    EXPECT_TRUE(light.SetParameter(nullptr, "decay", decay));
    EXPECT_EQ(real->GetParameter("decay")->GetLength(), 1);
    // A shader that is no light counts as the cell 0 of itself.
    EXPECT_EQ(Cell<Vector2i>(&light, "decayRef", 0), Vector2i(0, 0));
    EXPECT_EQ(Connected(&light, "decay"), decay);
    light.Shutdown();
}

TEST_F(ParameterWrapperTest, ToSingle_TheSameShaderAgain_IsNotWritten) {
    IShader* const light = Light("LightPointArray");
    IShader* const decay = Light("LightDecayDoubleArray");
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", decay));
    Real(light, "decayRef")->Set(Vector2i(8, 9), 0);
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", decay));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(8, 9));
}

TEST_F(ParameterWrapperTest, ToSingle_Null_MarksTheCellAsUnconnected) {
    IShader* const light = Light("LightPointArray");
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", static_cast<IShader*>(nullptr)));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(-1, -1));
    EXPECT_EQ(Connected(light, "decay"), nullptr);
    std::string text;
    EXPECT_TRUE(light->GetParameter("decay")->GetAsString(text));
    EXPECT_EQ(text, TextOf(nullptr));
}

TEST_F(ParameterWrapperTest, ToSingle_AMisfit_LeavesTheArrayAsItWas) {
    IShader* const light = Light("LightPointArray");
    IShader* const before = Connected(light, "decay");
    EXPECT_FALSE(light->SetParameter(nullptr, "decay", other));
    EXPECT_EQ(Real(light, "decay")->GetLength(), 1);
    EXPECT_EQ(Connected(light, "decay"), before);
    EXPECT_TRUE(RealOf(light)->IsComplete(nullptr));
}

TEST_F(ParameterWrapperTest, ToSingle_ALightOfTheSameClass_IsRefusedAsACycle) {
    Load("class Chain : ILight { input ILight next[]; input ivec2 nextRef[];"
         " float Get(int cell) { return next[nextRef[cell].x].Get(nextRef[cell].y); } }");
    lights->AddArrayClass("Chain");
    IShader* const first = Light("Chain");
    IShader* const second = Light("Chain");
    const Vector2i before = Cell<Vector2i>(first, "nextRef", 0);
    EXPECT_FALSE(first->SetParameter(nullptr, "next", second));
    EXPECT_EQ(Cell<Vector2i>(first, "nextRef", 0), before);
    EXPECT_EQ(Real(first, "next")->GetLength(), 1);
}

TEST_F(ParameterWrapperTest, ToSingle_LengthsAreThoseOfTheCompanion) {
    IShader* const light = Light("LightPointArray");
    EXPECT_TRUE(light->GetParameter("decay")->SetLength(4));
    EXPECT_EQ(Real(light, "decayRef")->GetLength(), 4);
    EXPECT_EQ(light->GetParameter("decay")->GetLength(), 4);
    EXPECT_EQ(Real(light, "decay")->GetLength(), 1);
}

TEST_F(ParameterWrapperTest, ToSingle_TheEndOfALight_MarksItsCell) {
    IShader* const first = Light("LightPointArray");
    IShader* const second = Light("LightPointArray");
    lights->DestroyShader(second);
    EXPECT_EQ(Cell<Vector2i>(first, "decayRef", 1), Vector2i(-2, -2));
    EXPECT_TRUE(checks.IsEmpty());
}

TEST_F(ParameterWrapperTest, ToSingle_TheEndOfALightWithoutACell_IsAFailedCheck) {
    IShader* const light = Light("LightPointArray");
    Real(light, "decayRef")->SetLength(0);
    lights->DestroyShader(light);
    EXPECT_TRUE(
        checks.Contains("res && \"error while deleting the parameter wrapper\"", kToSingle));
}

TEST_F(ParameterWrapperTest, ToSingle_TheEndOfTheConnectedLight_LeavesItsCellAndGivesNull) {
    IShader* const light = Light("LightPointArray");
    IShader* const decay = Light("LightDecayDoubleArray");
    light->SetParameter(nullptr, "decay", decay);
    lights->DestroyShader(decay);
    EXPECT_EQ(Connected(light, "decay"), nullptr);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 0));
    // The next one may have its address, and is not mistaken for it.
    IShader* const next = Light("LightDecayDoubleArray");
    EXPECT_TRUE(light->SetParameter(nullptr, "decay", next));
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 1));
}

TEST_F(ParameterWrapperTest, ToSingle_SetSubIndex_TakesTheIndexerAlong) {
    IShader* const light = Light("LightPointArray");
    Light("LightPointArray");
    light->SetParameter(nullptr, "decay", Light("LightDecayDoubleArray"));
    auto* const input =
        dynamic_cast<Parameter_WrapperVectorInterfaceMultiToSingle*>(light->GetParameter("decay"));
    ASSERT_NE(input, nullptr);
    EXPECT_TRUE(input->SetSubIndex(0, true));
    EXPECT_TRUE(input->SetSubIndex(1, true));
    EXPECT_EQ(input->GetSubIndex(), 1);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 1), Vector2i(1, 0));
    EXPECT_FALSE(input->SetSubIndex(50, true));
    EXPECT_EQ(input->GetSubIndex(), 50);
    EXPECT_TRUE(input->SetSubIndex(0, false));
}

/// Opens the handlers to a test.
class OpenToSingle : public Parameter_WrapperVectorInterfaceMultiToSingle {
public:
    using Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetBaseDelete;
    using Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetWrapperDelete;
    using Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetWrapperIndexChange;
    using Parameter_WrapperVectorInterfaceMultiToSingle::_StartListeningShaderWrapper;
    using Parameter_WrapperVectorInterfaceMultiToSingle::
        Parameter_WrapperVectorInterfaceMultiToSingle;
};

TEST_F(ParameterWrapperTest, ToSingle_Handlers_ChangeNothing) {
    Shader_LightShader* const light = AsView(Light("LightPointArray"));
    Light("LightPointArray");
    Shader_LightShader* const decay = AsView(Light("LightDecayDoubleArray"));
    OpenToSingle input(light, Real(light, "decay"), Real(light, "decayRef"));
    EXPECT_TRUE(input.SetSubIndex(1, false));
    EXPECT_TRUE(input.Set(decay));
    EXPECT_EQ(input.GetTargetWrapper(), decay);
    EXPECT_TRUE(input._StartListeningShaderWrapper(decay));
    EXPECT_TRUE(input._OnTargetWrapperDelete(decay));
    EXPECT_FALSE(input._OnTargetBaseDelete(decay));
    EXPECT_TRUE(checks.Contains("Implement!", kToSingle));
    checks.Clear();
    EXPECT_FALSE(input._OnTargetWrapperIndexChange(decay, 0));
    EXPECT_TRUE(checks.IsEmpty());
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 1), Vector2i(1, 0));
    EXPECT_FALSE(input._OnTargetWrapperIndexChange(decay, 5));
    EXPECT_TRUE(checks.Contains(
        "vRef.y==iIndexOld && \"mismatch in light shader indexer records\"", kToSingle));
}

TEST_F(ParameterWrapperTest, Update_DoesNotTellTheLightsThatAreConnectedToOthers) {
    IShader* const light = Light("LightPointArray");
    IShader* const first = Light("LightDecayDoubleArray");
    IShader* const second = Light("LightDecayDoubleArray");
    light->SetParameter(nullptr, "decay", second);
    lights->DestroyShader(first);
    EXPECT_TRUE(lights->Update(false));
    EXPECT_EQ(CellOf(second), 0);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 1));
    // The client connects it again.
    light->SetParameter(nullptr, "decay", static_cast<IShader*>(nullptr));
    light->SetParameter(nullptr, "decay", second);
    EXPECT_EQ(Cell<Vector2i>(light, "decayRef", 0), Vector2i(1, 0));
}

TEST_F(ParameterWrapperTest, Multi_ShowsAnArrayOfLights) {
    IShader* const receiver = Light("Receiver");
    IParameter* const many = receiver->GetParameter("many");
    EXPECT_TRUE(many->IsArray());
    EXPECT_TRUE(many->IsResizable());
    EXPECT_EQ(many->GetLength(), 0);
    EXPECT_TRUE(many->SetLength(3));
    EXPECT_FALSE(many->SetLength(-1));
    EXPECT_EQ(many->GetLength(), 3);
    EXPECT_EQ(Real(receiver, "manyRef")->GetLength(), 3);
    IShader* shader = other;
    EXPECT_TRUE(many->Get(shader, 2));
    EXPECT_EQ(shader, nullptr);
    shader = other;
    EXPECT_FALSE(many->Get(shader, 3));
    EXPECT_EQ(shader, nullptr);
    EXPECT_FALSE(many->Get(shader, -1));

    EXPECT_TRUE(receiver->SetParameter(nullptr, "many", instances[1], 0));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "many", other, 1));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "many", instances[0], 2));
    EXPECT_EQ(Real(receiver, "many")->GetLength(), 2);
    EXPECT_EQ(Cell<IShader*>(receiver, "many", 0), RealOf(instances[0]));
    EXPECT_EQ(Cell<IShader*>(receiver, "many", 1), RealOf(other));
    EXPECT_EQ(Cell<Vector2i>(receiver, "manyRef", 0), Vector2i(0, 1));
    EXPECT_EQ(Cell<Vector2i>(receiver, "manyRef", 1), Vector2i(1, CellOf(other)));
    EXPECT_EQ(Cell<Vector2i>(receiver, "manyRef", 2), Vector2i(0, 0));
    EXPECT_TRUE(many->Get(shader, 0));
    EXPECT_EQ(shader, instances[1]);
    std::string text;
    EXPECT_TRUE(many->GetAsString(text, 1));
    EXPECT_EQ(text, TextOf(other));
    EXPECT_FALSE(many->GetAsString(text, 3));

    EXPECT_TRUE(many->SetLength(1));
    EXPECT_FALSE(many->Get(shader, 2));
}

TEST_F(ParameterWrapperTest, Multi_PastTheLength_AnswersFalse) {
    IShader* const receiver = Light("Receiver");
    for (const int index : {0, -1, 1000000000}) {
        EXPECT_FALSE(receiver->SetParameter(nullptr, "many", other, index)) << index;
    }
    IShader* shader = nullptr;
    EXPECT_FALSE(receiver->GetParameter("many")->Get(shader, 0));
}

TEST_F(ParameterWrapperTest, Multi_Null_EmptiesTheCellAndLeavesItsIndexer) {
    IShader* const receiver = Light("Receiver");
    receiver->GetParameter("many")->SetLength(2);
    receiver->SetParameter(nullptr, "many", instances[1], 1);
    EXPECT_TRUE(receiver->SetParameter(nullptr, "many", static_cast<IShader*>(nullptr), 1));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "many", static_cast<IShader*>(nullptr), 7));
    IShader* shader = other;
    EXPECT_TRUE(receiver->GetParameter("many")->Get(shader, 1));
    EXPECT_EQ(shader, nullptr);
    EXPECT_EQ(Cell<Vector2i>(receiver, "manyRef", 1), Vector2i(0, 1));
    EXPECT_EQ(Cell<IShader*>(receiver, "many", 0), RealOf(instances[1]));
}

TEST_F(ParameterWrapperTest, Multi_TheEndOfALight_EmptiesItsCells) {
    IShader* const receiver = Light("Receiver");
    receiver->GetParameter("many")->SetLength(2);
    receiver->SetParameter(nullptr, "many", instances[1], 0);
    receiver->SetParameter(nullptr, "many", instances[1], 1);
    lights->DestroyShader(instances[1]);
    IShader* shader = other;
    for (const int index : {0, 1}) {
        EXPECT_TRUE(receiver->GetParameter("many")->Get(shader, index));
        EXPECT_EQ(shader, nullptr);
    }
}

TEST_F(ParameterWrapperTest, Single_HoldsTheLightAndItsCell) {
    IShader* const receiver = Light("Receiver");
    IParameter* const one = receiver->GetParameter("one");
    EXPECT_FALSE(one->IsArray());
    EXPECT_EQ(one->GetLength(), 1);
    EXPECT_FALSE(one->SetLength(2));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "one", instances[1]));
    EXPECT_EQ(Connected(receiver, "one"), instances[1]);
    EXPECT_EQ(Value<IShader*>(RealOf(receiver), "one"), instances[1]);
    EXPECT_EQ(Value<int>(RealOf(receiver), "oneRef"), 1);
    std::string text;
    EXPECT_TRUE(one->GetAsString(text));
    EXPECT_EQ(text, TextOf(instances[1]));

    IShader* const plain = Make("LightInstanceNullArray");
    EXPECT_TRUE(receiver->SetParameter(nullptr, "one", plain));
    EXPECT_EQ(Value<int>(RealOf(receiver), "oneRef"), 1);
    EXPECT_TRUE(receiver->SetParameter(nullptr, "one", static_cast<IShader*>(nullptr)));
    EXPECT_EQ(Connected(receiver, "one"), nullptr);
    EXPECT_EQ(Value<int>(RealOf(receiver), "oneRef"), 0);
    EXPECT_FALSE(receiver->SetParameter(nullptr, "one", Light("LightPointArray")));
    EXPECT_EQ(Connected(receiver, "one"), nullptr);
}

TEST_F(ParameterWrapperTest, Single_TheEndOfTheLight_EmptiesTheInput) {
    IShader* const receiver = Light("Receiver");
    receiver->SetParameter(nullptr, "one", instances[1]);
    lights->DestroyShader(instances[1]);
    EXPECT_EQ(Connected(receiver, "one"), nullptr);
    EXPECT_EQ(Value<IShader*>(RealOf(receiver), "one"), nullptr);
}

TEST_F(ParameterWrapperTest, Single_WithARowOfCells_TakesLightsOfOneKind) {
    IShader* const receiver = Light("Receiver");
    IParameter* const row = receiver->GetParameter("row");
    EXPECT_TRUE(row->SetLength(2));
    EXPECT_EQ(row->GetLength(), 2);
    EXPECT_FALSE(row->SetLength(-3));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "row", instances[0], 0));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "row", instances[1], 1));
    EXPECT_EQ(Value<IShader*>(RealOf(receiver), "row"), RealOf(instances[0]));
    EXPECT_EQ(Cell<int>(receiver, "rowRef", 0), 0);
    EXPECT_EQ(Cell<int>(receiver, "rowRef", 1), 1);
    IShader* shader = nullptr;
    EXPECT_TRUE(row->Get(shader, 1));
    EXPECT_EQ(shader, instances[1]);
    EXPECT_FALSE(row->Get(shader, 2));
    std::string text;
    EXPECT_TRUE(row->GetAsString(text, 0));
    EXPECT_EQ(text, TextOf(instances[0]));
    EXPECT_FALSE(row->GetAsString(text, 2));
    EXPECT_FALSE(receiver->SetParameter(nullptr, "row", instances[0], 2));

    EXPECT_FALSE(receiver->SetParameter(nullptr, "row", other, 1));
    EXPECT_TRUE(checks.Contains("incoming shader is different from the existing one for the "
                                "vectorized shader input. Unconnect all inputs then connect the "
                                "new shader",
                                kSingle));
    EXPECT_TRUE(receiver->SetParameter(nullptr, "row", static_cast<IShader*>(nullptr), 1));
    EXPECT_EQ(Value<IShader*>(RealOf(receiver), "row"), nullptr);
    EXPECT_EQ(Cell<int>(receiver, "rowRef", 1), 0);
    EXPECT_TRUE(row->Get(shader, 1));
    EXPECT_EQ(shader, nullptr);
    EXPECT_TRUE(receiver->SetParameter(nullptr, "row", other, 1));
    // A row has no single cell for the light that is set as a whole.
    EXPECT_FALSE(receiver->SetParameter(nullptr, "row", instances[0]));
    EXPECT_EQ(Value<IShader*>(RealOf(receiver), "row"), instances[0]);
    EXPECT_TRUE(receiver->SetParameter(nullptr, "row", instances[1], 0));
}

TEST_F(ParameterWrapperTest, Wrappers_WhoseShaderIsGone_AnswerFalse) {
    IShader* const light = Light("LightPointArray");
    IShader* const receiver = Light("Receiver");
    IParameter* const cell = light->GetParameter("intensity");
    IParameter* const decay = light->GetParameter("decay");
    IParameter* const many = receiver->GetParameter("many");
    IParameter* const one = receiver->GetParameter("one");
    IShader* const target = Light("LightDecayDoubleArray");
    manager.DestroyShader(RealOf(light));
    manager.DestroyShader(RealOf(receiver));
    float value = 0.0f;
    std::string text;
    EXPECT_FALSE(cell->Set(1.0f));
    EXPECT_FALSE(cell->Get(value));
    EXPECT_FALSE(cell->GetAsString(text));
    EXPECT_FALSE(cell->IsDefault());
    EXPECT_EQ(cell->GetName(), "");
    EXPECT_FALSE(decay->Set(target));
    EXPECT_FALSE(decay->SetLength(2));
    EXPECT_EQ(decay->GetLength(), 0);
    EXPECT_FALSE(decay->IsComplete(nullptr));
    EXPECT_FALSE(many->Set(other, 0));
    EXPECT_FALSE(many->SetLength(1));
    EXPECT_EQ(many->GetLength(), 0);
    EXPECT_FALSE(one->Set(other));
    EXPECT_FALSE(one->Set(other, 0));
    EXPECT_EQ(one->GetLength(), 0);
    EXPECT_FALSE(AsView(light)->SetSubIndex(4, true));
}

} // namespace
} // namespace Tolen::Effects::Tests

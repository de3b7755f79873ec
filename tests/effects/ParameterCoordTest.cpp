#include "ParameterCoord.h"

#include "Graph.h"

#include "effects/ParameterFixture.h"

#include "TolenEffects/IReferenceParameter.h"

namespace Tolen::Effects::Tests {

using ::testing::ElementsAre;

using Listener = CountingListener<IParameter>;

class ParameterCoordTest : public ParameterFixture {
protected:
    std::unique_ptr<ParameterCoord> MakeCoord(const std::string& name,
                                              const std::string& value = std::string()) {
        auto coord = std::make_unique<ParameterCoord>();
        EXPECT_TRUE(coord->Init(&_manager, kType_Vec2, name, 0));
        EXPECT_TRUE(coord->Set(value));
        return coord;
    }
};

TEST_F(ParameterCoordTest, New_AnswersAsACoordinateWithoutAName) {
    ParameterCoord coord;
    ASSERT_TRUE(coord.Init(&_manager, kType_Vec3, "position", 1));
    Listener listener;
    std::string value = "before";

    EXPECT_EQ(coord.GetClass(), IParameter::kClass_Coord);
    EXPECT_EQ(coord.GetTypeSpecifier(), kType_Vec3);
    EXPECT_EQ(coord.GetType(), "vec3");
    EXPECT_EQ(coord.GetName(), "position");
    EXPECT_EQ(coord.GetTransformed(), 1);
    EXPECT_EQ(coord.GetLength(), 1);
    EXPECT_FALSE(coord.IsArray());
    EXPECT_FALSE(coord.SetLength(2));
    EXPECT_TRUE(coord.IsComplete(nullptr));
    EXPECT_TRUE(coord.AddListenerChangeValue(listener.Get()));
    EXPECT_TRUE(coord.RemoveListenerChangeValue(listener.Get()));
    EXPECT_TRUE(coord.Get(value));
    EXPECT_EQ(value, "");
    EXPECT_TRUE(coord.GetAsString(value));
    EXPECT_TRUE(coord.GetAsString(value, 0));
    EXPECT_FALSE(coord.GetAsString(value, 1));
}

TEST_F(ParameterCoordTest, Init_OfATransformedCoordinate_WantsAVec3) {
    for (const TypeSpecifier specifier : {kType_Float, kType_Vec2, kType_Vec4}) {
        ParameterCoord coord;
        _console.Clear();
        EXPECT_FALSE(coord.Init(&_manager, specifier, "x", 1));
        EXPECT_EQ(_console.GetGeneral(),
                  "ParameterCoord::Init Transformed Coords must be declared vec3\n");
        EXPECT_TRUE(coord.Init(&_manager, specifier, "x", 0));
    }
}

TEST_F(ParameterCoordTest, Set_OfAnotherNameTellsTheStructureOnly) {
    const auto coord = MakeCoord("uv");
    IParameter& client = *coord;
    Listener structure;
    Listener value;
    client.AddListenerChangeStructure(structure.Get());
    client.AddListenerChangeValue(value.Get());

    EXPECT_TRUE(client.Set(std::string("map1")));
    EXPECT_TRUE(client.Set(std::string("map1")));
    EXPECT_EQ(structure.GetCount(), 1);
    structure.SetAnswer(false);
    EXPECT_FALSE(client.Set(std::string("map2")));
    std::string name;
    EXPECT_TRUE(client.Get(name));
    EXPECT_EQ(name, "map2");
    EXPECT_TRUE(client.RemoveListenerChangeStructure(structure.Get()));
    EXPECT_TRUE(client.Set(std::string("map3")));

    EXPECT_EQ(structure.GetCount(), 2);
    EXPECT_EQ(value.GetCount(), 0);
}

TEST_F(ParameterCoordTest, Set_OfAnythingButAName_IsRefused) {
    const auto coord = MakeCoord("uv");
    IParameter& client = *coord;

    EXPECT_FALSE(client.Set(1));
    EXPECT_FALSE(client.Set(true));
    EXPECT_FALSE(client.Set(1.0f, 0));
    EXPECT_FALSE(client.Set(static_cast<IShader*>(nullptr)));
    EXPECT_FALSE(ParameterCoord().Set(std::string("map1")));
}

TEST_F(ParameterCoordTest, VisitTransformations_WritesTheNameIntoEveryUse) {
    const ParsedClass parsed("vec2 f() { return uv + uv.yx + other; }");
    const auto module = parsed.CloneMethods();
    const auto coord = MakeCoord("uv", "map1");
    Transformer transformer(module.get());

    EXPECT_TRUE(transformer.Run(*coord));

    EXPECT_THAT(transformer.GetClasses(), ElementsAre(kClass_Variable));
    EXPECT_THAT(PrintLines(module.get()),
                ElementsAre("vec2 f()", "{", "return ((map1+map1.yx)+other);", "}"));
}

TEST_F(ParameterCoordTest, VisitTransformations_OfCoordinatesThatSwapTheirNames_KeepsThemApart) {
    const ParsedClass parsed("vec2 f() { return uv0 - uv1; }");
    const auto module = parsed.CloneMethods();
    const auto first = MakeCoord("uv0", "uv1");
    const auto second = MakeCoord("uv1", "uv0");

    EXPECT_TRUE(Transformer(module.get()).Run(*first));
    EXPECT_TRUE(Transformer(module.get()).Run(*second));

    EXPECT_THAT(PrintLines(module.get()), ElementsAre("vec2 f()", "{", "return (uv1-uv0);", "}"));
}

TEST_F(ParameterCoordTest, CreateReference_GivesOneOfThisParameter) {
    const auto coord = MakeCoord("uv");
    Graph graph;

    IReferenceParameter* reference = coord->CreateReference(&graph);

    ASSERT_NE(reference, nullptr);
    EXPECT_EQ(reference->GetParameter(), coord.get());
    EXPECT_TRUE(coord->DestroyReference(reference));
}

} // namespace Tolen::Effects::Tests

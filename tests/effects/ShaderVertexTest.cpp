#include "ShaderVertex.h"

#include "EffectsFixture.h"

namespace Tolen::Effects::Tests {
namespace {

class ShaderVertexTest : public EffectsFixture {
protected:
    ShaderVertexTest() { EXPECT_TRUE(vertex.Init(&manager, nullptr)); }
    ~ShaderVertexTest() override { vertex.Shutdown(); }

    std::string GetNames() {
        std::string names;
        auto visit = [&names](const std::string& name, IAttributeVertex*) {
            names += name + " ";
            return true;
        };
        auto visitor = FastDelegate2<const std::string&, IAttributeVertex*, bool>::Borrow(visit);
        EXPECT_TRUE(vertex.VisitAttributes(visitor));
        return names;
    }

    ShaderVertex vertex;
};

TEST_F(ShaderVertexTest, PositionAndNormal_AreAlwaysThere) {
    EXPECT_EQ(GetNames(), "Normal Position ");
    EXPECT_TRUE(vertex.ReleaseAttribute("Normal"));
    EXPECT_TRUE(vertex.ReleaseAttribute("Position"));
    EXPECT_EQ(GetNames(), "Normal Position ");
    ASSERT_TRUE(vertex.Compile());
    EXPECT_EQ(GetText(""), "\n"
                           "attribute vec3 a_Normal;\n"
                           "attribute vec3 a_Position;\n"
                           "transformed normalized varying vec3 Normal;\n"
                           "\n"
                           "\n"
                           "void main()\n"
                           "{\n"
                           "\tNormal = a_Normal;\n"
                           "\tkl_Position = vec4(a_Position, 1.000000000000000);\n"
                           "}\n"
                           "\n");
}

TEST_F(ShaderVertexTest, AcquireAttribute_RefusesWhatDoesNotFit) {
    EXPECT_FALSE(vertex.AcquireAttribute(kType_Vec2, "", kTransformationCoord_Coord));
    EXPECT_FALSE(vertex.AcquireAttribute(kType_Vec3, "Normal", kTransformationCoord_Coord));
    EXPECT_TRUE(vertex.AcquireAttribute(kType_Vec3, "st", kTransformationCoord_Coord));
    EXPECT_FALSE(vertex.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord));
    EXPECT_FALSE(vertex.AcquireAttribute(kType_Vec3, "st", kTransformationCoord_Tangent));
    EXPECT_EQ(console.GetGeneral(), "ShaderVertex::AcquireAttribute Name Null\n"
                                    "ShaderVertex::AcquireAttribute Type Conflict\n"
                                    "ShaderVertex::AcquireAttribute Type Conflict\n"
                                    "ShaderVertex::AcquireAttribute Transformation Conflict\n");
    EXPECT_TRUE(vertex.ReleaseAttribute("st"));
    EXPECT_EQ(GetNames(), "Normal Position ");
}

TEST_F(ShaderVertexTest, TheFirstUse_IsNotCounted) {
    vertex.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    vertex.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    EXPECT_TRUE(vertex.ReleaseAttribute("st"));
    EXPECT_EQ(GetNames(), "Normal Position ");
    EXPECT_TRUE(vertex.ReleaseAttribute("st"));
}

TEST_F(ShaderVertexTest, Coords_AreHandedOnByTheirTransformation) {
    vertex.AcquireAttribute(kType_Vec2, "st", kTransformationCoord_Coord);
    vertex.AcquireAttribute(kType_Vec3, "bump", kTransformationCoord_Normal);
    vertex.AcquireAttribute(kType_Vec3, "along", kTransformationCoord_Tangent);
    ASSERT_TRUE(vertex.Compile());
    const std::string text = GetText("");
    for (const char* line :
         {"attribute vec2 a_st;\n", "\nvarying vec2 st;\n", "\nvarying vec3 bump;\n",
          "\nnormalized varying vec3 along;\n", "\tst = a_st;\n",
          "\tbump = (mat3(kl_PrimitiveTransformMatrixInverseTranspose)*a_bump);\n",
          "\talong = (mat3(kl_PrimitiveTransformMatrix)*a_along);\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line << text;
    }
}

} // namespace
} // namespace Tolen::Effects::Tests

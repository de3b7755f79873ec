#include "shaders/LightLibrary.h"

#include "TolenOpenKL/Mesh.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <array>
#include <cmath>
#include <functional>
#include <numbers>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

constexpr double kPi = std::numbers::pi;

using Place3 = std::array<double, 3>;

/// A light in the origin, or one that shines along -z, over a screen in the plane z = -1 that
/// covers all x below 0. Spots are in the plane z = -3.
class LightShadows : public LightLibrary {
protected:
    LightShadows() {
        PutInTheWay(OpenKL::MakePlane(40.0f, 40.0f),
                    MakeTransform({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {-20.0f, 0.0f, -1.0f}));
    }

    static bool IsOpen(const Place3& from, const Place3& way) {
        return from[0] + way[0] * (-1.0 - from[2]) / way[2] > 0.0;
    }

    static Spot At(double x) { return {{static_cast<float>(x), 0.1f, -3.0f}, {0.0f, 0.0f, 1.0f}}; }

    /// The part of the ways to the light, given for numbers from 0 to 1, that the screen leaves
    /// open.
    static double
    GetOpenPart(double x, const std::function<Place3(const Place3& from, double, double)>& way) {
        constexpr int kSteps = 500;
        const Place3 from = {x, 0.1, -3.0};
        int open = 0;
        for (int i = 0; i < kSteps; ++i) {
            for (int j = 0; j < kSteps; ++j) {
                open += IsOpen(from, way(from, (i + 0.5) / kSteps, (j + 0.5) / kSteps));
            }
        }
        return static_cast<double>(open) / (kSteps * kSteps);
    }

    /// Compares where the shadow is and where its edge is soft.
    void ExpectSoftEdge(const Cell& light, const Cell& shadow, double width,
                        const std::function<Place3(const Place3&, double, double)>& way) {
        const Cell bare = Place(light);
        std::vector<Spot> spots;
        std::vector<double> xs;
        for (const double x : {-3.0 * width, -0.6 * width, -0.2 * width, 0.0, 0.3 * width,
                               0.7 * width, 3.0 * width}) {
            xs.push_back(x);
            spots.push_back(At(x));
        }
        const std::vector<Pixel> lit = MeasureIrradiance(MakeLighting({bare}), spots, 1);
        const Cell instance = Place(light, {{"shadow", shadow}});
        const std::vector<Pixel> pixels = MeasureIrradiance(MakeLighting({instance}), spots, 128);
        int soft = 0;
        for (std::size_t i = 0; i < xs.size(); ++i) {
            const double expected = GetOpenPart(xs[i], way);
            const double part = static_cast<double>(pixels[i][0] / lit[i][0]);
            EXPECT_NEAR(part, expected, 0.02) << "x " << xs[i];
            soft += expected > 0.05 && expected < 0.95;
        }
        EXPECT_GE(soft, 2);
        EXPECT_EQ(pixels.front()[0], 0.0f);
        EXPECT_NEAR(pixels.back()[0], lit.back()[0], 1e-5f);
    }
};

TEST_F(LightShadows, ASharpOne_IsWhereTheLightIsHidden) {
    for (const char* const name : {"LightPointArray", "LightDirectArray"}) {
        const Cell light = Add(name);
        const Cell instance = Place(light, {{"shadow", Add("ShadowSharpArray")}});
        EXPECT_EQ(MeasureAt(instance, At(-0.01)), 0.0) << name;
        EXPECT_GT(MeasureAt(instance, At(0.01)), 0.9) << name;
    }
}

TEST_F(LightShadows, Strength_IsThePartThatIsHeldUp) {
    const Cell light = Add("LightDirectArray");
    for (const char* const name :
         {"ShadowSharpArray", "ShadowBlurredArray", "ShadowAreaPlanarArray",
          "ShadowAreaPlanarAngularArray", "ShadowAreaSphereBruteArray", "ShadowAreaBoxArray"}) {
        const Cell shadow = Add(name);
        const Cell instance = Place(light, {{"shadow", shadow}});
        EXPECT_EQ(MeasureAt(instance, At(-1.0), 1), 0.0) << name;
        SetCell(shadow, "strength", 0.7f);
        EXPECT_NEAR(MeasureAt(instance, At(-1.0), 1), 0.3, 1e-5) << name;
        SetCell(shadow, "strength", 0.0f);
        EXPECT_NEAR(MeasureAt(instance, At(-1.0), 1), 1.0, 1e-5) << name;
    }
}

TEST_F(LightShadows, WithoutAShadow_LightShinesThroughThings) {
    const Cell light = Add("LightDirectArray");
    EXPECT_NEAR(MeasureAt(Place(light, {{"shadow", Add("ShadowNullArray")}}), At(-1.0), 1), 1.0,
                1e-5);
    const Cell instance = Place(light, {{"shadow", Add("ShadowSharpArray")}});
    EXPECT_EQ(MeasureAt(instance, At(-1.0), 1), 0.0);
    SetCell(instance, "hasShadow", false);
    EXPECT_NEAR(MeasureAt(instance, At(-1.0), 1), 1.0, 1e-5);
}

TEST_F(LightShadows, ThingsInTheGap_AndBehindTheLight_ThrowNone) {
    const Cell light = Add("LightPointArray");
    const Cell shadow = Add("ShadowSharpArray");
    const Cell instance = Place(light, {{"shadow", shadow}});
    const Spot spot{{-0.5f, 0.0f, -3.0f}, {0.0f, 0.0f, 1.0f}};
    EXPECT_EQ(MeasureAt(instance, spot, 1), 0.0);
    SetCell(shadow, "gap", 1.2f);
    EXPECT_GT(MeasureAt(instance, spot, 1), 0.9);
    SetCell(shadow, "gap", 0.0f);
    const Spot between{{-0.5f, 0.0f, -0.5f}, {0.0f, 0.0f, 1.0f}};
    EXPECT_GT(MeasureAt(instance, between, 1), 0.0);
}

TEST_F(LightShadows, ABlurredOne_IsSoftByTheAngleOfItsCone) {
    const Cell shadow = Add("ShadowBlurredArray");
    SetCell(shadow, "angle", 15.0f);
    const auto way = [](const Place3&, double u, double v) {
        const double z = 1.0 - v * (1.0 - std::cos(15.0 * kPi / 180.0));
        const double r = std::sqrt(1.0 - z * z);
        return Place3{r * std::cos(2.0 * kPi * u), r * std::sin(2.0 * kPi * u), z};
    };
    ExpectSoftEdge(Add("LightDirectArray"), shadow, 2.0 * std::tan(15.0 * kPi / 180.0), way);
}

TEST_F(LightShadows, AnAreaOne_IsSoftByTheSizeOfItsRectangle) {
    const Cell shadow = Add("ShadowAreaPlanarArray");
    SetCell(shadow, "size", Vector2f(0.8f, 3.0f));
    ExpectSoftEdge(Add("LightPointArray"), shadow, 0.8, [](const Place3& from, double u, double v) {
        return Place3{0.8 * (u - 0.5) - from[0], 3.0 * (v - 0.5) - from[1], -from[2]};
    });
}

TEST_F(LightShadows, AnAngularOne_IsSoftByTheAnglesOfItsRectangle) {
    const Cell shadow = Add("ShadowAreaPlanarAngularArray");
    SetCell(shadow, "angles", Vector2f(20.0f, 50.0f));
    const double x = std::tan(10.0 * kPi / 180.0);
    const double y = std::tan(25.0 * kPi / 180.0);
    ExpectSoftEdge(Add("LightDirectArray"), shadow, 2.0 * x,
                   [x, y](const Place3&, double u, double v) {
                       return Place3{x * (2.0 * u - 1.0), y * (2.0 * v - 1.0), 1.0};
                   });
}

TEST_F(LightShadows, ASphereOne_IsSoftByItsRadius) {
    const Cell shadow = Add("ShadowAreaSphereBruteArray");
    SetCell(shadow, "radius", 0.5f);
    ExpectSoftEdge(Add("LightPointArray"), shadow, 1.0, [](const Place3& from, double u, double v) {
        const double z = 0.5 * (2.0 * v - 1.0);
        const double r = std::sqrt(0.25 - z * z);
        return Place3{r * std::cos(2.0 * kPi * u) - from[0], r * std::sin(2.0 * kPi * u) - from[1],
                      z - from[2]};
    });
}

TEST_F(LightShadows, ABoxOne_IsSoftByItsEdges) {
    const Cell shadow = Add("ShadowAreaBoxArray");
    SetCell(shadow, "size", Vector3f(0.8f, 1.0f, 1.0f));
    // What y does is the same for all, so that x and z are enough.
    ExpectSoftEdge(Add("LightPointArray"), shadow, 1.0, [](const Place3& from, double u, double v) {
        return Place3{0.8 * (u - 0.5) - from[0], -from[1], v - 0.5 - from[2]};
    });
}

TEST_F(LightShadows, OfAreaLights_AreThoseOfTheirSurface) {
    const Cell light = Add("LightPlanarAreaArray");
    SetCell(light, "size", Vector2f(0.8f, 0.01f));
    ConnectCell(light, "emission", Add("EmissionSurfaceDiffuseArray"));
    const Cell instance = Place(light);
    const double x = 0.5;
    const double expected = GetOpenPart(x, [](const Place3& from, double u, double) {
        return Place3{0.8 * (u - 0.5) - from[0], -from[1], -from[2]};
    });
    EXPECT_GT(expected, 0.2);
    EXPECT_LT(expected, 1.0);
    const double lit = MeasureAt(instance, At(x));
    ConnectCell(light, "shadow", Add("ShadowSharpArray"));
    EXPECT_NEAR(MeasureAt(instance, At(x)) / lit, expected, 0.05);
}

TEST_F(LightShadows, OfDomes_AreOfAllTheirDirections) {
    // At the edge of the screen half of the sky is hidden.
    for (const char* const name : {"LightDome_ConstantArray", "LightDomeArray"}) {
        const Cell light = Add(name);
        if (light.shader->GetParameter("texture") != nullptr) {
            ConnectCell(light, "texture", MakeTexture(1, 1, {1.0f}, KL_NEAREST));
        }
        const double open = MeasureAt(Place(light), At(0.0));
        EXPECT_NEAR(open, kPi, 0.02 * kPi) << name;
        const Cell instance = Place(light, {{"shadow", Add("ShadowSharpArray")}});
        EXPECT_NEAR(MeasureAt(instance, At(0.0)), 0.5 * kPi, 0.03 * kPi) << name;
    }
}

} // namespace
} // namespace Tolen::Tests

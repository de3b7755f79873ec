#include "shaders/LightLibrary.h"

#include <cmath>
#include <numbers>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

constexpr double kPi = std::numbers::pi;

class Lights : public LightLibrary {
protected:
    /// What makes a light that of a matt surface in the real world.
    Parts MakeMatt() {
        return {{"emission", Add("EmissionSurfaceDiffuseArray")},
                {"decay", Add("LightDecayInvSquareArray")}};
    }
};

TEST_F(Lights, APoint_GivesItsIntensityOverTheSquareOfTheDistance) {
    const Cell light = Add("LightPointArray");
    SetCell(light, "intensity", Vector3f(3.0f, 5.0f, 7.0f));
    const Cell instance = Place(light, {{"decay", Add("LightDecayInvSquareArray")}});
    const Spot spot{{0.0f, 3.0f, -4.0f}, {0.0f, 0.0f, 1.0f}};
    const Pixel light3 = MeasureIrradiance(MakeLighting({instance}), {spot}, 1)[0];
    EXPECT_NEAR(light3[0], 3.0 / 25.0 * 0.8, 1e-6);
    EXPECT_NEAR(light3[1], 5.0 / 25.0 * 0.8, 1e-6);
    EXPECT_NEAR(light3[2], 7.0 / 25.0 * 0.8, 1e-6);
}

const char* const kParts[][2] = {
    {"focus", "LightFocusNullArray"},
    {"focus", "LightFocusConeArray"},
    {"focus", "LightFocusPyramidArray"},
    {"focus", "LightFocusCylinderArray"},
    {"focus", "LightFocusBoxArray"},
    {"focus", "LightFocusDiscAreaArray"},
    {"focus", "LightFocusRectAreaArray"},
    {"decay", "LightDecayNullArray"},
    {"decay", "LightDecayDoubleArray"},
    {"decay", "LightDecayInverseArray"},
    {"decay", "LightDecayInvSquareArray"},
    {"decay", "LightDecayNearFarArray"},
    {"emission", "EmissionNullArray"},
    {"emission", "EmissionSurfaceDiffuseArray"},
    {"emission", "EmissionLinearDiffuseArray"},
    {"emission", "EmissionGoniophotometricArray"},
    {"projector", "ProjectorMapNullArray"},
    {"projector", "ProjectorMapConeArray"},
    {"projector", "ProjectorMapOmniArray"},
    {"projector", "ProjectorMapDirectBoxArray"},
    {"projector", "ProjectorMapDirectCylinderArray"},
    {"shadow", "ShadowNullArray"},
    {"shadow", "ShadowSharpArray"},
    {"shadow", "ShadowBlurredArray"},
    {"shadow", "ShadowAreaPlanarArray"},
    {"shadow", "ShadowAreaPlanarAngularArray"},
    {"shadow", "ShadowAreaSphereBruteArray"},
    {"shadow", "ShadowAreaBoxArray"},
};

const char* const kLights[] = {
    "LightNullArray",
    "LightPointArray",
    "LightDirectArray",
    "LightAmbientArray",
    "LightLinearArray",
    "LightPlanarAreaArray",
    "LightPlanarAreaFacingArray",
    "LightSphereAreaBruteArray",
    "LightSphereAreaImportanceArray",
    "LightDome_ConstantArray",
    "LightDomeArray",
    "LightPortalRectArray",
    "LightCylindricalArray",
    "LightCylindricalCappedArray",
};

TEST_F(Lights, OfAllKindsWithAllParts_CompileTogether) {
    std::vector<Cell> instances = {Add("LightInstanceNullArray")};
    for (const char* name : kLights) {
        for (const auto& [input, part] : kParts) {
            const Cell light = Add(name);
            const Cell cell = Add(part);
            if (light.shader->GetParameter(input) != nullptr) {
                ConnectCell(light, input, cell);
            }
            instances.push_back(Place(light));
        }
    }
    IShader* const lighting = MakeLighting(instances);
    Set(lighting, "samples", 1000);
    const Spot spot{{0.3f, 0.2f, -4.0f}, {0.0f, 0.0f, 1.0f}};
    EXPECT_GT(MeasureIrradiance(lighting, {spot}, 1)[0][0], 1.0f);
}

} // namespace
} // namespace Tolen::Tests

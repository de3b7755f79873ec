#include "shaders/LightLibrary.h"

#include "TolenEffects/IParameter.h"

#include <cmath>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

class LightManagers : public LightLibrary {
protected:
    /// Lamps all around the origin, near and far, one of them much brighter than the others.
    std::vector<Cell> MakeLamps(int count) {
        const Cell decay = Add("LightDecayInvSquareArray");
        std::vector<Cell> instances;
        for (int i = 0; i < count; ++i) {
            const Cell light = Add("LightPointArray");
            const float power = i == count / 3 ? 40.0f : 1.0f;
            SetCell(light, "intensity", Vector3f(power, 0.5f * power, 1.0f));
            const float turn = 2.4f * static_cast<float>(i);
            const float out = 1.0f + 0.1f * static_cast<float>(i);
            const Matrix44f place = MakeTransform(
                {1, 0, 0}, {0, 1, 0}, {0, 0, 1},
                {out * std::cos(turn), out * std::sin(turn), 1.0f + 0.5f * std::sin(3.0f * turn)});
            instances.push_back(Place(light, {{"decay", decay}}, place));
        }
        return instances;
    }

    const Spot spot{{0.0f, 0.0f, 0.0f}, {0.0f, 0.6f, 0.8f}};
};

TEST_F(LightManagers, WithoutLights_ItIsDark) {
    EXPECT_EQ(MeasureIrradiance(MakeLighting({}), {spot}, 1)[0][0], 0.0f);
}

TEST_F(LightManagers, OfFewLights_AllAreLookedFor_WithoutNoise) {
    const std::vector<Cell> lamps = MakeLamps(8);
    float sum = 0.0f;
    for (const Cell& lamp : lamps) {
        sum += MeasureIrradiance(MakeLighting({lamp}), {spot}, 1)[0][0];
    }
    EXPECT_NEAR(MeasureIrradiance(MakeLighting(lamps), {spot}, 1)[0][0], sum, 1e-5f * sum);
}

TEST_F(LightManagers, OfManyLights_SamplesAreRightOnAverage) {
    const std::vector<Cell> lamps = MakeLamps(120);
    IShader* const lighting = MakeLighting(lamps);
    Set(lighting, "samples", 120);
    const Pixel all = MeasureIrradiance(lighting, {spot}, 1)[0];
    for (const int samples : {1, 3, 16}) {
        for (const int candidates : {1, 5}) {
            Set(lighting, "samples", samples);
            Set(lighting, "candidates", candidates);
            const Pixel mean = MeasureIrradiance(lighting, {spot}, 1024)[0];
            for (std::size_t channel = 0; channel < 3; ++channel) {
                EXPECT_NEAR(mean[channel], all[channel], 0.03f * all[channel])
                    << samples << " samples of " << candidates;
            }
        }
    }
}

TEST_F(LightManagers, MoreCandidates_TakeNoiseAway) {
    IShader* const lighting = MakeLighting(MakeLamps(120));
    Set(lighting, "samples", 1);
    const auto spread = [&](int candidates) {
        Set(lighting, "candidates", candidates);
        double sum = 0.0;
        double squares = 0.0;
        const std::vector<Spot> spots(128, spot);
        for (const Pixel& pixel : MeasureIrradiance(lighting, spots, 1)) {
            sum += static_cast<double>(pixel[0]);
            squares += static_cast<double>(pixel[0]) * static_cast<double>(pixel[0]);
        }
        return squares / 128.0 - sum / 128.0 * (sum / 128.0);
    };
    EXPECT_LT(spread(16), 0.4 * spread(1));
}

TEST_F(LightManagers, CellsWithoutALight_AreSkipped) {
    const std::vector<Cell> lamps = MakeLamps(4);
    IShader* const lighting = MakeLighting(lamps);
    const float all = MeasureIrradiance(lighting, {spot}, 1)[0][0];
    const float first = MeasureIrradiance(MakeLighting({lamps[0]}), {spot}, 1)[0][0];
    for (const int nothing : {-1, -2}) {
        SetCell({lighting, 0}, "lightsRef", Vector2i(nothing, nothing));
        EXPECT_NEAR(MeasureIrradiance(lighting, {spot}, 1)[0][0], all - first, 1e-5f * all);
        // The same when samples are drawn.
        Set(lighting, "samples", 2);
        EXPECT_NEAR(MeasureIrradiance(lighting, {spot}, 512)[0][0], all - first, 0.03f * all);
        Set(lighting, "samples", 8);
    }
}

TEST_F(LightManagers, LightsThatAreAdded_CompileNothing) {
    const std::vector<Cell> lamps = MakeLamps(3);
    IShader* const lighting = MakeLighting(lamps);
    IShader* const material = Make("Material");
    IShader* const integrator = Make("DirectLight");
    Connect(integrator, "lighting", lighting);
    Connect(material, "integrator", integrator);
    Effects::IEffect* const effect = manager.CreateEffectSurface();
    ASSERT_TRUE(effect->SetRoot(material));
    ASSERT_TRUE(Compiles(effect));

    MakeLamps(5);
    EXPECT_TRUE(lighting->GetParameter("lightsRef")->SetLength(7));
    EXPECT_TRUE(effect->IsCompiled());
}

class LitSurfaces : public LightManagers {
protected:
    /// A white surface under a lamp straight above it, as its integrator shows it.
    Pixel MeasureLit(const char* materialClass, IShader* integrator) {
        IShader* const material = Make(materialClass);
        Connect(material, "integrator", integrator);
        return MeasureMean(material, 2, 2, 64);
    }
};

// The wall that shows the picture is lit, from the side that the camera is on.
TEST_F(LitSurfaces, SendOnTheirPartOfTheLight_UnlessTheyAreInTheShadow) {
    const Cell light = Add("LightDirectArray");
    SetCell(light, "irradiance", Vector3f(2.0f, 4.0f, 6.0f));
    IShader* const lighting = MakeLighting({Place(light, {{"shadow", Add("ShadowSharpArray")}})});
    Load("start", R"(
        class Start
        {
            int GetRayCount() { return 1; }

            void Render()
            {
                throughput = vec3(1.0);
                direct = 1.0;
                spawnRay(vec3(kl_PixelCoord, 1.0), vec3(0.0, 0.0, -1.0));
            }
        })");
    Effects::IEffect* const start = manager.CreateEffectRenderer();
    ASSERT_TRUE(start->SetRoot(Make("Start")));
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    start->CreateReference(frame);
    ASSERT_TRUE(Compiles(start));
    context->SetFramePrimitive(frame);

    for (const char* const integratorClass : {"PathTracer", "DirectLight"}) {
        IShader* const integrator = Make(integratorClass);
        EXPECT_EQ(MeasureLit("Material", integrator)[0], 0.0f);
        Connect(integrator, "lighting", lighting);
        const Pixel pixel = MeasureLit("Material", integrator);
        EXPECT_NEAR(pixel[0], 2.0 * 0.8 / 3.14159265, 0.001) << integratorClass;
        EXPECT_NEAR(pixel[1], 4.0 * 0.8 / 3.14159265, 0.001) << integratorClass;
        EXPECT_NEAR(pixel[2], 6.0 * 0.8 / 3.14159265, 0.001) << integratorClass;
        EXPECT_GT(MeasureLit("PrincipledMaterial", integrator)[0], 0.3f) << integratorClass;
    }

    // A lid over the wall, behind the camera.
    OpenKL::IPrimitive* const lid = context->CreatePrimitive();
    ASSERT_TRUE(OpenKL::SetMesh(*lid, OpenKL::MakePlane(20.0f, 20.0f)));
    Matrix44f place;
    place(2, 3) = 5.0f;
    lid->SetTransform(place);
    for (const char* const integratorClass : {"PathTracer", "DirectLight"}) {
        IShader* const integrator = Make(integratorClass);
        Connect(integrator, "lighting", lighting);
        EXPECT_EQ(MeasureLit("Material", integrator)[0], 0.0f) << integratorClass;
        EXPECT_EQ(MeasureLit("PrincipledMaterial", integrator)[0], 0.0f) << integratorClass;
    }
}

} // namespace
} // namespace Tolen::Tests

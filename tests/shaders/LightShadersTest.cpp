#include "shaders/LightLibrary.h"

#include "support/paths/SourceFolder.h"

#include "TolenEffects/IMgrLightShaders.h"
#include "TolenEffects/IParameter.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>
#include <sstream>

namespace Tolen::Tests {
namespace {

using Effects::IMgrLightShaders;
using Effects::IShader;

/// As docs/lights.md shows it, to the letter.
void ConnectLamp(Effects::MgrEffects& manager, IMgrConsole* console, IShader* paths) {
    Result result;
    using namespace Tolen::Effects;

    IMgrLightShaders* const lights = CreateMgrLightShaders();
    lights->Init(&manager, console); // the libraries of shaders/lights are loaded by now

    IShader* const lamp = lights->CreateShader("LightPointArray", &result);
    lamp->SetParameter(&result, "intensity", Vector3f(60.0f, 55.0f, 45.0f));
    lamp->SetParameter(&result, "decay", lights->CreateShader("LightDecayInvSquareArray", &result));
    lamp->SetParameter(&result, "shadow", lights->CreateShader("ShadowSharpArray", &result));

    IShader* const cone = lights->CreateShader("LightFocusConeArray", &result);
    cone->SetParameter(&result, "inner", 15.0f);
    cone->SetParameter(&result, "outer", 35.0f);
    lamp->SetParameter(&result, "focus", cone);

    // Lights shine along -z; this one turns -z to -y.
    Matrix44f place;
    place(1, 1) = 0.0f, place(1, 2) = 1.0f, place(2, 1) = -1.0f, place(2, 2) = 0.0f;
    place(0, 3) = -1.0f, place(1, 3) = 3.0f;
    IShader* const standing = lights->CreateShader("LightInstanceStandardArray", &result);
    standing->SetParameter(&result, "light", lamp);
    standing->SetParameter(&result, "transform", place);

    IShader* const all = lights->CreateShader("LightManagerArray", &result);
    all->GetParameter("lights")->SetLength(1);
    all->SetParameter(&result, "lights", standing, 0);
    paths->SetParameter(&result, "lighting", all); // a PathTracer, the integrator of all materials
    EXPECT_TRUE(result.IsEmpty()) << result.GetLast();
}

class LightsDocument : public LightLibrary {};

TEST_F(LightsDocument, ItsLamp_ShinesInItsCone) {
    IShader* const paths = Make("PathTracer");
    ConnectLamp(manager, console.Get(), paths);
    IShader* lighting = nullptr;
    ASSERT_TRUE(paths->GetParameter("lighting")->Get(lighting));
    // Below the lamp, beside of that, and out of its cone.
    std::vector<Spot> spots;
    for (const float x : {-1.0f, -2.3f, -3.5f}) {
        spots.push_back({ToMeter({x, 0.0f, -0.1f}), {0.0f, 1.0f, 0.0f}});
    }
    const std::vector<Pixel> pixels = MeasureIrradiance(lighting, spots, 1);
    const auto expect = [](double x) {
        const double square = x * x + 9.0 + 0.01;
        const double cosine = 3.0 / std::sqrt(square);
        const double inner = std::cos(15.0 * std::numbers::pi / 180.0);
        const double outer = std::cos(35.0 * std::numbers::pi / 180.0);
        const double part = std::clamp((cosine - outer) / (inner - outer), 0.0, 1.0);
        return 60.0 / square * cosine * part * part;
    };
    EXPECT_NEAR(pixels[0][0], expect(0.0), 1e-3);
    EXPECT_NEAR(pixels[1][0], expect(1.3), 1e-3);
    EXPECT_GT(pixels[1][0], 0.1f);
    EXPECT_EQ(pixels[2][0], 0.0f);
    Effects::DestroyMgrLightShaders();
}

TEST(LightsPage, ShowsTheLampThatIsTested) {
    const auto read = [](const std::string& file) {
        std::ifstream stream(SourceFolder() + "/" + file);
        return std::string(std::istreambuf_iterator<char>(stream), {});
    };
    const std::string page = read("docs/lights.md");
    const std::size_t begin = page.find("```cpp\n") + 7;
    std::istringstream block(page.substr(begin, page.find("```", begin) - begin));
    std::string code;
    for (std::string line; std::getline(block, line);) {
        code += (line.empty() ? "" : "    ") + line + "\n";
    }
    EXPECT_NE(read("tests/shaders/LightShadersTest.cpp").find(code), std::string::npos);
}

/// Lights as clients make them, by the light manager.
class LightShaders : public LightLibrary {
protected:
    LightShaders() : lights(Effects::CreateMgrLightShaders()) {
        EXPECT_TRUE(lights->Init(&manager, console.Get())) << console.GetAll();
    }
    ~LightShaders() override { Effects::DestroyMgrLightShaders(); }

    IShader* MakeLight(const std::string& className) {
        Result result;
        IShader* const shader = lights->CreateShader(className, &result);
        EXPECT_NE(shader, nullptr) << className << console.GetAll();
        return shader;
    }

    /// A light that stands somewhere, with the decay of the real world.
    IShader* MakeStanding(IShader* light, const Vector3f& position) {
        Connect(light, "decay", MakeLight("LightDecayInvSquareArray"));
        IShader* const instance = MakeLight("LightInstanceStandardArray");
        Connect(instance, "light", light);
        Set(instance, "transform", Moved(MakeTransform({1, 0, 0}, {0, 1, 0}, {0, 0, 1}, position)));
        return instance;
    }

    IShader* MakeReceiver(const std::vector<IShader*>& instances) {
        IShader* const receiver = MakeLight("LightManagerArray");
        SetCells(receiver, "lights", instances);
        return receiver;
    }

    static Vector3f Gray(float value) { return {value, value, value}; }

    float MeasureRed(IShader* receiver) {
        return MeasureIrradiance(receiver, {{{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}}, 64)[0][0];
    }

    IMgrLightShaders* lights;
};

TEST_F(LightShaders, EveryKindOfLight_CanBeMade) {
    for (const DeclaredClass& declared : GetDeclaredClasses("shaders/lights")) {
        IShader* const shader = MakeLight(declared.name);
        ASSERT_NE(shader, nullptr) << declared.name;
        EXPECT_EQ(shader->GetClassName(), declared.name);
        EXPECT_EQ(shader->GetInterfaceName(), declared.interface);
        EXPECT_EQ(shader->GetParameter("shadowRef"), nullptr) << declared.name;
    }
    EXPECT_EQ(console.GetAll().find("No NULL shader"), std::string::npos);
}

TEST_F(LightShaders, LightsOfOneKind_ShareAShader_AndShineApart) {
    IShader* const first = MakeLight("LightPointArray");
    IShader* const second = MakeLight("LightPointArray");
    Set(first, "intensity", Gray(3.0f));
    Set(second, "intensity", Gray(8.0f));
    IShader* const receiver = MakeReceiver(
        {MakeStanding(first, {0.0f, 0.0f, 1.0f}), MakeStanding(second, {0.0f, 0.0f, 2.0f})});
    EXPECT_NEAR(MeasureRed(receiver), 3.0f / 1.0f + 8.0f / 4.0f, 1e-4f);
    Set(second, "intensity", Gray(4.0f));
    EXPECT_NEAR(MeasureRed(receiver), 3.0f / 1.0f + 4.0f / 4.0f, 1e-4f);
}

TEST_F(LightShaders, LightsOfManyKinds_ShineTogether) {
    std::vector<IShader*> instances;
    float sum = 0.0f;
    for (int i = 0; i < 12; ++i) {
        const bool isPanel = i % 3 == 1;
        IShader* const light = MakeLight(isPanel      ? "LightPlanarAreaFacingArray"
                                         : i % 3 == 2 ? "LightSphereAreaImportanceArray"
                                                      : "LightPointArray");
        const float height = 10.0f + static_cast<float>(i);
        const float power = 1.0f + static_cast<float>(i);
        // Far away all are points of the same intensity.
        if (isPanel) {
            Set(light, "size", Vector2f(0.1f, 0.1f));
            Set(light, "radiance", Gray(100.0f * power));
        } else if (i % 3 == 2) {
            Set(light, "radius", 0.1f);
            Set(light, "radiance", Gray(31.830989f * power));
            Connect(light, "emission", MakeLight("EmissionSurfaceDiffuseArray"));
        } else {
            Set(light, "intensity", Gray(power));
            Connect(light, "shadow", MakeLight("ShadowSharpArray"));
        }
        instances.push_back(MakeStanding(light, {0.0f, 0.0f, height}));
        sum += power / (height * height);
    }
    IShader* const receiver = MakeReceiver(instances);
    Set(receiver, "samples", 20);
    EXPECT_NEAR(MeasureRed(receiver), sum, 0.01f * sum);
}

TEST_F(LightShaders, ImagesAndFocuses_ConnectAsPlainShadersDo) {
    IShader* const light = MakeLight("LightPointArray");
    IShader* const cone = MakeLight("LightFocusConeArray");
    IShader* const map = MakeLight("ProjectorMapConeArray");
    Connect(light, "focus", cone);
    Connect(light, "projector", map);
    IShader* const receiver = MakeReceiver({MakeStanding(light, {0.0f, 0.0f, 1.0f})});
    // A slide without an image is black.
    EXPECT_EQ(MeasureRed(receiver), 0.0f);
    Connect(map, "texture", MakeTexture(1, 1, {0.5f}, KL_NEAREST).shader);
    EXPECT_NEAR(MeasureRed(receiver), 0.5f, 1e-4f);
    Connect(light, "projector", nullptr);
    EXPECT_NEAR(MeasureRed(receiver), 1.0f, 1e-4f);
}

TEST_F(LightShaders, ALightThatIsDestroyed_IsDark_AndTheOthersMoveUp) {
    IShader* const first = MakeLight("LightPointArray");
    IShader* const second = MakeLight("LightPointArray");
    Set(second, "intensity", Gray(8.0f));
    IShader* const firstStanding = MakeStanding(first, {0.0f, 0.0f, 1.0f});
    IShader* const secondStanding = MakeStanding(second, {0.0f, 0.0f, 2.0f});
    IShader* const receiver = MakeReceiver({firstStanding, secondStanding});
    EXPECT_NEAR(MeasureRed(receiver), 3.0f, 1e-4f);

    EXPECT_TRUE(lights->DestroyShader(firstStanding));
    EXPECT_NEAR(MeasureRed(receiver), 2.0f, 1e-4f);

    EXPECT_TRUE(lights->DestroyShader(first));
    EXPECT_TRUE(lights->Update(false));
    // Their cells have changed: what they are connected to is told again.
    Connect(secondStanding, "light", nullptr);
    Connect(secondStanding, "light", second);
    SetCells(receiver, "lights", {secondStanding});
    EXPECT_NEAR(MeasureRed(receiver), 2.0f, 1e-4f);
}

TEST_F(LightShaders, ALightThatIsAdded_ShinesWithoutACompile) {
    const auto add = [&](float height) {
        return MakeStanding(MakeLight("LightPointArray"), {0.0f, 0.0f, height});
    };
    std::vector<IShader*> instances = {add(1.0f), add(2.0f)};
    IShader* const receiver = MakeReceiver(instances);
    IShader* const material = Make("Material");
    IShader* const integrator = Make("DirectLight");
    Connect(integrator, "lighting", receiver);
    Connect(material, "integrator", integrator);
    Effects::IEffect* const effect = manager.CreateEffectSurface();
    ASSERT_TRUE(effect->SetRoot(material));
    ASSERT_TRUE(Compiles(effect));

    instances.push_back(add(4.0f));
    SetCells(receiver, "lights", instances);
    EXPECT_TRUE(effect->IsCompiled());
    EXPECT_NEAR(MeasureRed(receiver), 1.0f + 0.25f + 0.0625f, 1e-4f);
}

} // namespace
} // namespace Tolen::Tests

#include "shaders/ShaderLibrary.h"

#include "scene/ImportanceTable.h"

#include "TolenEffects/IParameter.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <limits>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

// Red is the light from all sides by the environment's own samples, green the same by even ones as
// far as the environment would choose them, blue the integral of the density.
const char* const kLight = R"(
class Light
{
    input IEnvironment environment = Darkness();

    void Shade()
    {
        vec3 way = vec3(0.0);
        float density = 0.0;
        vec3 radiance = environment.Sample(random2(), way, density);
        float own = density > 0.0 ? radiance.x / density : 0.0;
        // What Density and Radiance say of a direction has to be what Sample said of it.
        float apart = abs(environment.Density(way) - density) / max(density, 1e-6) +
                      abs(environment.Radiance(way).x - radiance.x) / max(radiance.x, 1e-6);
        vec3 any = sampleCone(vec3(0.0, 1.0, 0.0), 3.14159265, random2());
        float there = environment.Density(any);
        float even = 12.5663706 * (there > 0.0 ? environment.Radiance(any).x : 0.0);
        accumulate(0, vec4(own, even, 12.5663706 * there, density > 0.0 ? apart : 0.0));
    }
})";

class Environments : public ShaderLibrary {
protected:
    Environments() { Load("light", kLight); }

    Pixel MeasureLight(IShader* environment) {
        IShader* const light = Make("Light");
        Connect(light, "environment", environment);
        return MeasureMean(light, 32, 32, 256);
    }

    KLtexture MakeTexture(const Scene::Image& image, int filter) {
        IKLTexImage2D* const texture = context->CreateTexImage2D();
        EXPECT_TRUE(texture->Init(image.width, image.height, IKLTexImage2D::kFormat_RGBA32F,
                                  KL_REPEAT, filter, filter, image.rgba.data(), false));
        return texture->GetTexture();
    }

    /// A dim gradient with a lamp of a few texels.
    static Scene::Image MakeHall() {
        Scene::Image image{64, 32, {}};
        for (int y = 0; y < image.height; ++y) {
            for (int x = 0; x < image.width; ++x) {
                const bool isLamp = x >= 40 && x < 44 && y >= 20 && y < 23;
                const float value = isLamp ? 60.0f : 0.02f * static_cast<float>(y);
                image.rgba.insert(image.rgba.end(), {value, value, value, 1.0f});
            }
        }
        return image;
    }
};

TEST_F(Environments, OwnSamplesAndEvenOnes_GiveTheSameLight) {
    IShader* const sky = Make("GradientSky");
    Set(sky, "sunLight", Vector3f(3.0f, 3.0f, 3.0f));
    Set(sky, "sunAngle", 12.0f);

    IShader* const studio = Make("Studio");
    const Vector3f directions[] = {{1.0f, 1.0f, 0.0f}, {0.7f, 1.0f, 0.2f}};
    const Vector3f radiances[] = {{5.0f, 5.0f, 5.0f}, {2.0f, 2.0f, 2.0f}};
    const float angles[] = {25.0f, 15.0f};
    for (const char* input : {"directions", "radiances", "angles"}) {
        ASSERT_TRUE(studio->GetParameter(input)->SetLength(2));
    }
    ASSERT_TRUE(studio->SetParameter(nullptr, "directions", directions, 2));
    ASSERT_TRUE(studio->SetParameter(nullptr, "radiances", radiances, 2));
    ASSERT_TRUE(studio->SetParameter(nullptr, "angles", angles, 2));

    for (IShader* const environment : {sky, studio}) {
        const Pixel light = MeasureLight(environment);
        EXPECT_NEAR(light[0], light[1], 0.02f * light[1]);
        EXPECT_NEAR(light[2], 1.0f, 0.02f);
        EXPECT_NEAR(light[3], 0.0f, 0.001f);
    }
}

TEST_F(Environments, AnImage_IsSampledWithoutBias_WithATableAndWithout) {
    const Scene::Image hall = MakeHall();
    IShader* const plain = Make("LatLongEnvironment");
    Set(plain, "image", MakeTexture(hall, KL_LINEAR));
    const Pixel even = MeasureLight(plain);
    EXPECT_NEAR(even[0], even[1], 0.03f * even[1]);
    EXPECT_NEAR(even[2], 1.0f, 1e-4f);

    IShader* const tabled = Make("LatLongEnvironment");
    Set(tabled, "image", MakeTexture(hall, KL_LINEAR));
    Set(tabled, "importance", MakeTexture(Scene::MakeImportanceTable(hall), KL_NEAREST));
    Set(tabled, "rotation", 30.0f);
    const Pixel light = MeasureLight(tabled);
    EXPECT_NEAR(light[0], even[1], 0.02f * even[1]);
    EXPECT_NEAR(light[2], 1.0f, 0.03f);
    EXPECT_LT(light[3], 0.01f);
}

TEST_F(Environments, ATable_TakesTheNoiseOutOfLamps) {
    const Scene::Image hall = MakeHall();
    IShader* const environment = Make("LatLongEnvironment");
    Set(environment, "image", MakeTexture(hall, KL_LINEAR));
    IShader* const light = Make("Light");
    Connect(light, "environment", environment);
    const auto spread = [&] {
        double sum = 0.0;
        double squares = 0.0;
        const std::vector<Pixel> pixels = Measure(light, 32, 32, 16);
        for (const Pixel& pixel : pixels) {
            sum += static_cast<double>(pixel[0]);
            squares += static_cast<double>(pixel[0]) * static_cast<double>(pixel[0]);
        }
        const auto count = static_cast<double>(pixels.size());
        return squares / count - sum / count * (sum / count);
    };
    const double before = spread();
    Set(environment, "importance", MakeTexture(Scene::MakeImportanceTable(hall), KL_NEAREST));
    EXPECT_LT(spread(), 0.05 * before);
}

TEST_F(Environments, WithoutLampsAndSun_NothingIsLookedFor) {
    for (const char* name : {"Darkness", "ConstantEnvironment", "GradientSky"}) {
        const Pixel light = MeasureLight(Make(name));
        EXPECT_EQ(light[0], 0.0f) << name;
        EXPECT_EQ(light[2], 0.0f) << name;
    }
}

TEST(ImportanceTable, EveryCell_IsChosenAsOftenAsItSays) {
    Scene::Image image{7, 5, {}};
    for (int i = 0; i < 35; ++i) {
        const float value = static_cast<float>(i * i % 11);
        image.rgba.insert(image.rgba.end(), {value, 0.0f, value, 1.0f});
    }
    const Scene::Image table = Scene::MakeImportanceTable(image);
    const auto count = static_cast<std::size_t>(table.width * table.height);
    std::vector<double> chosen(count, 0.0);
    for (std::size_t cell = 0; cell < count; ++cell) {
        const float* const entry = &table.rgba[cell * 4];
        ASSERT_GE(entry[0], 0.0f);
        ASSERT_LE(entry[0], 1.0f);
        const auto other = static_cast<std::size_t>(entry[1]);
        ASSERT_LT(other, count);
        chosen[cell] += static_cast<double>(entry[0]);
        chosen[other] += 1.0 - static_cast<double>(entry[0]);
        EXPECT_EQ(entry[3], table.rgba[other * 4 + 2]);
    }
    double sum = 0.0;
    for (std::size_t cell = 0; cell < count; ++cell) {
        EXPECT_NEAR(chosen[cell], static_cast<double>(table.rgba[cell * 4 + 2]), 1e-5);
        EXPECT_GT(chosen[cell], 0.0);
        sum += chosen[cell];
    }
    EXPECT_NEAR(sum, static_cast<double>(count), 1e-4);
}

TEST(ImportanceTable, ImagesWithoutLight_AndWithoutNumbers_AreSpreadEvenly) {
    const float kNan = std::numeric_limits<float>::quiet_NaN();
    const float kInfinity = std::numeric_limits<float>::infinity();
    for (const float value : {0.0f, -3.0f, kNan, kInfinity}) {
        Scene::Image image{1, 1, {value, value, value, 1.0f}};
        const Scene::Image table = Scene::MakeImportanceTable(image);
        ASSERT_EQ(table.width, 2);
        ASSERT_EQ(table.height, 1);
        EXPECT_FLOAT_EQ(table.rgba[2], 1.0f);
        EXPECT_FLOAT_EQ(table.rgba[6], 1.0f);
    }
}

} // namespace
} // namespace Tolen::Tests

#include "shaders/ShaderLibrary.h"

#include "TolenEffects/IParameter.h"

#include <functional>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

// Each column is a direction to the viewer. Red is the albedo by the BSDF's own samples, green the
// same by directions that are spread evenly over the sphere, blue the integral of the density.
const char* const kFurnace = R"(
class Furnace
{
    input IBsdf bsdf = BlackBsdf();
    input bool isFront = true;

    void Shade()
    {
        float z = (floor(kl_PixelCoord.x) + 0.5) / kl_Resolution.x;
        vec3 toEye = vec3(sqrt(1.0 - z * z), 0.0, z);
        bsdf.Prepare(vec3(0.0), toEye, isFront);
        vec3 toLight = vec3(0.0);
        float density = 0.0;
        vec3 weight = bsdf.Sample(toEye, vec3(random(), random2()), toLight, density);
        // A grid of its own for each column, as random directions would miss narrow peaks.
        float count = kl_Resolution.y * float(kl_SampleCount);
        int index = int(kl_PixelCoord.y) * kl_SampleCount + kl_SampleIndex;
        vec2 place = vec2((float(index) + 0.5) / count, fract(float(index) * 0.61803399));
        vec3 any = sampleCone(vec3(0.0, 0.0, 1.0), 3.14159265, place.yx);
        float sphere = 12.5663706;
        accumulate(0, vec3(weight.x, sphere * bsdf.Evaluate(toEye, any).x,
                           sphere * bsdf.Density(toEye, any)));
    }
})";

// Red is how far a BSDF is from its own with both directions exchanged, green what it is.
const char* const kExchange = R"(
class Exchange
{
    input IBsdf bsdf = BlackBsdf();

    void Shade()
    {
        vec3 a = sampleHemisphere(vec3(0.0, 0.0, 1.0), random2());
        vec3 b = sampleHemisphere(vec3(0.0, 0.0, 1.0), random2());
        if (min(a.z, b.z) > 0.02)
        {
            bsdf.Prepare(vec3(0.0), a, true);
            float there = bsdf.Evaluate(a, b).x / b.z;
            bsdf.Prepare(vec3(0.0), b, true);
            float back = bsdf.Evaluate(b, a).x / a.z;
            accumulate(0, vec3(abs(there - back), there, 0.0));
        }
    }
})";

enum Sum { kSum_One, kSum_Below };

class Bsdfs : public ShaderLibrary {
protected:
    struct Case {
        const char* name;
        Sum sum; ///< of light that comes back from a white one
        std::function<IShader*(Bsdfs&)> make;
    };

    Bsdfs() {
        Load("furnace", kFurnace);
        Load("exchange", kExchange);
    }

    IShader* MakeWhite(const std::string& className, const std::string& color,
                       float roughness = -1.0f) {
        IShader* const bsdf = Make(className);
        Connect(bsdf, color, Make("ColorWhite"));
        if (roughness >= 0.0f) {
            ConnectScalar(bsdf, "roughness", roughness);
        }
        return bsdf;
    }

    IShader* MakePrincipled(float roughness, const char* input = nullptr, float value = 1.0f) {
        IShader* const bsdf = MakeWhite("PrincipledMaterial", "baseColor", roughness);
        if (input != nullptr) {
            ConnectScalar(bsdf, input, value);
        }
        return bsdf;
    }

    static const std::vector<Case>& GetCases() {
        static const std::vector<Case> cases = {
            {"diffuse", kSum_One, [](Bsdfs& t) { return t.MakeWhite("DiffuseBsdf", "color"); }},
            {"translucent", kSum_One,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.Make("TranslucentBsdf");
                 t.ConnectColor(bsdf, "reflectance", Vector3f(0.3f, 0.3f, 0.3f));
                 t.ConnectColor(bsdf, "transmittance", Vector3f(0.7f, 0.7f, 0.7f));
                 return bsdf;
             }},
            {"metal 0.4", kSum_One,
             [](Bsdfs& t) { return t.MakeWhite("ConductorBsdf", "color", 0.4f); }},
            {"metal 0.7", kSum_One,
             [](Bsdfs& t) { return t.MakeWhite("ConductorBsdf", "color", 0.7f); }},
            {"metal 1", kSum_One,
             [](Bsdfs& t) { return t.MakeWhite("ConductorBsdf", "color", 1.0f); }},
            {"glass 0.4", kSum_Below,
             [](Bsdfs& t) { return t.MakeWhite("DielectricBsdf", "color", 0.4f); }},
            {"glass 0.8", kSum_Below,
             [](Bsdfs& t) { return t.MakeWhite("DielectricBsdf", "color", 0.8f); }},
            {"sheen", kSum_Below, [](Bsdfs& t) { return t.MakeWhite("SheenBsdf", "color", 0.4f); }},
            {"sheen on paint", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.MakeWhite("SheenBsdf", "color", 0.6f);
                 t.Connect(bsdf, "base", t.MakeWhite("DiffuseBsdf", "color"));
                 return bsdf;
             }},
            {"coat", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.Make("CoatBsdf");
                 t.Connect(bsdf, "base", t.MakeWhite("DiffuseBsdf", "color"));
                 t.ConnectScalar(bsdf, "roughness", 0.5f);
                 return bsdf;
             }},
            {"layers", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.Make("LayeredBsdf");
                 t.SetCells(bsdf, "layers",
                            {t.MakeWhite("SheenBsdf", "color", 0.7f),
                             t.MakeWhite("ConductorBsdf", "color", 0.5f),
                             t.MakeWhite("DiffuseBsdf", "color")});
                 return bsdf;
             }},
            {"mixed", kSum_One,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.Make("MixedBsdf");
                 t.SetCells(bsdf, "bsdfs",
                            {t.MakeWhite("ConductorBsdf", "color", 0.5f),
                             t.MakeWhite("DiffuseBsdf", "color")});
                 EXPECT_TRUE(bsdf->GetParameter("weights")->SetLength(2));
                 const float weights[] = {1.0f, 3.0f};
                 EXPECT_TRUE(bsdf->SetParameter(nullptr, "weights", weights, 2));
                 return bsdf;
             }},
            {"principled paint", kSum_One, [](Bsdfs& t) { return t.MakePrincipled(0.5f); }},
            {"principled rough paint", kSum_One, [](Bsdfs& t) { return t.MakePrincipled(1.0f); }},
            {"principled metal", kSum_One,
             [](Bsdfs& t) { return t.MakePrincipled(0.6f, "metallic"); }},
            {"principled half metal", kSum_One,
             [](Bsdfs& t) { return t.MakePrincipled(0.6f, "metallic", 0.5f); }},
            {"principled glass", kSum_Below,
             [](Bsdfs& t) { return t.MakePrincipled(0.5f, "transmission"); }},
            {"principled film", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.MakePrincipled(0.5f, "transmission", 0.8f);
                 t.Set(bsdf, "thinWalled", true);
                 return bsdf;
             }},
            {"principled coat", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.MakePrincipled(0.7f, "clearcoat");
                 t.ConnectScalar(bsdf, "clearcoatRoughness", 0.4f);
                 return bsdf;
             }},
            {"principled sheen", kSum_Below,
             [](Bsdfs& t) {
                 IShader* const bsdf = t.MakePrincipled(0.7f);
                 t.Connect(bsdf, "sheenColor", t.Make("ColorWhite"));
                 return bsdf;
             }},
        };
        return cases;
    }

    /// Means over rows, one for each column.
    std::vector<Pixel> MeasureColumns(IShader* root, int width) {
        constexpr int kRows = 16;
        const std::vector<Pixel> pixels = Measure(root, width, kRows, 512);
        std::vector<Pixel> columns(static_cast<std::size_t>(width), Pixel{});
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            for (std::size_t c = 0; c < 3; ++c) {
                columns[i % static_cast<std::size_t>(width)][c] += pixels[i][c] / kRows;
            }
        }
        return columns;
    }
};

constexpr int kColumns = 8;

TEST_F(Bsdfs, AWhiteOne_SendsNoMoreLightThanItGets_AndAllOfItIfItKeepsNone) {
    for (const Case& one : GetCases()) {
        IShader* const furnace = Make("Furnace");
        Connect(furnace, "bsdf", one.make(*this));
        const std::vector<Pixel> columns = MeasureColumns(furnace, kColumns);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            // The albedos that they are built on are fitted to within 0.015.
            EXPECT_LT(columns[i][0], 1.02f) << one.name << ", column " << i;
            EXPECT_GT(columns[i][0], one.sum == kSum_One ? 0.98f : 0.01f)
                << one.name << ", column " << i;
        }
    }
}

TEST_F(Bsdfs, OwnSamplesAndEvenOnes_GiveTheSameAlbedo) {
    for (const Case& one : GetCases()) {
        IShader* const furnace = Make("Furnace");
        Connect(furnace, "bsdf", one.make(*this));
        const std::vector<Pixel> columns = MeasureColumns(furnace, kColumns);
        for (std::size_t i = 0; i < columns.size(); ++i) {
            EXPECT_NEAR(columns[i][0], columns[i][1], 0.03f) << one.name << ", column " << i;
            // Directions that leave on the wrong side are chosen in vain.
            EXPECT_LT(columns[i][2], 1.03f) << one.name << ", column " << i;
            EXPECT_GT(columns[i][2], 0.5f) << one.name << ", column " << i;
        }
    }
}

TEST_F(Bsdfs, ASolidOfGlass_IsTheSameFromTheInside) {
    for (const float roughness : {0.4f, 0.7f}) {
        IShader* const furnace = Make("Furnace");
        Connect(furnace, "bsdf", MakeWhite("DielectricBsdf", "color", roughness));
        Set(furnace, "isFront", false);
        for (const Pixel& column : MeasureColumns(furnace, kColumns)) {
            EXPECT_LT(column[0], 1.01f);
            EXPECT_NEAR(column[0], column[1], 0.03f);
        }
    }
}

TEST_F(Bsdfs, APolishedOne_LosesNothing) {
    for (const char* name : {"ConductorBsdf", "DielectricBsdf"}) {
        IShader* const furnace = Make("Furnace");
        Connect(furnace, "bsdf", MakeWhite(name, "color", 0.0f));
        for (const Pixel& column : MeasureColumns(furnace, kColumns)) {
            EXPECT_NEAR(column[0], 1.0f, 0.01f) << name;
        }
    }
}

TEST_F(Bsdfs, ExchangingTheDirections_ChangesNothing) {
    for (const Case& one : GetCases()) {
        IShader* const exchange = Make("Exchange");
        Connect(exchange, "bsdf", one.make(*this));
        const Pixel mean = MeasureMean(exchange, 16, 16, 4);
        EXPECT_LE(mean[0], 1e-3f * mean[1]) << one.name;
        EXPECT_GT(mean[1], 0.0f) << one.name;
    }
}

} // namespace
} // namespace Tolen::Tests

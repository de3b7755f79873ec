#include "shaders/LightLibrary.h"

#include "scene/IesImage.h"

#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

constexpr double kPi = std::numbers::pi;

double ToRadians(double degrees) {
    return degrees * kPi / 180.0;
}

/// 1 inside of a beam, 0 from its edge on.
double FadeOut(double place, double softness) {
    if (softness == 0.0) {
        return place < 1.0 ? 1.0 : 0.0;
    }
    const double t = std::clamp((place - 1.0 + softness) / softness, 0.0, 1.0);
    return 1.0 - t * t * (3.0 - 2.0 * t);
}

/// What a part makes of a point of light in the origin that shines with 1 everywhere.
class LightParts : public LightLibrary {
protected:
    using Formula = std::function<double(double x, double y, double z)>;

    LightParts() : point(Add("LightPointArray")) {}

    /// Compares at places all around.
    void ExpectFactor(const char* input, const Cell& part, const Formula& formula,
                      double tolerance = 1e-3) {
        const Cell instance = Place(point, {{input, part}});
        std::vector<Spot> spots;
        for (int i = 0; i < 500; ++i) {
            // Spread as the digits of i in three bases.
            const auto digits = [i](int base) {
                double sum = 0.0;
                double weight = 1.0;
                for (int rest = i + 1; rest > 0; rest /= base) {
                    weight /= base;
                    sum += weight * (rest % base);
                }
                return sum;
            };
            const double x = 5.0 * digits(2) - 2.5;
            const double y = 5.0 * digits(3) - 2.5;
            const double z = 5.0 * digits(5) - 3.7;
            const double length = std::sqrt(x * x + y * y + z * z);
            spots.push_back({{static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)},
                             {static_cast<float>(-x / length), static_cast<float>(-y / length),
                              static_cast<float>(-z / length)}});
        }
        const std::vector<Pixel> pixels = MeasureIrradiance(MakeLighting({instance}), spots, 1);
        int bright = 0;
        int wrong = 0;
        for (std::size_t i = 0; i < spots.size(); ++i) {
            const double expected = formula(static_cast<double>(spots[i].point.x),
                                            static_cast<double>(spots[i].point.y),
                                            static_cast<double>(spots[i].point.z));
            bright += expected > 0.0;
            const double apart = std::abs(static_cast<double>(pixels[i][0]) - expected);
            wrong += apart > tolerance * std::max(1.0, expected);
        }
        EXPECT_GT(bright, 10);
        // Edges may be met by a spot, which rounding then puts on either side.
        EXPECT_LE(wrong, 1);
    }

    Cell point;
};

TEST_F(LightParts, WithoutParts_APointShinesAlikeEverywhere) {
    for (const char* const part : {"LightFocusNullArray", "LightDecayNullArray",
                                   "EmissionNullArray", "ProjectorMapNullArray"}) {
        const std::string name = part;
        const char* const input = name.starts_with("LightF")   ? "focus"
                                  : name.starts_with("LightD") ? "decay"
                                  : name.starts_with("E")      ? "emission"
                                                               : "projector";
        ExpectFactor(input, Add(part), [](double, double, double) { return 1.0; });
    }
}

TEST_F(LightParts, AFocusOnACone_FallsOffBetweenItsAngles) {
    const Cell cone = Add("LightFocusConeArray");
    SetCell(cone, "inner", 25.0f);
    SetCell(cone, "outer", 60.0f);
    ExpectFactor("focus", cone, [](double x, double y, double z) {
        const double cosine = -z / std::sqrt(x * x + y * y + z * z);
        const double inner = std::cos(ToRadians(25.0));
        const double outer = std::cos(ToRadians(60.0));
        const double part = std::clamp((cosine - outer) / (inner - outer), 0.0, 1.0);
        return part * part;
    });
}

TEST_F(LightParts, AFocusOnAPyramid_HasItsAngles) {
    for (const double softness : {0.0, 0.4}) {
        const Cell pyramid = Add("LightFocusPyramidArray");
        SetCell(pyramid, "angles", Vector2f(50.0f, 35.0f));
        SetCell(pyramid, "softness", static_cast<float>(softness));
        ExpectFactor("focus", pyramid, [softness](double x, double y, double z) {
            return z >= 0.0 ? 0.0
                            : FadeOut(std::abs(x / z) / std::tan(ToRadians(50.0)), softness) *
                                  FadeOut(std::abs(y / z) / std::tan(ToRadians(35.0)), softness);
        });
    }
}

TEST_F(LightParts, FocusesOnBeams_KeepTheirWidth) {
    for (const double softness : {0.0, 0.3}) {
        const Cell cylinder = Add("LightFocusCylinderArray");
        SetCell(cylinder, "radius", 1.5f);
        SetCell(cylinder, "softness", static_cast<float>(softness));
        ExpectFactor("focus", cylinder, [softness](double x, double y, double z) {
            return z < 0.0 ? FadeOut(std::hypot(x, y) / 1.5, softness) : 0.0;
        });
        const Cell box = Add("LightFocusBoxArray");
        SetCell(box, "size", Vector2f(3.0f, 2.0f));
        SetCell(box, "softness", static_cast<float>(softness));
        ExpectFactor("focus", box, [softness](double x, double y, double z) {
            return z < 0.0 ? FadeOut(std::abs(x) / 1.5, softness) * FadeOut(std::abs(y), softness)
                           : 0.0;
        });
    }
}

TEST_F(LightParts, FocusesOnAreas_WidenFromThem) {
    for (const double softness : {0.0, 0.5}) {
        const Cell disc = Add("LightFocusDiscAreaArray");
        SetCell(disc, "radius", 0.7f);
        SetCell(disc, "spread", 20.0f);
        SetCell(disc, "softness", static_cast<float>(softness));
        ExpectFactor("focus", disc, [softness](double x, double y, double z) {
            const double width = 0.7 - z * std::tan(ToRadians(20.0));
            return z < 0.0 ? FadeOut(std::hypot(x, y) / width, softness) : 0.0;
        });
        const Cell rect = Add("LightFocusRectAreaArray");
        SetCell(rect, "size", Vector2f(1.0f, 2.0f));
        SetCell(rect, "spread", Vector2f(10.0f, 30.0f));
        SetCell(rect, "softness", static_cast<float>(softness));
        ExpectFactor("focus", rect, [softness](double x, double y, double z) {
            const double width = 0.5 - z * std::tan(ToRadians(10.0));
            const double height = 1.0 - z * std::tan(ToRadians(30.0));
            return z < 0.0 ? FadeOut(std::abs(x) / width, softness) *
                                 FadeOut(std::abs(y) / height, softness)
                           : 0.0;
        });
    }
}

TEST_F(LightParts, Decays_AreThePowersOfTheDistance) {
    const Cell inverse = Add("LightDecayInverseArray");
    SetCell(inverse, "reference", 2.0f);
    ExpectFactor("decay", inverse, [](double x, double y, double z) {
        return 2.0 / std::sqrt(x * x + y * y + z * z);
    });
    const Cell square = Add("LightDecayInvSquareArray");
    SetCell(square, "reference", 3.0f);
    ExpectFactor("decay", square,
                 [](double x, double y, double z) { return 9.0 / (x * x + y * y + z * z); });
}

TEST_F(LightParts, ADecayWithARange_EndsThere) {
    const Cell square = Add("LightDecayInvSquareArray");
    SetCell(square, "range", 2.5f);
    ExpectFactor("decay", square, [](double x, double y, double z) {
        const double length = std::sqrt(x * x + y * y + z * z);
        return std::clamp(1.0 - std::pow(length / 2.5, 4.0), 0.0, 1.0) / (length * length);
    });
}

TEST_F(LightParts, ADoubleDecay_ChangesItsPowerWhereBothMeet) {
    const Cell both = Add("LightDecayDoubleArray");
    SetCell(both, "reference", 2.0f);
    SetCell(both, "inner", 0.5f);
    SetCell(both, "outer", 3.0f);
    ExpectFactor("decay", both, [](double x, double y, double z) {
        const double ratio = 2.0 / std::sqrt(x * x + y * y + z * z);
        return std::pow(ratio, ratio > 1.0 ? 0.5 : 3.0);
    });
}

TEST_F(LightParts, ANearFarDecay_ComesUpAndGoesDown) {
    const Cell ramps = Add("LightDecayNearFarArray");
    SetCell(ramps, "near", Vector2f(0.5f, 1.5f));
    SetCell(ramps, "far", Vector2f(2.0f, 3.5f));
    SetCell(ramps, "power", 1.0f);
    ExpectFactor("decay", ramps, [](double x, double y, double z) {
        const double length = std::sqrt(x * x + y * y + z * z);
        return std::clamp(length - 0.5, 0.0, 1.0) * std::clamp((3.5 - length) / 1.5, 0.0, 1.0) /
               length;
    });
}

TEST_F(LightParts, Emissions_FollowTheirAngles) {
    ExpectFactor("emission", Add("EmissionSurfaceDiffuseArray"), [](double x, double y, double z) {
        return std::max(0.0, -z / std::sqrt(x * x + y * y + z * z));
    });
    const Cell twoSided = Add("EmissionSurfaceDiffuseArray");
    SetCell(twoSided, "isTwoSided", true);
    ExpectFactor("emission", twoSided, [](double x, double y, double z) {
        return std::abs(z) / std::sqrt(x * x + y * y + z * z);
    });
    ExpectFactor("emission", Add("EmissionLinearDiffuseArray"), [](double x, double y, double z) {
        return std::sqrt((y * y + z * z) / (x * x + y * y + z * z));
    });
}

TEST_F(LightParts, AMeasuredEmission_ReadsItsImageByPhiAndTheta) {
    const Cell measured = Add("EmissionGoniophotometricArray");
    // Four quarters around the axis, from +x to +y; three thirds from straight along it to
    // backwards.
    ConnectCell(measured, "texture",
                MakeTexture(4, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, KL_NEAREST));
    SetCell(measured, "scale", Vector3f(0.1f, 0.1f, 0.1f));
    ExpectFactor("emission", measured, [](double x, double y, double z) {
        const double phi = std::fmod(std::atan2(y, x) + 2.0 * kPi, 2.0 * kPi);
        const double theta = std::acos(-z / std::sqrt(x * x + y * y + z * z));
        return 0.1 * (1.0 + std::floor(phi / (0.5 * kPi)) + 4.0 * std::floor(3.0 * theta / kPi));
    });
}

TEST_F(LightParts, ALuminaire_ShinesWithTheCandelasOfItsFile) {
    const std::vector<double> thetas = {0.0, 50.0, 90.0, 180.0};
    const std::vector<double> phis = {0.0, 100.0, 220.0, 360.0};
    const Scene::Photometry lamp(
        Scene::Photometry::kSymmetry_None, thetas, phis,
        {3.0, 5.0, 1.0, 0.5, 3.0, 4.0, 2.0, 0.5, 3.0, 1.0, 6.0, 0.5, 3.0, 5.0, 1.0, 0.5});
    const Cell measured = Add("EmissionGoniophotometricArray");
    ConnectCell(measured, "texture", MakeTexture(Scene::MakeIesImage(lamp), KL_LINEAR));
    ExpectFactor(
        "emission", measured,
        [&lamp](double x, double y, double z) {
            const double theta = std::acos(-z / std::sqrt(x * x + y * y + z * z));
            return lamp.GetCandela(theta * 180.0 / kPi, std::atan2(y, x) * 180.0 / kPi);
        },
        0.02);
}

/// The quarters of an image: 1 and 2 below, 3 and 4 above.
double GetQuarter(double x, double y) {
    return (x < 0.0 ? 1.0 : 2.0) + (y < 0.0 ? 0.0 : 2.0);
}

TEST_F(LightParts, ProjectorMaps_ShowTheirImageInTheirBeam) {
    const Cell image = MakeTexture(2, 2, {1, 2, 3, 4}, KL_NEAREST);
    const Cell cone = Add("ProjectorMapConeArray");
    SetCell(cone, "angle", 50.0f);
    const Cell box = Add("ProjectorMapDirectBoxArray");
    SetCell(box, "size", Vector2f(3.0f, 2.0f));
    const Cell cylinder = Add("ProjectorMapDirectCylinderArray");
    SetCell(cylinder, "radius", 1.5f);
    for (const Cell& map : {cone, box, cylinder}) {
        ConnectCell(map, "texture", image);
        SetCell(map, "scale", Vector3f(0.5f, 0.5f, 0.5f));
    }
    ExpectFactor("projector", cone, [](double x, double y, double z) {
        const bool isInside = z < 0.0 && std::hypot(x, y) < -z * std::tan(ToRadians(50.0));
        return isInside ? 0.5 * GetQuarter(x, y) : 0.0;
    });
    ExpectFactor("projector", box, [](double x, double y, double z) {
        const bool isInside = z < 0.0 && std::abs(x) < 1.5 && std::abs(y) < 1.0;
        return isInside ? 0.5 * GetQuarter(x, y) : 0.0;
    });
    ExpectFactor("projector", cylinder, [](double x, double y, double z) {
        return z < 0.0 && std::hypot(x, y) < 1.5 ? 0.5 * GetQuarter(x, y) : 0.0;
    });
}

TEST_F(LightParts, AnOmniProjectorMap_ShowsItsImageAllAround) {
    const Cell map = Add("ProjectorMapOmniArray");
    ConnectCell(map, "texture", MakeTexture(4, 2, {1, 2, 3, 4, 5, 6, 7, 8}, KL_NEAREST));
    ExpectFactor("projector", map, [](double x, double y, double z) {
        const double column = std::floor(4.0 * (0.5 + std::atan2(x, -z) / (2.0 * kPi)));
        return 1.0 + column + (y < 0.0 ? 0.0 : 4.0);
    });
}

TEST_F(LightParts, ColorsOfImages_ColorTheLight) {
    const Cell map = Add("ProjectorMapOmniArray");
    ConnectCell(map, "texture", MakeTexture(1, 1, {2}, KL_NEAREST));
    SetCell(map, "scale", Vector3f(0.1f, 0.2f, 0.3f));
    const Cell instance = Place(point, {{"projector", map}});
    const Spot spot{{0.0f, 0.0f, -1.0f}, {0.0f, 0.0f, 1.0f}};
    const Pixel pixel = MeasureIrradiance(MakeLighting({instance}), {spot}, 1)[0];
    EXPECT_NEAR(pixel[0], 0.2f, 1e-5f);
    EXPECT_NEAR(pixel[1], 0.4f, 1e-5f);
    EXPECT_NEAR(pixel[2], 0.6f, 1e-5f);
}

TEST_F(LightParts, OfDirectLights_SeeWhereTheLightPasses) {
    const Cell light = Add("LightDirectArray");
    const Cell box = Add("LightFocusBoxArray");
    SetCell(box, "size", Vector2f(2.0f, 1.0f));
    const Cell map = Add("ProjectorMapDirectBoxArray");
    SetCell(map, "size", Vector2f(2.0f, 1.0f));
    ConnectCell(map, "texture", MakeTexture(2, 2, {1, 2, 3, 4}, KL_NEAREST));
    const Cell instance = Place(light, {{"focus", box}, {"projector", map}});
    const std::vector<Spot> spots = {{{0.5f, 0.2f, -3.0f}, {0.0f, 0.0f, 1.0f}},
                                     {{-0.9f, -0.4f, -9.0f}, {0.0f, 0.0f, 1.0f}},
                                     {{1.1f, 0.2f, -3.0f}, {0.0f, 0.0f, 1.0f}},
                                     {{0.5f, 0.2f, 3.0f}, {0.0f, 0.0f, 1.0f}}};
    const std::vector<Pixel> pixels = MeasureIrradiance(MakeLighting({instance}), spots, 1);
    EXPECT_NEAR(pixels[0][0], 4.0f, 1e-5f);
    EXPECT_NEAR(pixels[1][0], 1.0f, 1e-5f);
    EXPECT_EQ(pixels[2][0], 0.0f);
    EXPECT_EQ(pixels[3][0], 0.0f);
}

TEST_F(LightParts, ThatAreNotConnected_ChangeNothing_AndLightsThatAreNot_AreDark) {
    for (const int nothing : {-1, -2}) {
        const Cell light = Add("LightPointArray");
        const Cell instance = Place(light);
        const Spot spot{{0.0f, 0.0f, -1.0f}, {0.0f, 0.0f, 1.0f}};
        for (const char* const input : {"focus", "decay", "emission", "projector", "shadow"}) {
            SetCell(light, std::string(input) + "Ref", Vector2i(nothing, nothing));
        }
        EXPECT_NEAR(MeasureAt(instance, spot, 1), 1.0, 1e-5);
        SetCell(instance, "lightRef", Vector2i(nothing, nothing));
        EXPECT_EQ(MeasureAt(instance, spot, 1), 0.0);
    }
}

} // namespace
} // namespace Tolen::Tests

#include "shaders/LightLibrary.h"

#include "scene/ImportanceTable.h"

#include "TolenEffects/IParameter.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <numbers>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

constexpr double kPi = std::numbers::pi;

/// Doubles, for what lights are compared with.
struct Vector {
    double x = 0.0, y = 0.0, z = 0.0;

    Vector operator+(const Vector& b) const { return {x + b.x, y + b.y, z + b.z}; }
    Vector operator-(const Vector& b) const { return {x - b.x, y - b.y, z - b.z}; }
    Vector operator*(double b) const { return {x * b, y * b, z * b}; }
};

double Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

Vector Unit(const Vector& a) {
    return a * (1.0 / std::sqrt(Dot(a, a)));
}

Vector ToDouble(const Vector3f& a) {
    return {static_cast<double>(a.x), static_cast<double>(a.y), static_cast<double>(a.z)};
}

Vector3f ToFloat(const Vector& a) {
    return {static_cast<float>(a.x), static_cast<float>(a.y), static_cast<float>(a.z)};
}

/// A bit of a matt surface.
struct Patch {
    Vector point;
    Vector normal;
};

/// The irradiance from a surface whose radiance is 1, as the mean over a grid of the unit square.
double Integrate(const Spot& spot, double area,
                 const std::function<Patch(double, double)>& patchAt) {
    constexpr int kSteps = 600;
    const Vector point = ToDouble(spot.point);
    double sum = 0.0;
    for (int i = 0; i < kSteps; ++i) {
        for (int j = 0; j < kSteps; ++j) {
            const Patch patch = patchAt((i + 0.5) / kSteps, (j + 0.5) / kSteps);
            const Vector way = patch.point - point;
            const double square = Dot(way, way);
            const double leaving = std::max(0.0, -Dot(patch.normal, way));
            const double arriving = std::max(0.0, Dot(ToDouble(spot.normal), way));
            sum += leaving * arriving / (square * square);
        }
    }
    return area * sum / (kSteps * kSteps);
}

/// The same for a polygon in front of the spot (Lambert, "Photometria", 1760).
double IntegratePolygon(const Spot& spot, const std::vector<Vector>& corners) {
    double sum = 0.0;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const Vector a = Unit(corners[i] - ToDouble(spot.point));
        const Vector b = Unit(corners[(i + 1) % corners.size()] - ToDouble(spot.point));
        sum += std::acos(Dot(a, b)) * Dot(Unit(Cross(a, b)), ToDouble(spot.normal));
    }
    return 0.5 * std::abs(sum);
}

std::vector<Vector> MakeRectangle(double width, double height) {
    const double x = 0.5 * width;
    const double y = 0.5 * height;
    return {{-x, -y, 0.0}, {x, -y, 0.0}, {x, y, 0.0}, {-x, y, 0.0}};
}

/// Places in front of lights that shine along -z, near and far, straight and oblique.
const Spot kSpots[] = {
    {{0.0f, 0.0f, -2.0f}, {0.0f, 0.0f, 1.0f}},
    {{0.7f, -0.4f, -1.2f}, {0.0f, 0.0f, 1.0f}},
    {{-1.5f, 1.0f, -2.5f}, {0.48f, -0.36f, 0.8f}},
    {{3.0f, 2.0f, -9.0f}, {-0.3f, -0.2f, 0.9327379f}},
};

class Lights : public LightLibrary {
protected:
    /// What makes a light that of a matt surface in the real world.
    Parts MakeMatt() {
        return {{"emission", Add("EmissionSurfaceDiffuseArray")},
                {"decay", Add("LightDecayInvSquareArray")}};
    }

    /// Compares the first channel at all of kSpots.
    void ExpectIrradiance(const Cell& instance, double tolerance,
                          const std::function<double(const Spot&)>& expected, int samples = 256) {
        const std::vector<Spot> spots(std::begin(kSpots), std::end(kSpots));
        const std::vector<Pixel> pixels =
            MeasureIrradiance(MakeLighting({instance}), spots, samples);
        for (std::size_t i = 0; i < spots.size(); ++i) {
            const double value = expected(spots[i]);
            EXPECT_GT(value, 0.0);
            EXPECT_NEAR(static_cast<double>(pixels[i][0]), value, tolerance * value)
                << "spot " << i;
        }
    }
};

TEST_F(Lights, APoint_GivesItsIntensityOverTheSquareOfTheDistance) {
    const Cell light = Add("LightPointArray");
    SetCell(light, "intensity", Vector3f(3.0f, 5.0f, 7.0f));
    const Cell instance = Place(light, {{"decay", Add("LightDecayInvSquareArray")}});
    const Spot spot{{0.0f, 3.0f, -4.0f}, {0.0f, 0.0f, 1.0f}};
    const Pixel pixel = MeasureIrradiance(MakeLighting({instance}), {spot}, 1)[0];
    EXPECT_NEAR(pixel[0], 3.0 / 25.0 * 0.8, 1e-5);
    EXPECT_NEAR(pixel[1], 5.0 / 25.0 * 0.8, 1e-5);
    EXPECT_NEAR(pixel[2], 7.0 / 25.0 * 0.8, 1e-5);
}

TEST_F(Lights, OneThatIsDirect_ComesAlongItsAxis) {
    const Cell light = Add("LightDirectArray");
    SetCell(light, "irradiance", Vector3f(2.0f, 2.0f, 2.0f));
    ExpectIrradiance(
        Place(light), 1e-5,
        [](const Spot& spot) { return 2.0 * static_cast<double>(spot.normal.z); }, 1);
}

TEST_F(Lights, OneThatIsAmbient_GivesAllSurfacesTheSame) {
    const Cell light = Add("LightAmbientArray");
    SetCell(light, "irradiance", Vector3f(0.25f, 0.5f, 1.0f));
    ExpectIrradiance(
        Place(light), 1e-5, [](const Spot&) { return 0.25; }, 1);
}

TEST_F(Lights, ALine_GivesWhatItsPointsGive) {
    const Cell light = Add("LightLinearArray");
    SetCell(light, "intensity", Vector3f(4.0f, 4.0f, 4.0f));
    SetCell(light, "extent", 1.6f);
    const Cell instance = Place(light, {{"emission", Add("EmissionLinearDiffuseArray")},
                                        {"decay", Add("LightDecayInvSquareArray")}});
    ExpectIrradiance(instance, 0.003, [](const Spot& spot) {
        constexpr int kSteps = 10000;
        double sum = 0.0;
        for (int i = 0; i < kSteps; ++i) {
            const Vector from{1.6 * ((i + 0.5) / kSteps - 0.5), 0.0, 0.0};
            const Vector way = from - ToDouble(spot.point);
            const double square = Dot(way, way);
            const double sine = std::sqrt(1.0 - way.x * way.x / square);
            sum += sine * std::max(0.0, Dot(ToDouble(spot.normal), Unit(way))) / square;
        }
        return 4.0 * 1.6 * sum / kSteps;
    });
}

TEST_F(Lights, ARectangle_HasTheFormFactorOfItsShape) {
    const Cell light = Add("LightPlanarAreaArray");
    SetCell(light, "radiance", Vector3f(5.0f, 5.0f, 5.0f));
    SetCell(light, "size", Vector2f(1.5f, 0.8f));
    ExpectIrradiance(Place(light, MakeMatt()), 0.01, [](const Spot& spot) {
        return 5.0 * IntegratePolygon(spot, MakeRectangle(1.5, 0.8));
    });
}

TEST_F(Lights, ARectangle_ShinesToTheFrontAlone_UnlessItIsTwoSided) {
    const Cell light = Add("LightPlanarAreaArray");
    const Parts parts = MakeMatt();
    const Cell instance = Place(light, parts);
    const Spot behind{{0.3f, 0.2f, 1.0f}, {0.0f, 0.0f, -1.0f}};
    const Spot front{{0.3f, 0.2f, -1.0f}, {0.0f, 0.0f, 1.0f}};
    EXPECT_EQ(MeasureAt(instance, behind), 0.0);
    const double there = MeasureAt(instance, front);
    EXPECT_GT(there, 0.0);
    SetCell(parts.at("emission"), "isTwoSided", true);
    EXPECT_NEAR(MeasureAt(instance, behind), there, 0.01 * there);
}

TEST_F(Lights, AFacingRectangle_TurnsToEverySpot) {
    const Cell light = Add("LightPlanarAreaFacingArray");
    SetCell(light, "size", Vector2f(1.2f, 0.5f));
    ExpectIrradiance(Place(light, MakeMatt()), 0.01, [](const Spot& spot) {
        const Vector z = Unit(ToDouble(spot.point));
        const Vector x = Unit(Cross({0.0, 1.0, 0.0}, z));
        const Vector y = Cross(z, x);
        std::vector<Vector> corners = MakeRectangle(1.2, 0.5);
        for (Vector& corner : corners) {
            corner = x * corner.x + y * corner.y;
        }
        return IntegratePolygon(spot, corners);
    });
}

TEST_F(Lights, Spheres_GiveTheSquareOfTheirWidthInTheSky) {
    for (const char* name : {"LightSphereAreaBruteArray", "LightSphereAreaImportanceArray"}) {
        SCOPED_TRACE(name);
        const Cell light = Add(name);
        SetCell(light, "radiance", Vector3f(3.0f, 3.0f, 3.0f));
        SetCell(light, "radius", 0.4f);
        ExpectIrradiance(Place(light, MakeMatt()), 0.01, [](const Spot& spot) {
            const Vector way = ToDouble(spot.point) * -1.0;
            return 3.0 * kPi * 0.16 / Dot(way, way) * Dot(ToDouble(spot.normal), Unit(way));
        });
    }
}

TEST_F(Lights, ASmallSphereFarAway_KeepsItsBrightness) {
    const Cell light = Add("LightSphereAreaImportanceArray");
    SetCell(light, "radius", 0.01f);
    const Spot spot{{0.0f, 0.0f, -20.0f}, {0.0f, 0.0f, 1.0f}};
    const double expected = kPi * 0.0001 / 400.0;
    EXPECT_NEAR(MeasureAt(Place(light, MakeMatt()), spot), expected, 0.01 * expected);
}

TEST_F(Lights, AnImportanceSphere_HasLessNoiseThanABruteOne) {
    const auto spread = [&](const char* name) {
        const Cell light = Add(name);
        IShader* const lighting = MakeLighting({Place(light, MakeMatt())});
        const std::vector<Spot> spots(64, Spot{{1.0f, 0.0f, -0.9f}, {0.0f, 0.0f, 1.0f}});
        double sum = 0.0;
        double squares = 0.0;
        for (const Pixel& pixel : MeasureIrradiance(lighting, spots, 1)) {
            sum += static_cast<double>(pixel[0]);
            squares += static_cast<double>(pixel[0]) * static_cast<double>(pixel[0]);
        }
        return squares / 64.0 - sum / 64.0 * (sum / 64.0);
    };
    EXPECT_LT(spread("LightSphereAreaImportanceArray"), 0.2 * spread("LightSphereAreaBruteArray"));
}

TEST_F(Lights, InsideASphere_ItIsDark) {
    for (const char* name : {"LightSphereAreaBruteArray", "LightSphereAreaImportanceArray"}) {
        const Spot spot{{0.1f, 0.0f, -0.2f}, {0.0f, 0.0f, 1.0f}};
        EXPECT_EQ(MeasureAt(Place(Add(name), MakeMatt()), spot), 0.0) << name;
    }
}

TEST_F(Lights, Cylinders_GiveWhatTheirSurfacesGive) {
    constexpr double kRadius = 0.3;
    constexpr double kExtent = 1.4;
    const auto side = [](double u, double v) {
        const Vector normal{0.0, std::cos(2.0 * kPi * u), std::sin(2.0 * kPi * u)};
        return Patch{Vector{(v - 0.5) * kExtent, 0.0, 0.0} + normal * kRadius, normal};
    };
    const auto end = [](double u, double v) {
        // Both ends, one in each half of u.
        const double x = u < 0.5 ? -1.0 : 1.0;
        const double r = kRadius * std::sqrt(v);
        const double turn = 4.0 * kPi * u;
        return Patch{{0.5 * kExtent * x, r * std::cos(turn), r * std::sin(turn)}, {x, 0.0, 0.0}};
    };
    const double sideArea = 2.0 * kPi * kRadius * kExtent;
    const double endArea = 2.0 * kPi * kRadius * kRadius;

    const Cell open = Add("LightCylindricalArray");
    const Cell capped = Add("LightCylindricalCappedArray");
    for (const Cell& light : {open, capped}) {
        SetCell(light, "radius", static_cast<float>(kRadius));
        SetCell(light, "extent", static_cast<float>(kExtent));
    }
    ExpectIrradiance(Place(open, MakeMatt()), 0.01,
                     [&](const Spot& spot) { return Integrate(spot, sideArea, side); });
    ExpectIrradiance(Place(capped, MakeMatt()), 0.01, [&](const Spot& spot) {
        return Integrate(spot, sideArea, side) + Integrate(spot, endArea, end);
    });

    // Straight in front of an end, where the side can't be seen.
    const Spot ahead{{2.0f, 0.1f, 0.0f}, {-1.0f, 0.0f, 0.0f}};
    EXPECT_EQ(MeasureAt(Place(open, MakeMatt()), ahead), 0.0);
    const double expected = Integrate(ahead, endArea, end);
    EXPECT_NEAR(MeasureAt(Place(capped, MakeMatt()), ahead), expected, 0.01 * expected);
}

TEST_F(Lights, AnEvenDome_GivesPiTimesItsRadiance) {
    const Cell light = Add("LightDome_ConstantArray");
    SetCell(light, "radiance", Vector3f(2.0f, 2.0f, 2.0f));
    ExpectIrradiance(Place(light), 0.01, [](const Spot&) { return 2.0 * kPi; });
}

TEST_F(Lights, Domes_ReachBothSidesOfASurface) {
    IShader* const image = MakeTexture(1, 1, {2.0f}, KL_NEAREST).shader;
    for (const char* name : {"LightDome_ConstantArray", "LightDomeArray"}) {
        const Cell light = Add(name);
        if (light.shader->GetParameter("texture") != nullptr) {
            ConnectCell(light, "texture", {image, 0});
        } else {
            SetCell(light, "radiance", Vector3f(2.0f, 2.0f, 2.0f));
        }
        const Pixel pixel =
            MeasureIrradiance(MakeLighting({Place(light)}), {kSpots[2]}, 256, true)[0];
        EXPECT_NEAR(pixel[0], 4.0 * kPi, 0.01 * 4.0 * kPi) << name;
    }
}

/// A dim gradient with a lamp of a few texels, and what it shows in a direction.
struct Hall {
    static constexpr int kWidth = 32;
    static constexpr int kHeight = 16;

    static float GetTexel(int x, int y) {
        return x >= 18 && x < 21 && y >= 10 && y < 12 ? 40.0f : 0.05f * static_cast<float>(y);
    }
    static double GetRadiance(const Vector& way) {
        const double u = 0.5 + std::atan2(way.x, -way.z) / (2.0 * kPi);
        const double v = 0.5 + std::asin(std::clamp(way.y, -1.0, 1.0)) / kPi;
        return static_cast<double>(GetTexel(std::min(static_cast<int>(u * kWidth), kWidth - 1),
                                            std::min(static_cast<int>(v * kHeight), kHeight - 1)));
    }
    static Scene::Image MakeImage() {
        Scene::Image image{kWidth, kHeight, {}};
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const float gray = GetTexel(x, y);
                image.rgba.insert(image.rgba.end(), {gray, gray, gray, 1.0f});
            }
        }
        return image;
    }
};

class Domes : public Lights {
protected:
    /// The image of the hall, with a table or without.
    Cell MakeHall(bool hasTable) {
        const Scene::Image image = Hall::MakeImage();
        const Cell texture = MakeTexture(image, KL_NEAREST);
        if (hasTable) {
            const Cell table = MakeTexture(Scene::MakeImportanceTable(image), KL_NEAREST);
            KLtexture handle = KLtexture();
            EXPECT_TRUE(table.shader->GetParameter("image")->Get(handle));
            Set(texture.shader, "importance", handle);
        }
        return texture;
    }

    /// The irradiance from all directions for which @p isOpen holds.
    static double Integrate(const Spot& spot, const std::function<bool(const Vector&)>& isOpen,
                            const std::function<double(const Vector&)>& radiance) {
        constexpr int kSteps = 1024;
        double sum = 0.0;
        for (int i = 0; i < kSteps; ++i) {
            for (int j = 0; j < kSteps; ++j) {
                const double z = 1.0 - 2.0 * (i + 0.5) / kSteps;
                const double r = std::sqrt(1.0 - z * z);
                const double turn = 2.0 * kPi * (j + 0.5) / kSteps;
                const Vector way{r * std::cos(turn), z, r * std::sin(turn)};
                const double cosine = Dot(way, ToDouble(spot.normal));
                if (cosine > 0.0 && isOpen(way)) {
                    sum += cosine * radiance(way);
                }
            }
        }
        return 4.0 * kPi * sum / (kSteps * kSteps);
    }
};

TEST_F(Domes, AnImage_GivesItsLight_WithATableAndWithout) {
    for (const bool hasTable : {true, false}) {
        SCOPED_TRACE(hasTable);
        const Cell light = Add("LightDomeArray");
        ConnectCell(light, "texture", MakeHall(hasTable));
        SetCell(light, "scale", Vector3f(2.0f, 2.0f, 2.0f));
        ExpectIrradiance(
            Place(light), hasTable ? 0.02 : 0.04,
            [](const Spot& spot) {
                return Domes::Integrate(
                    spot, [](const Vector&) { return true; },
                    [](const Vector& way) { return 2.0 * Hall::GetRadiance(way); });
            },
            1024);
    }
}

TEST_F(Domes, ATransform_TurnsTheImage) {
    const Cell light = Add("LightDomeArray");
    ConnectCell(light, "texture", MakeHall(true));
    // Its x shows along the world's y, its y along z, its z along x.
    const Matrix44f turn = MakeTransform({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, {});
    ExpectIrradiance(
        Place(light, {}, turn), 0.02,
        [](const Spot& spot) {
            return Domes::Integrate(
                spot, [](const Vector&) { return true; },
                [](const Vector& way) {
                    return Hall::GetRadiance({way.y, way.z, way.x});
                });
        },
        1024);
}

TEST_F(Domes, AnEvenPortal_IsARectangleOfLight) {
    const Cell light = Add("LightPortalRectArray");
    ConnectCell(light, "texture", MakeTexture(1, 1, {3.0f}, KL_NEAREST));
    SetCell(light, "size", Vector2f(1.5f, 0.8f));
    ExpectIrradiance(Place(light), 0.01, [](const Spot& spot) {
        return 3.0 * IntegratePolygon(spot, MakeRectangle(1.5, 0.8));
    });
    const Spot behind{{0.0f, 0.0f, 1.0f}, {0.0f, 0.0f, -1.0f}};
    EXPECT_EQ(MeasureAt(Place(light), behind), 0.0);
}

TEST_F(Domes, APortal_ShowsThePartOfTheImageBehindIt) {
    for (const bool hasTable : {true, false}) {
        SCOPED_TRACE(hasTable);
        const Cell light = Add("LightPortalRectArray");
        ConnectCell(light, "texture", MakeHall(hasTable));
        SetCell(light, "size", Vector2f(2.0f, 2.0f));
        // A window in the wall x = 0 through which light comes along -x, out of the world's +x; its
        // x is the world's -z.
        const Matrix44f wall = MakeTransform({0, 0, -1}, {0, 1, 0}, {1, 0, 0}, {});
        const Spot spot{{-0.8f, -0.6f, 0.3f}, {0.6f, 0.8f, 0.0f}};
        const double expected = Integrate(
            spot,
            [&](const Vector& way) {
                const double t = 0.8 / way.x;
                return way.x > 0.0 && std::abs(-0.6 + t * way.y) < 1.0 &&
                       std::abs(0.3 + t * way.z) < 1.0;
            },
            &Hall::GetRadiance);
        ASSERT_GT(expected, 0.1);
        EXPECT_NEAR(MeasureAt(Place(light, {}, wall), spot, 1024), expected, 0.02 * expected);
    }
}

TEST_F(Lights, ATransform_PutsALightIntoTheWorld_WhateverItsScale) {
    const Cell light = Add("LightPlanarAreaArray");
    const Parts parts = MakeMatt();
    const Spot local{{0.4f, 0.3f, -1.5f}, {0.0f, 0.0f, 1.0f}};
    const double expected = IntegratePolygon(local, MakeRectangle(1.0, 1.0));
    for (const float scale : {1.0f, 3.0f}) {
        const Vector x{0.0, 0.6, 0.8};
        const Vector y{1.0, 0.0, 0.0};
        const Vector z = Cross(x, y);
        const Vector position{3.0, -2.0, 1.0};
        const double s = static_cast<double>(scale);
        const Matrix44f place =
            MakeTransform(ToFloat(x * s), ToFloat(y * s), ToFloat(z * s), ToFloat(position));
        const Spot spot{ToFloat(position + x * 0.4 + y * 0.3 - z * 1.5), ToFloat(z)};
        EXPECT_NEAR(MeasureAt(Place(light, parts, place), spot), expected, 0.01 * expected);
    }
}

TEST_F(Lights, InstancesOfOneLight_AreSetApartFromEachOther) {
    const Cell light = Add("LightDirectArray");
    const Cell first = Place(light);
    const Cell second = Place(light);
    const Cell third = Place(light);
    SetCell(first, "dimmer", Vector3f(0.5f, 0.25f, 0.0f));
    SetCell(third, "isOn", false);
    const Spot spot{{0.0f, 0.0f, 0.0f}, {0.0f, 0.0f, 1.0f}};
    const Pixel sum = MeasureIrradiance(MakeLighting({first, second, third}), {spot}, 1)[0];
    EXPECT_NEAR(sum[0], 1.5f, 1e-5f);
    EXPECT_NEAR(sum[1], 1.25f, 1e-5f);
    EXPECT_NEAR(sum[2], 1.0f, 1e-5f);
}

TEST_F(Lights, TheNullIntegrator_LooksAtTheMiddle) {
    const Cell light = Add("LightPlanarAreaArray");
    Connect(light.shader, "integrator", Make("Integrator2Null"));
    SetCell(light, "size", Vector2f(2.0f, 3.0f));
    const Spot spot{{0.0f, 0.0f, -2.0f}, {0.0f, 0.0f, 1.0f}};
    EXPECT_NEAR(MeasureAt(Place(light, MakeMatt()), spot, 1), 6.0 / 4.0, 1e-5);
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

TEST_F(Lights, OfAllKindsWithAllParts_ShineTogether) {
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
    const Spot spot{{0.3f, 0.2f, -4.0f}, {0.0f, 0.0f, 1.0f}};
    const auto measure = [&](IShader* lighting) {
        Set(lighting, "samples", 1000);
        return MeasureIrradiance(lighting, {spot}, 16)[0][0];
    };
    // Together they give the sum of what each gives alone.
    const float together = measure(MakeLighting(instances));
    float sum = 0.0f;
    for (std::size_t begin = 0; begin < instances.size(); begin += 28) {
        const std::size_t end = std::min(begin + 28, instances.size());
        sum += measure(MakeLighting({instances.begin() + static_cast<std::ptrdiff_t>(begin),
                                     instances.begin() + static_cast<std::ptrdiff_t>(end)}));
    }
    EXPECT_GT(together, 100.0f);
    EXPECT_NEAR(together, sum, 0.02f * sum);
}

} // namespace
} // namespace Tolen::Tests

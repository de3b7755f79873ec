#include "shaders/ShaderLibrary.h"

#include "TolenEffects/IParameter.h"

#include <algorithm>
#include <cmath>

namespace Tolen::Tests {
namespace {

using Effects::IShader;

// Each pixel is a place. Red is what a node answers there, green how much that changes within a
// thousandth of a unit, blue the same across the boundary of the nearest cell.
const char* const kProbe = R"(
class Probe
{
    input IScalar node = ScalarZero();

    void Shade()
    {
        vec3 place = vec3(kl_PixelCoord.x * 0.37, kl_PixelCoord.y * 0.53, 3.7) - 10.0;
        float here = node.Scalar(place);
        float beside = node.Scalar(place + vec3(0.0006, 0.0006, 0.0005));
        vec3 edge = vec3(floor(place.x), place.yz);
        float low = node.Scalar(edge - vec3(0.0005, 0.0, 0.0));
        float high = node.Scalar(edge + vec3(0.0005, 0.0, 0.0));
        accumulate(0, vec3(here, abs(beside - here), abs(high - low)));
    }
}

class ProbeColor
{
    input IColor node = ColorBlack();
    input vec3 place = vec3(0.0);

    void Shade() { accumulate(0, node.Color(place)); }
}

class ProbeMapping
{
    input IMapping node = WorldCoordinates();
    input vec3 place = vec3(0.0);

    void Shade() { accumulate(0, node.Map(place)); }
}

class ProbeBump
{
    input IBump node = FlatBump();
    input vec3 place = vec3(0.0);

    void Shade() { accumulate(0, node.Bend(place, vec3(0.0, 1.0, 0.0))); }
})";

class Nodes : public ShaderLibrary {
protected:
    Nodes() { Load("probe", kProbe); }

    IShader* Scalar(float value) {
        IShader* const shader = Make("ScalarConstant");
        Set(shader, "value", value);
        return shader;
    }
    IShader* Color(float r, float g, float b) {
        IShader* const shader = Make("ColorConstant");
        Set(shader, "value", Vector3f(r, g, b));
        return shader;
    }

    float Ask(IShader* node) {
        IShader* const probe = Make("Probe");
        Connect(probe, "node", node);
        return Measure(probe, 1, 1, 1)[0][0];
    }
    Pixel Ask(const char* probeClass, IShader* node, const Vector3f& place = Vector3f()) {
        IShader* const probe = Make(probeClass);
        Connect(probe, "node", node);
        Set(probe, "place", place);
        return Measure(probe, 1, 1, 1)[0];
    }
    static void Expect(const Pixel& pixel, float r, float g, float b) {
        EXPECT_NEAR(pixel[0], r, 1e-5f);
        EXPECT_NEAR(pixel[1], g, 1e-5f);
        EXPECT_NEAR(pixel[2], b, 1e-5f);
    }
};

TEST_F(Nodes, Noises_StayFrom0To1_AndHaveNoSteps) {
    struct Case {
        const char* name;
        int feature;
        bool isTurbulent;
        float steepest; ///< the most that a thousandth of a unit may change
    };
    for (const Case& one :
         {Case{"GradientNoise", 0, false, 0.004f}, Case{"FractalNoise", 0, false, 0.01f},
          Case{"FractalNoise", 0, true, 0.02f}, Case{"CellNoise", 0, false, 0.002f},
          Case{"CellNoise", 1, false, 0.002f}, Case{"CellNoise", 2, false, 0.004f}}) {
        IShader* const noise = Make(one.name);
        if (one.name == std::string("CellNoise")) {
            Set(noise, "feature", one.feature);
        }
        if (one.isTurbulent) {
            Set(noise, "isTurbulent", true);
        }
        IShader* const probe = Make("Probe");
        Connect(probe, "node", noise);
        float low = 1.0f;
        float high = 0.0f;
        float sum = 0.0f;
        const std::vector<Pixel> pixels = Measure(probe, 64, 64, 1);
        for (const Pixel& pixel : pixels) {
            low = std::min(low, pixel[0]);
            high = std::max(high, pixel[0]);
            sum += pixel[0];
            EXPECT_LE(pixel[1], one.steepest) << one.name;
            EXPECT_LE(pixel[2], one.steepest) << one.name;
        }
        EXPECT_GE(low, 0.0f) << one.name;
        EXPECT_LE(high, 1.0f) << one.name;
        EXPECT_GT(high - low, 0.4f) << one.name;
        if (!one.isTurbulent && one.name != std::string("CellNoise")) {
            EXPECT_NEAR(sum / static_cast<float>(pixels.size()), 0.5f, 0.02f) << one.name;
        }
    }
}

TEST_F(Nodes, NumbersOfCells_AreSpreadEvenly) {
    IShader* const noise = Make("CellNoise");
    Set(noise, "feature", 3);
    IShader* const probe = Make("Probe");
    Connect(probe, "node", noise);
    int counts[4] = {};
    for (const Pixel& pixel : Measure(probe, 64, 64, 1)) {
        ASSERT_GE(pixel[0], 0.0f);
        ASSERT_LT(pixel[0], 1.0f);
        ++counts[static_cast<int>(pixel[0] * 4.0f)];
    }
    for (const int count : counts) {
        EXPECT_NEAR(count, 1024, 200);
    }
}

TEST_F(Nodes, Arithmetic_ComputesWhatItSays) {
    IShader* const sum = Make("ScalarSum");
    SetCells(sum, "terms", {Scalar(1.0f), Scalar(2.5f), Scalar(-0.25f)});
    EXPECT_FLOAT_EQ(Ask(sum), 3.25f);

    IShader* const product = Make("ScalarProduct");
    SetCells(product, "factors", {Scalar(2.0f), Scalar(0.75f)});
    EXPECT_FLOAT_EQ(Ask(product), 1.5f);

    IShader* const power = Make("ScalarPower");
    Connect(power, "base", Scalar(3.0f));
    Connect(power, "exponent", Scalar(2.0f));
    EXPECT_NEAR(Ask(power), 9.0f, 1e-4f);

    IShader* const mix = Make("ScalarMix");
    Connect(mix, "first", Scalar(2.0f));
    Connect(mix, "second", Scalar(4.0f));
    Connect(mix, "amount", Scalar(0.25f));
    EXPECT_FLOAT_EQ(Ask(mix), 2.5f);

    IShader* const range = Make("ScalarRange");
    Connect(range, "value", Scalar(3.0f));
    Set(range, "from", Vector2f(2.0f, 4.0f));
    Set(range, "to", Vector2f(10.0f, 20.0f));
    EXPECT_FLOAT_EQ(Ask(range), 15.0f);
    Connect(range, "value", Scalar(5.0f));
    EXPECT_FLOAT_EQ(Ask(range), 20.0f);
    Set(range, "isHeld", false);
    EXPECT_FLOAT_EQ(Ask(range), 25.0f);

    IShader* const edge = Make("ScalarStep");
    Connect(edge, "value", Scalar(0.6f));
    EXPECT_FLOAT_EQ(Ask(edge), 1.0f);
    Set(edge, "edge", 0.7f);
    EXPECT_FLOAT_EQ(Ask(edge), 0.0f);
    Set(edge, "softness", 0.4f);
    EXPECT_NEAR(Ask(edge), 0.15625f, 1e-5f);

    IShader* const gray = Make("ScalarFromColor");
    Connect(gray, "color", Color(1.0f, 0.0f, 0.5f));
    EXPECT_NEAR(Ask(gray), 0.2126f + 0.0361f, 1e-6f);
}

TEST_F(Nodes, Colors_ComputeWhatTheySay) {
    IShader* const sum = Make("ColorSum");
    SetCells(sum, "terms", {Color(0.25f, 0.5f, 1.0f), Color(1.0f, 0.0f, 2.0f)});
    Expect(Ask("ProbeColor", sum), 1.25f, 0.5f, 3.0f);

    IShader* const product = Make("ColorProduct");
    SetCells(product, "factors", {Color(0.25f, 0.5f, 1.0f), Color(1.0f, 0.0f, 2.0f)});
    Expect(Ask("ProbeColor", product), 0.25f, 0.0f, 2.0f);

    IShader* const scaled = Make("ColorScale");
    Connect(scaled, "color", Color(0.25f, 0.5f, 1.0f));
    Connect(scaled, "factor", Scalar(2.0f));
    Expect(Ask("ProbeColor", scaled), 0.5f, 1.0f, 2.0f);

    IShader* const mix = Make("ColorMix");
    Connect(mix, "second", Color(1.0f, 0.5f, 0.0f));
    Expect(Ask("ProbeColor", mix), 0.5f, 0.25f, 0.0f);

    IShader* const adjusted = Make("ColorAdjust");
    Connect(adjusted, "color", Color(1.0f, 0.0f, 0.0f));
    Set(adjusted, "saturation", 0.0f);
    Set(adjusted, "gain", Vector3f(1.0f, 2.0f, 0.0f));
    Expect(Ask("ProbeColor", adjusted), 0.2126f, 0.4252f, 0.0f);

    IShader* const ramp = Make("ColorRamp");
    const Vector3f colors[] = {{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}};
    const float places[] = {0.2f, 0.4f, 1.0f};
    ASSERT_TRUE(ramp->GetParameter("colors")->SetLength(3));
    ASSERT_TRUE(ramp->GetParameter("places")->SetLength(3));
    ASSERT_TRUE(ramp->SetParameter(nullptr, "colors", colors, 3));
    ASSERT_TRUE(ramp->SetParameter(nullptr, "places", places, 3));
    const std::pair<float, Vector3f> expected[] = {{0.0f, {1.0f, 0.0f, 0.0f}},
                                                   {0.3f, {0.5f, 0.5f, 0.0f}},
                                                   {0.7f, {0.0f, 0.5f, 0.5f}},
                                                   {2.0f, {0.0f, 0.0f, 1.0f}}};
    for (const auto& [value, color] : expected) {
        Connect(ramp, "value", Scalar(value));
        Expect(Ask("ProbeColor", ramp), color.x, color.y, color.z);
    }
}

TEST_F(Nodes, ACheckerboard_AsksTheColorOfItsSquare) {
    IShader* const checker = Make("CheckerColor");
    Connect(checker, "even", Color(1.0f, 0.5f, 0.25f));
    Connect(checker, "odd", Color(0.0f, 0.0f, 1.0f));
    Expect(Ask("ProbeColor", checker, {0.5f, 0.5f, 0.5f}), 1.0f, 0.5f, 0.25f);
    Expect(Ask("ProbeColor", checker, {1.5f, 0.5f, 0.5f}), 0.0f, 0.0f, 1.0f);
    Expect(Ask("ProbeColor", checker, {-0.5f, -0.5f, 0.5f}), 1.0f, 0.5f, 0.25f);
}

TEST_F(Nodes, Mappings_AnswerThePlaceToLookAt) {
    IShader* const world = Make("WorldCoordinates");
    Set(world, "scale", Vector3f(2.0f, 3.0f, 4.0f));
    Set(world, "offset", Vector3f(1.0f, 0.0f, 0.0f));
    Expect(Ask("ProbeMapping", world, {1.0f, 1.0f, 1.0f}), 3.0f, 3.0f, 4.0f);

    IShader* const moved = Make("TransformedCoordinates");
    Connect(moved, "mapping", world);
    Matrix44f transform;
    transform(0, 3) = 10.0f;
    Set(moved, "transform", transform);
    Expect(Ask("ProbeMapping", moved, {1.0f, 1.0f, 1.0f}), 13.0f, 3.0f, 4.0f);

    Expect(Ask("ProbeMapping", Make("SphereCoordinates"), {0.0f, 0.0f, -2.0f}), 0.5f, 0.5f, 0.0f);
    Expect(Ask("ProbeMapping", Make("SphereCoordinates"), {0.0f, 5.0f, 0.0f}), 1.0f, 1.0f, 0.0f);
}

TEST_F(Nodes, AHeight_TurnsTheNormalAgainstItsSlope) {
    // Stripes with a soft edge of one unit, whose middle has the slope 1.5.
    IShader* const stripes = Make("StripeScalar");
    Set(stripes, "softness", 1.0f);
    IShader* const bump = Make("HeightBump");
    Connect(bump, "height", stripes);
    Set(bump, "depth", 1.0f);
    const Pixel bent = Ask("ProbeBump", bump, {0.0f, 0.0f, 0.0f});
    const float length = std::sqrt(1.0f + 1.5f * 1.5f);
    EXPECT_NEAR(bent[0], -1.5f / length, 0.01f);
    EXPECT_NEAR(bent[1], 1.0f / length, 0.01f);
    EXPECT_NEAR(bent[2], 0.0f, 0.01f);
    Expect(Ask("ProbeBump", Make("HeightBump")), 0.0f, 1.0f, 0.0f);
}

} // namespace
} // namespace Tolen::Tests

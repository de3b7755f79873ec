// IES files: what the light of a luminaire is between the angles that were measured, and images of it.

#include "scene/IesImage.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using Scene::IesError;
using Scene::ParseIes;
using Scene::Photometry;
using testing::HasSubstr;
using testing::StartsWith;

const std::string kHead = "IESNA:LM-63-2002\n[TEST] 1\n[MANUFAC] nobody\nTILT=NONE\n";

/// The numbers ahead of the angles.
std::string Numbers(int thetas, int phis, const std::string& multiplier = "1",
                    const std::string& factors = "1 1") {
    return "1 1000 " + multiplier + " " + std::to_string(thetas) + " " + std::to_string(phis) +
           " 1 2 0 0 0\n" + factors + " 50\n";
}

std::string Error(const std::string& text) {
    try {
        ParseIes("lamp.ies", text);
    } catch (const IesError& error) {
        return error.what();
    }
    return "";
}

TEST(Ies, BetweenAnglesIntensitiesAreLinearAndBeyondThemNone) {
    const Photometry lamp =
        ParseIes("lamp.ies", kHead + Numbers(3, 1) + "0 45 90\n0\n100 80 20\n");
    EXPECT_EQ(lamp.GetSymmetry(), Photometry::kSymmetry_Axial);
    for (const double phi : {-720.0, 0.0, 77.0, 1000.0}) {
        EXPECT_DOUBLE_EQ(lamp.GetCandela(0.0, phi), 100.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(22.5, phi), 90.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(45.0, phi), 80.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(75.0, phi), 40.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(90.0, phi), 20.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(90.1, phi), 0.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(180.0, phi), 0.0);
    }
    EXPECT_DOUBLE_EQ(lamp.GetMostCandela(), 100.0);
}

TEST(Ies, PlanesGoOnAsTheLastOneTells) {
    struct Case {
        const char* phis;
        int count;
        Photometry::Symmetry symmetry;
        std::vector<std::pair<double, double>> values; ///< at a phi, with plane i at 10 * (i + 1)
    };
    const Case cases[] = {
        {"0 30 90", 3, Photometry::kSymmetry_Quadrants,
         {{0, 10}, {15, 15}, {60, 25}, {90, 30}, {120, 25}, {165, 15}, {180, 10}, {195, 15},
          {240, 25}, {270, 30}, {300, 25}, {345, 15}, {-15, 15}}},
        {"0 90 180", 3, Photometry::kSymmetry_Plane0,
         {{0, 10}, {45, 15}, {135, 25}, {180, 30}, {225, 25}, {270, 20}, {315, 15}, {359.1, 10.1}}},
        {"90 180 270", 3, Photometry::kSymmetry_Plane90,
         {{90, 10}, {135, 15}, {180, 20}, {270, 30}, {45, 15}, {0, 20}, {315, 25}, {-90, 30}}},
        {"0 90 180 270 360", 5, Photometry::kSymmetry_None,
         {{0, 10}, {45, 15}, {225, 35}, {270, 40}, {315, 45}, {359.9, 49.9888888888888889}}},
        {"0 90 180 270", 4, Photometry::kSymmetry_None,
         {{0, 10}, {90, 20}, {270, 40}, {315, 25}, {337.5, 17.5}, {-45, 25}, {360, 10}}},
    };
    for (const Case& angles : cases) {
        SCOPED_TRACE(angles.phis);
        std::string candelas;
        for (int i = 1; i <= angles.count; ++i) {
            candelas += std::to_string(10 * i) + " " + std::to_string(20 * i) + "\n";
        }
        const Photometry lamp = ParseIes("lamp.ies", kHead + Numbers(2, angles.count) + "0 180\n" +
                                                         angles.phis + "\n" + candelas);
        EXPECT_EQ(lamp.GetSymmetry(), angles.symmetry);
        for (const auto& [phi, candela] : angles.values) {
            EXPECT_NEAR(lamp.GetCandela(0.0, phi), candela, 1e-9) << phi;
            EXPECT_NEAR(lamp.GetCandela(90.0, phi), 1.5 * candela, 1e-9) << phi;
        }
    }
}

TEST(Ies, EveryEditionIsRead) {
    const std::string angles = "0 90\n0\n10 20\n";
    struct {
        const char* name;
        std::string head;
        double most; ///< 20 times the factors that the edition has
    } const cases[] = {
        {"1986", "A lamp\nof nobody\nTILT=NONE\n", 2.0 * 0.5 * 0.25 * 20.0},
        {"1986 without labels", "TILT=NONE\n", 2.0 * 0.5 * 0.25 * 20.0},
        {"1991", "IESNA91\n[TEST] 1\nTILT=NONE\n", 2.0 * 0.5 * 0.25 * 20.0},
        {"1995", "IESNA:LM-63-1995\n[TEST] 1\n[DATE] today\nTILT=NONE\n", 2.0 * 0.5 * 20.0},
        {"2002", "IESNA:LM-63-2002\n[_OWN] word\nTILT = NONE\n", 2.0 * 0.5 * 20.0},
        {"2019", "IES:LM-63-2019\n[TEST] 1\nTILT=NONE\n", 2.0 * 0.5 * 20.0},
        {"with tilts", "IESNA:LM-63-2002\nTILT=INCLUDE\n1\n3\n0 30 90\n0.75 0.5 0.25\n",
         0.75 * 2.0 * 0.5 * 20.0},
    };
    for (const auto& [name, head, most] : cases) {
        SCOPED_TRACE(name);
        const std::string text = head + Numbers(2, 1, "2", "0.5 0.25") + angles;
        EXPECT_DOUBLE_EQ(ParseIes("lamp.ies", text).GetMostCandela(), most);
    }
}

TEST(Ies, NumbersStandInAnyLinesAndForms) {
    std::string text = kHead + "1,1000,1.0E0,2,1\n1 2 0 0 0 +1 1\n50\n0\t90\n0\n1e1\n\n2E1\x1a\n";
    for (int i = 0; i < 2; ++i) {
        const Photometry lamp = ParseIes("lamp.ies", text);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(0.0, 0.0), 10.0);
        EXPECT_DOUBLE_EQ(lamp.GetCandela(90.0, 0.0), 20.0);
        for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2) {
            text.replace(at, 1, "\r\n");
        }
    }
}

TEST(Ies, MistakesAreToldWithTheirLine) {
    struct {
        const char* name;
        std::string text;
        const char* message;
    } const cases[] = {
        {"empty", "", "lamp.ies:1: error: no line with TILT=, so this is no IES file"},
        {"no tilt", "IESNA91\n[TEST] 1\n1 2 3\n",
         "lamp.ies:3: error: no line with TILT=, so this is no IES file"},
        {"tilt elsewhere", "IESNA91\nTILT=tilt.dat\n",
         "lamp.ies:2: error: expected TILT=NONE or TILT=INCLUDE, found 'TILT=tilt.dat'"},
        {"ends", kHead + "1 1000 1 3 1 1 2 0 0 0\n1 1 50\n0 45 90\n0\n1 2\n",
         "lamp.ies:10: error: the file ends where a candela is expected"},
        {"no number", kHead + "1 1000 1 3 x 1 2 0 0 0\n",
         "lamp.ies:5: error: expected the number of horizontal angles, found 'x'"},
        {"a number and more", kHead + "1 1000lm 1 3 1 1 2 0 0 0\n",
         "lamp.ies:5: error: expected the lumens of a lamp, found '1000lm'"},
        {"not finite", kHead + "1 1000 nan 3 1 1 2 0 0 0\n",
         "lamp.ies:5: error: expected the multiplier of candelas, found 'nan'"},
        {"huge number", kHead + "1 1e999 1 3 1 1 2 0 0 0\n",
         "lamp.ies:5: error: expected the lumens of a lamp, found '1e999'"},
        {"no angles", kHead + "1 1000 1 0 1 1 2 0 0 0\n",
         "lamp.ies:5: error: the number of vertical angles has to be a whole number from 1 to 100000"},
        {"many candelas", kHead + "1 1000 1 100000 100000 1 2 0 0 0\n",
         "lamp.ies:5: error: more than the limit of 16777216 candelas"},
        {"type B", kHead + "1 1000 1 3 1 2 2 0 0 0\n",
         "lamp.ies:5: error: photometry of type B is not supported, only that of type C is"},
        {"type A", kHead + "1 1000 1 3 1 3 2 0 0 0\n",
         "lamp.ies:5: error: photometry of type A is not supported, only that of type C is"},
        {"angles that shrink", kHead + Numbers(3, 1) + "0 60\n45\n0\n1 2 3\n",
         "lamp.ies:8: error: vertical angles have to grow"},
        {"angle beyond", kHead + Numbers(3, 1) + "0 60 190\n0\n1 2 3\n",
         "lamp.ies:7: error: a vertical angle outside 0 to 180"},
        {"symmetry", kHead + Numbers(2, 2) + "0 90\n0 120\n1 2 3 4\n",
         "lamp.ies:8: error: the horizontal angles end at none of 90, 180 and 360 degrees"},
        {"negative", kHead + Numbers(2, 1) + "0 90\n0\n1\n-2\n",
         "lamp.ies:10: error: a candela below 0 or beyond all bounds"},
        {"infinite", kHead + Numbers(2, 1, "1e300") + "0 90\n0\n1\n1e300\n",
         "lamp.ies:10: error: a candela below 0 or beyond all bounds"},
        {"left over", kHead + Numbers(2, 1) + "0 90\n0\n1 2\n3\n",
         "lamp.ies:10: error: something follows behind the last candela"},
    };
    for (const auto& [name, text, message] : cases) {
        EXPECT_EQ(Error(text), message) << name;
    }
}

TEST(Ies, FilesWithAPartCutOffAreRefused) {
    const std::string whole = kHead + Numbers(3, 2) + "0 45 90\n0 90\n1 2 3\n4 5 6";
    EXPECT_EQ(Error(whole), "");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_THAT(Error(whole.substr(0, length)), StartsWith("lamp.ies:")) << length;
    }
}

TEST(Ies, TheImageHoldsCandelasByDirectionAndItsLumensAreTheirSum) {
    // 100 cd evenly below, and nothing above.
    const Photometry lamp = ParseIes("lamp.ies", kHead + Numbers(2, 1) + "0 90\n0\n100 100\n");
    const Scene::Image image = Scene::MakeIesImage(lamp, 8, 4);
    ASSERT_EQ(image.rgba.size(), 8u * 4u * 4u);
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        EXPECT_EQ(image.rgba[i], i % 4 == 3 ? 1.0f : i < image.rgba.size() / 2 ? 100.0f : 0.0f);
    }
    EXPECT_NEAR(Scene::GetLumens(image), 2.0 * 3.14159265358979 * 100.0, 1e-6);
}

TEST(Ies, TheProgramWritesFloatsInCandelaAndPicturesToLookAt) {
    const std::string lamp = WriteTemporary(
        "lamp.ies", kHead + Numbers(2, 3) + "0 180\n0 90 180\n100000 100000 0 0 50000 50000\n");
    const Ended run =
        RunProgram("ies2image", {lamp, "-o", GetTemporary("lamp.exr"), "--size", "8x3"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith(lamp + ": 2 by 3 angles, at most 100000 cd, "));
    const Scene::Image image = Scene::ReadImage(GetTemporary("lamp.exr"), false);
    ASSERT_EQ(image.width, 8);
    ASSERT_EQ(image.height, 3);
    const float columns[] = {75000, 25000, 12500, 37500, 37500, 12500, 25000, 75000};
    for (std::size_t i = 0; i < 24; ++i) {
        EXPECT_NEAR(image.rgba[i * 4], columns[i % 8], 0.01f) << i;
    }
    std::ifstream stream(GetTemporary("lamp.exr"), std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(stream), {});
    EXPECT_THAT(bytes, HasSubstr(Scene::kIesImageComments));

    EXPECT_EQ(RunProgram("ies2image", {lamp, "-o", GetTemporary("lamp.png")}).status, 0);
    const Scene::Image picture = Scene::ReadImage(GetTemporary("lamp.png"), false);
    EXPECT_EQ(picture.width, 720);
    EXPECT_EQ(picture.height, 360);
}

TEST(Ies, AsATextureOfAScene_ItIsRead) {
    WriteTemporary("even.ies", kHead + Numbers(2, 1) + "0 180\n0\n0.25 0.25\n");
    WriteTemporary("seen.klsl", R"(
class Camera {
    int GetRayCount() { return 1; }
    void Render() { spawnRay(vec3(0.0, 0.0, 5.0), vec3(0.0, 0.0, -1.0)); }
}
class Seen {
    input sampler2D image;
    void Shade() { accumulate(o_color, texture2D(image, vec2(0.3, 0.6)).rgb); }
})");
    const auto write = [](const std::string& texture) {
        return WriteTemporary("seen.json", R"({"libraries": ["seen.klsl"],
"outputs": [{"name": "o_color", "type": "vec3", "attachment": 0}],
"textures": [{"name": "lamp", "file": ")" + texture + R"("}],
"shaders": [{"name": "eye", "class": "Camera"},
    {"name": "paint", "class": "Seen", "textures": {"image": "lamp"}}],
"effects": [{"name": "eye", "kind": "renderer", "root": "eye"},
    {"name": "paint", "kind": "surface", "root": "paint"}],
"primitives": [{"name": "square", "shape": "plane", "size": [9, 9], "effect": "paint"}],
"renderer": "eye", "size": [1, 1], "samples": 1})");
    };
    const Ended run =
        RunProgram("tolen-render", {write("even.ies"), "-q", "-o", GetTemporary("seen.exr")});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_EQ(Scene::ReadImage(GetTemporary("seen.exr"), false).rgba[0], 0.25f);

    const std::string wrong = WriteTemporary("wrong.ies", "TILT=NONE\n");
    const std::string scene = write("wrong.ies");
    EXPECT_EQ(RunProgram("tolen-render", {scene, "-q"}).errors,
              scene + ": /textures/0/file: " + wrong +
                  ":2: error: the file ends where the number of lamps is expected\n");
}

TEST(Ies, TheProgramTellsOfMistakes) {
    const std::string lamp = WriteTemporary("bad.ies", "IESNA91\nTILT=NONE\n1 x\n");
    const Ended run = RunProgram("ies2image", {lamp, "-o", GetTemporary("bad.exr")});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, lamp + ":3: error: expected the lumens of a lamp, found 'x'\n");
    EXPECT_EQ(RunProgram("ies2image", {"none.ies"}).errors, "none.ies: can't be read\n");
    EXPECT_EQ(RunProgram("ies2image", {lamp, "-o", "lamp.bmp"}).status, 2);
    EXPECT_EQ(RunProgram("ies2image", {lamp, "--size", "0x3"}).status, 2);
    EXPECT_EQ(RunProgram("ies2image", {}).status, 2);
}

} // namespace
} // namespace Tolen::Tests

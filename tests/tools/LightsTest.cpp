// Lights in scene files and in models.

#include "scene/ImageFile.h"
#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

/// The folder of the shaders that come along, as an entry of a scene's libraries.
const std::string kShaders = "\"" + SourceFolder() + "/shaders\"";

/// A white matt wall in the plane z = 0, of which one pixel shows the middle, with @p shaders behind
/// those that make it up. "lights" is the manager of its light.
std::string WriteScene(const std::string& shaders,
                       const std::string& libraries = kShaders + R"(, "lights")") {
    WriteTemporary("eye.klsl", R"(
class Eye {
    int GetRayCount() { return 1; }
    void Render() { throughput = vec3(1.0); direct = 1.0; spawnRay(vec3(0.0, 0.0, 1.0), vec3(0.0, 0.0, -1.0)); }
})");
    return WriteTemporary("lit.json", R"({"libraries": ["eye.klsl", )" + libraries + R"(],
"rayAttributes": [{"type": "vec3", "name": "throughput"}, {"type": "float", "name": "direct"}],
"outputs": [{"name": "o_color", "type": "vec3", "attachment": 0}],
"shaders": [{"name": "eye", "class": "Eye"},
    {"name": "wall", "class": "Material", "inputs": {"bsdf": "matt", "integrator": "look"}},
    {"name": "matt", "class": "DiffuseBsdf", "inputs": {"color": "white"}},
    {"name": "white", "class": "ColorConstant", "parameters": {"value": [1, 1, 1]}},
    {"name": "look", "class": "DirectLight", "inputs": {"lighting": "lights"}}, )" + shaders + R"(],
"effects": [{"name": "eye", "kind": "renderer", "root": "eye"},
    {"name": "wall", "kind": "surface", "root": "wall"}],
"primitives": [{"name": "wall", "shape": "plane", "size": [9, 9], "effect": "wall"}],
"renderer": "eye", "size": [1, 1], "samples": 1})");
}

/// Two points straight in front of the wall: "near" at 2 with an intensity of 4, and "far" at 4 with
/// one of 16, so that each gives the wall an irradiance of 1 in red; half of it in green.
const std::string kTwoLamps = R"(
{"name": "lights", "class": "LightManagerArray", "inputs": {"lights": ["near", "far"]}},
{"name": "near", "class": "LightInstanceStandardArray", "inputs": {"light": "near point"},
 "parameters": {"transform": [{"translate": [0, 0, 2]}]}},
{"name": "far", "class": "LightInstanceStandardArray", "inputs": {"light": "far point"},
 "parameters": {"transform": [{"aim": [0, 1, 0]}, {"translate": [0, 0, 4]}]}},
{"name": "near point", "class": "LightPointArray", "inputs": {"decay": "square"},
 "parameters": {"intensity": [4, 2, 0]}},
{"name": "far point", "class": "LightPointArray", "inputs": {"decay": "square"},
 "parameters": {"intensity": [16, 8, 0]}},
{"name": "square", "class": "LightDecayInvSquareArray"})";

/// The colour of the pixel, times pi: the irradiance of the wall.
std::vector<float> Irradiance(const std::string& scene, std::vector<std::string> arguments = {}) {
    const std::string file = GetTemporary("lit.exr");
    arguments.insert(arguments.begin(), {scene, "-q", "-o", file});
    const Ended run = RunProgram("tolen-render", arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    if (run.status != 0) {
        return {0.0f, 0.0f, 0.0f};
    }
    const Scene::Image image = Scene::ReadImage(file, false);
    return {3.14159265f * image.rgba[0], 3.14159265f * image.rgba[1], 3.14159265f * image.rgba[2]};
}

void ExpectRed(const std::vector<float>& irradiance, float red) {
    EXPECT_NEAR(irradiance[0], red, 0.01f * red);
    EXPECT_NEAR(irradiance[1], 0.5f * red, 0.01f * red);
    EXPECT_EQ(irradiance[2], 0.0f);
}

TEST(Lights, EachIsAShaderOfItsOwn) {
    const std::string scene = WriteScene(kTwoLamps);
    ExpectRed(Irradiance(scene), 2.0f);
    ExpectRed(Irradiance(scene, {"--set", "near point.intensity=12,6,0"}), 4.0f);
    ExpectRed(Irradiance(scene, {"--set", "near.isOn=false"}), 1.0f);
    ExpectRed(Irradiance(scene, {"--set", "far.light=near point"}), 1.25f);
    ExpectRed(Irradiance(scene, {"--set", "lights.lights=near"}), 1.0f);
    ExpectRed(Irradiance(scene, {"--set", "far.transform=[{\"translate\": [0, 0, 8]}]"}), 1.25f);
}

TEST(Lights, AnAnimatedValueIsWrittenWithoutACompile) {
    const std::string scene = WriteScene(kTwoLamps);
    const Ended run = RunProgram("tolen-render", {scene, "-q", "--animate", "far.dimmer=0,0,0:1,1,1",
                                                  "--frames", "3", "-o", GetTemporary("dim.exr")});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, testing::ContainsRegex("\nwall +1 +[1-9]"));
    for (int frame = 1; frame <= 3; ++frame) {
        const Scene::Image image = Scene::ReadImage(
            GetTemporary("dim.000" + std::to_string(frame) + ".exr"), false);
        EXPECT_NEAR(3.14159265f * image.rgba[0], 0.5f + 0.5f * static_cast<float>(frame), 0.02f);
    }
}

TEST(Lights, AimTurnsBeams) {
    const auto beam = [](const std::string& steps) {
        return WriteScene(R"(
{"name": "lights", "class": "LightManagerArray", "inputs": {"lights": ["lamp"]}},
{"name": "lamp", "class": "LightInstanceStandardArray", "inputs": {"light": "point"},
 "parameters": {"transform": )" + steps + R"(}},
{"name": "point", "class": "LightPointArray", "inputs": {"focus": "cone"}},
{"name": "cone", "class": "LightFocusConeArray", "parameters": {"inner": 5, "outer": 10}})");
    };
    const float across = 0.70710678f;
    EXPECT_NEAR(Irradiance(beam(R"([{"translate": [0, 0, 2]}])"))[0], 1.0f, 0.01f);
    for (const char* side : {R"([{"aim": [-1, 0, -1]}, {"translate": [2, 0, 2]}])",
                             R"([{"aim": [0, -2, -2]}, {"translate": [0, 2, 2]}])",
                             R"([{"aim": [0, 2, -2]}, {"translate": [0, -2, 2]}])"}) {
        EXPECT_NEAR(Irradiance(beam(side))[0], across, 0.01f) << side;
    }
    EXPECT_EQ(Irradiance(beam(R"([{"aim": [0, -1, 0]}, {"translate": [0, 0, 2]}])"))[0], 0.0f);
    const std::string scene = beam(R"([{"aim": [0, 0, 0]}])");
    EXPECT_EQ(RunProgram("tolen-render", {scene, "-q"}).errors,
              scene + ": /shaders/6/parameters/transform/0/aim: a direction needs a length\n");
}

TEST(Lights, MistakesAreToldWithTheirPlace) {
    const std::string all = kShaders + R"(, "lights")";
    struct {
        const char* name;
        std::string more;      ///< a shader behind those of the lamps; may be empty
        std::string libraries;
        const char* message;
    } const cases[] = {
        {"no such part",
         R"({"name": "l", "class": "LightPointArray", "inputs": {"dekay": "square"}})", all,
         "/shaders/11/inputs/dekay: class 'LightPointArray' has no input 'dekay' (did you mean 'decay'?)"},
        {"another part",
         R"({"name": "l", "class": "LightPointArray", "inputs": {"decay": "near"}})", all,
         "/shaders/11/inputs/decay: the input 'decay' can't be connected to 'near'\n"},
        {"a companion",
         R"({"name": "l", "class": "LightPointArray", "parameters": {"decayRef": [0, 0]}})", all,
         "/shaders/11/parameters/decayRef: class 'LightPointArray' has no input 'decayRef'"},
        {"a list of parts",
         R"({"name": "l", "class": "LightPointArray", "inputs": {"decay": ["square"]}})", all,
         "/shaders/11/inputs/decay: expected a text, found a list"},
        {"a list of values",
         R"({"name": "l", "class": "LightPointArray", "parameters": {"intensity": [[1, 1, 1]]}})", all,
         "/shaders/11/parameters/intensity/0: expected a number, found a list\n"},
        {"a light without a place",
         R"({"name": "l", "class": "LightManagerArray", "inputs": {"lights": ["near point"]}})", all,
         "/shaders/11/inputs/lights/0: the input 'lights' can't be connected to 'near point'\n"},
        {"some libraries", "", kShaders + R"(, "lights/lighting.klsl", "lights/points.klsl")",
         "/libraries: lights need all libraries of lights\n"},
        {"no libraries", "", kShaders,
         "/shaders/5/class: no shader of class 'LightManagerArray' can be made\n"},
    };
    for (const auto& [name, more, libraries, message] : cases) {
        const std::string scene =
            WriteScene(more.empty() ? kTwoLamps : kTwoLamps + ", " + more, libraries);
        const Ended run = RunProgram("tolen-render", {scene, "-q", "-o", GetTemporary("out.png")});
        EXPECT_EQ(run.status, 1) << name;
        EXPECT_THAT(run.errors, StartsWith(scene + ": " + message)) << name;
    }
}

TEST(Lights, Graph_DrawsEachWithWhatIsConnectedToIt) {
    const std::string scene = WriteScene(kTwoLamps);
    const Ended run = RunProgram("klsl", {"graph", scene});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output,
                AllOf(HasSubstr("<b>near point</b>: LightPointArray<"),
                      HasSubstr(">intensity</td><td align=\"left\">(4, 2, 0)<"),
                      HasSubstr(">intensity</td><td align=\"left\">(16, 8, 0)<"),
                      HasSubstr("    s6 -> s5:i_lights_0:w;\n"),
                      HasSubstr("    s7 -> s5:i_lights_1:w;\n"),
                      HasSubstr("    s8 -> s6:i_light:w;\n"), HasSubstr("    s9 -> s7:i_light:w;\n"),
                      HasSubstr("    s10 -> s8:i_decay:w;\n"), HasSubstr("    s5 -> s4:i_lighting:w;\n"),
                      HasSubstr(">focus</td><td align=\"left\"><font color=\"#a0a0a0\">LightFocusNullArray<"),
                      Not(HasSubstr("Ref<"))));
}

TEST(Lights, Print_ShowsTheirPrograms) {
    const Ended run = RunProgram("klsl", {"print", WriteScene(kTwoLamps)});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, AllOf(HasSubstr("intensity"), HasSubstr("decayRef")));
}

/// A square and a lamp of each kind that glTF has.
std::string WriteModel(const std::string& lights, const std::string& nodes) {
    return WriteTemporary("lamps.gltf", R"({"asset": {"version": "2.0"},
"extensionsUsed": ["KHR_lights_punctual"],
"extensions": {"KHR_lights_punctual": {"lights": [)" + lights + R"(]}},
"scene": 0, "scenes": [{"nodes": [0, 1, 2, 3]}], "nodes": [{"mesh": 0}, )" + nodes + R"(],
"meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1}]}],
"buffers": [{"byteLength": 54, "uri": "data:application/octet-stream;base64,)"
R"(AACAvwAAgL8AAAAAAACAPwAAgL8AAAAAAACAPwAAgD8AAAAAAACAvwAAgD8AAAAAAAECAAID"}],
"bufferViews": [{"buffer": 0, "byteLength": 48}, {"buffer": 0, "byteOffset": 48, "byteLength": 6}],
"accessors": [
  {"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3", "min": [-1, -1, 0],
   "max": [1, 1, 0]},
  {"bufferView": 1, "componentType": 5121, "count": 6, "type": "SCALAR"}]})");
}

std::string WriteThreeLamps() {
    return WriteModel(
        R"({"type": "point", "color": [1, 0.5, 0.25], "intensity": 40, "range": 20},
{"type": "spot", "intensity": 30, "spot": {"innerConeAngle": 0.25, "outerConeAngle": 0.5}},
{"type": "directional", "color": [0, 0, 1], "intensity": 5})",
        R"({"name": "Bulb", "translation": [0, 0, 2], "extensions": {"KHR_lights_punctual": {"light": 0}}},
{"name": "Spot", "translation": [0, 0, 3], "extensions": {"KHR_lights_punctual": {"light": 1}}},
{"name": "Sun", "extensions": {"KHR_lights_punctual": {"light": 2}}})");
}

TEST(Lights, ThoseOfAModelBecomeLights) {
    const std::string model = WriteThreeLamps();
    const Ended run = RunProgram("klsl", {"graph", model});
    EXPECT_EQ(run.status, 0) << run.errors;
    for (const char* part :
         {"<b>lights</b>: LightManagerArray<", "<b>Bulb</b>: LightInstanceStandardArray<",
          "<b>Bulb.light</b>: LightPointArray<", ">intensity</td><td align=\"left\">(40, 20, 10)<",
          ">range</td><td align=\"left\">20<", "<b>Spot.focus</b>: LightFocusConeArray<",
          ">inner</td><td align=\"left\">14.3239<", ">outer</td><td align=\"left\">28.6479<",
          "<b>Sun.light</b>: LightDirectArray<", ">irradiance</td><td align=\"left\">(0, 0, 5)<",
          ":i_lights_2:w;\n", ":i_lighting:w;\n"}) {
        EXPECT_THAT(run.output, HasSubstr(part));
    }
    EXPECT_THAT(RunProgram("tolen-render", {model, "-q", "--size", "12x8", "--samples", "1", "-o",
                                            GetTemporary("model.png")})
                    .errors,
                "");
}

TEST(Lights, AModelIsExposedByThem) {
    const auto look = [](const std::string& file) {
        const std::string picture = GetTemporary("exposed.exr");
        const Ended run =
            RunProgram("tolen-render", {file, "-q", "--size", "9x9", "--samples", "16", "-o", picture});
        EXPECT_EQ(run.status, 0) << run.errors;
        return Scene::ReadImage(picture, false).rgba[(4 * 9 + 4) * 4];
    };
    for (const char* candelas : {"0.01", "1e6"}) {
        const std::string lamp = std::string(R"({"type": "point", "intensity": )") + candelas + "}";
        const float seen = look(WriteModel(
            lamp, R"({"name": "A", "translation": [0, 0, 2],
 "extensions": {"KHR_lights_punctual": {"light": 0}}}, {"name": "b"}, {"name": "c"})"));
        EXPECT_GT(seen, 0.2f) << candelas;
        EXPECT_LT(seen, 1.2f) << candelas;
    }
}

} // namespace
} // namespace Tolen::Tests

// Shaders in the inputs of shaders, as scene files and the command line connect them.

#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kLibrary = R"(
interface IColor { vec3 Color(); }
interface IScalar { float Scalar(); }
class Plain : IColor { input vec3 value = vec3(0.5); vec3 Color() { return value; } }
class Half : IScalar { float Scalar() { return 0.5; } }
class Tint : IColor {
    input IColor base;
    input IScalar gain = Half();
    vec3 Color() { return base.Color() * gain.Scalar(); }
}
class Sum : IColor {
    input IColor layers[];
    vec3 Color() {
        vec3 sum = vec3(0.0);
        for (int i = 0; i < layers.length; ++i) { sum += layers[i].Color(); }
        return sum;
    }
}
class Pair : IColor {
    input IColor two[2];
    vec3 Color() { return two[0].Color() + two[1].Color(); }
}
class Placed : IColor { coord vec2 uv; vec3 Color() { return vec3(uv, 0.0); } }
class Lit {
    static input IColor light = Plain();
    input IColor color = Plain();
    void Shade() { accumulate(o_color, 2.0 * color.Color() * light.Color()); }
}
class Sky { static input IColor color = Plain(); static vec3 Get() { return color.Color(); } }
class UnderSky { void Shade() { accumulate(o_color, Sky.Get()); } }
class Misspelt {
    input IColor color = Plain();
    void Shade() { accumulate(o_color, color.Colour()); }
}
class Careless { input IColor colors[]; void Shade() { accumulate(o_color, colors.Color()); } }
class Camera {
    int GetRayCount() { return 1; }
    void Render() { spawnRay(vec3(0.0, 0.0, 5.0), vec3(0.0, 0.0, -1.0)); }
}
)";

/// Writes a scene with @p shaders behind its camera, of which "root" shades a square.
std::string WriteScene(const std::string& shaders, const std::string& classes = "{}",
                       const std::string& file = "connected.json") {
    WriteTemporary("nodes.klsl", kLibrary);
    return WriteTemporary(file, R"({"libraries": ["nodes.klsl"],
"outputs": [{"name": "o_color", "type": "vec3", "attachment": 0}],
"shaders": [{"name": "camera", "class": "Camera"}, )" + shaders + R"(],
"effects": [{"name": "eye", "kind": "renderer", "root": "camera"},
    {"name": "paint", "kind": "surface", "root": "root"}],
"primitives": [{"name": "square", "shape": "plane", "size": [9, 9], "effect": "paint"}],
"classes": )" + classes + R"(, "renderer": "eye", "size": [2, 2], "samples": 1})");
}

std::string Shader(const std::string& name, const std::string& className,
                   const std::string& inputs = "{}", const std::string& more = "") {
    return R"({"name": ")" + name + R"(", "class": ")" + className + R"(", "inputs": )" + inputs +
           more + "}";
}

std::string Plain(const std::string& name, const std::string& value) {
    return Shader(name, "Plain", "{}", R"(, "parameters": {"value": )" + value + "}");
}

/// The picture of a scene, all of whose pixels are alike.
std::string Picture(const std::string& scene, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {scene, "-q", "-o", GetTemporary("connected.png")});
    const Ended run = RunProgram("tolen-render", arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    std::ifstream file(GetTemporary("connected.png"), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

/// The picture of one colour.
std::string PictureOf(const std::string& color) {
    return Picture(WriteScene(Shader("root", "Lit", R"({"color": "flat"})") + ", " +
                                  Plain("flat", color),
                              "{}", "flat.json"));
}

TEST(Connections, AShaderIsNamedBeforeItIsDescribed) {
    const std::string scene = WriteScene(Shader("root", "Lit", R"({"color": "behind"})") + ", " +
                                         Plain("behind", "[0.25, 0.5, 0.125]"));
    EXPECT_EQ(Picture(scene), PictureOf("[0.25, 0.5, 0.125]"));
    EXPECT_NE(Picture(scene), PictureOf("[0.5, 0.5, 0.5]"));
}

TEST(Connections, WithoutAWord_TheDefaultIsTaken) {
    EXPECT_EQ(Picture(WriteScene(Shader("root", "Lit"))), PictureOf("[0.5, 0.5, 0.5]"));
}

TEST(Connections, AListSetsTheLengthAndMayNameAShaderTwice) {
    const std::string nodes = ", " + Plain("a", "[0.125, 0, 0]") + ", " +
                              Plain("b", "[0, 0.5, 0]") + ", " +
                              Shader("half", "Tint", R"({"base": "b"})");
    EXPECT_EQ(Picture(WriteScene(Shader("root", "Lit", R"({"color": "sum"})") + ", " +
                                 Shader("sum", "Sum", R"({"layers": ["a", "half", "a"]})") + nodes)),
              PictureOf("[0.25, 0.25, 0]"));
    EXPECT_EQ(Picture(WriteScene(Shader("root", "Lit", R"({"color": "sum"})") + ", " +
                                 Shader("sum", "Sum", R"({"layers": []})") + nodes)),
              PictureOf("[0, 0, 0]"));
    EXPECT_EQ(Picture(WriteScene(Shader("root", "Lit", R"({"color": "sum"})") + ", " +
                                 Shader("sum", "Pair", R"({"two": ["a", "b"]})") + nodes)),
              PictureOf("[0.125, 0.5, 0]"));
}

TEST(Connections, StaticInputsAreConnectedByTheirClass) {
    const std::string nodes = ", " + Plain("a", "[0.5, 0.25, 0]");
    EXPECT_EQ(Picture(WriteScene(Shader("root", "Lit") + nodes, R"({"Lit": {"light": "a"}})")),
              PictureOf("[0.5, 0.25, 0]"));
    EXPECT_EQ(Picture(WriteScene(Shader("root", "UnderSky") + nodes, R"({"Sky": {"color": "a"}})")),
              PictureOf("[0.5, 0.25, 0]"));
}

TEST(Connections, AConnectedShaderReadsAttributes) {
    const std::string scene =
        WriteScene(Shader("root", "Lit", R"({"color": "placed"})") + ", " +
                   Shader("placed", "Placed", "{}", R"(, "coords": {"uv": "Coord"})"));
    EXPECT_NE(Picture(scene), PictureOf("[0, 0, 0]"));
}

TEST(Connections, Set_ConnectsByName) {
    const std::string nodes = ", " + Plain("a", "[0.25, 0, 0]") + ", " + Plain("b", "[0, 0.25, 0]");
    const auto write = [&] { return WriteScene(Shader("root", "Lit") + nodes); };
    for (const char* value : {"root.color=a", "root.color=\"a\""}) {
        EXPECT_EQ(Picture(write(), {"--set", value}), PictureOf("[0.25, 0, 0]")) << value;
    }
    EXPECT_EQ(Picture(write(), {"--set", "Lit.light=a"}), PictureOf("[0.25, 0, 0]"));
    const auto writeSum = [&] {
        return WriteScene(Shader("root", "Lit", R"({"color": "sum"})") + ", " +
                          Shader("sum", "Sum", R"({"layers": ["a", "a"]})") + nodes);
    };
    EXPECT_EQ(Picture(writeSum(), {"--set", "sum.layers=a,b"}), PictureOf("[0.25, 0.25, 0]"));
    EXPECT_EQ(Picture(writeSum(), {"--set", "sum.layers=[\"a\", \"b\"]"}),
              PictureOf("[0.25, 0.25, 0]"));
    EXPECT_EQ(Picture(writeSum(), {"--set", "sum.layers=b"}), PictureOf("[0, 0.25, 0]"));
}

TEST(Connections, NamesMayHoldDots) {
    const std::string scene = WriteScene(Shader("root", "Lit", R"({"color": "wood.001"})") + ", " +
                                         Plain("wood.001", "[0, 0, 0]"));
    EXPECT_EQ(Picture(scene, {"--set", "wood.001.value=0.25,0,0"}), PictureOf("[0.25, 0, 0]"));
}

struct Mistake {
    const char* name;
    std::string shaders;
    std::string classes;
    const char* message;   ///< behind the file's name
    const char* more = ""; ///< in the lines that follow
};

std::vector<Mistake> MakeMistakes() {
    const std::string plain = Plain("plain", "[1, 1, 1]");
    const auto root = [](const char* input) {
        return Shader("root", "Lit", std::string(R"({"color": )") + input + "}") + ", ";
    };
    const std::string half = Shader("half", "Half");
    return {
        {"unknown shader", root("\"plian\"") + plain, "{}",
         "/shaders/1/inputs/color: there is no shader 'plian' (did you mean 'plain'?)"},
        {"unknown input", Shader("root", "Lit", R"({"colour": "plain"})") + ", " + plain, "{}",
         "/shaders/1/inputs/colour: class 'Lit' has no input 'colour' (did you mean 'color'?)"},
        {"input of values", Shader("root", "Plain", R"({"value": "plain"})") + ", " + plain, "{}",
         "/shaders/1/inputs/value: the input 'value' takes a value, not a shader"},
        {"value for a shader",
         Shader("root", "Lit", "{}", R"(, "parameters": {"color": [1, 1, 1]})"), "{}",
         "/shaders/1/parameters/color: the input 'color' takes another shader, not a value"},
        {"no name", root("3") + plain, "{}",
         "/shaders/1/inputs/color: expected a text, found a number"},
        {"list for one", root("[\"plain\"]") + plain, "{}",
         "/shaders/1/inputs/color: expected a text, found a list"},
        {"one for a list",
         root("\"sum\"") + Shader("sum", "Sum", R"({"layers": "plain"})") + ", " + plain, "{}",
         "/shaders/2/inputs/layers: expected a list, found a text"},
        {"too few",
         root("\"pair\"") + Shader("pair", "Pair", R"({"two": ["plain"]})") + ", " + plain, "{}",
         "/shaders/2/inputs/two: expected 2 shaders, found 1"},
        {"wrong interface", root("\"half\"") + half, "{}",
         "/shaders/1/inputs/color: the input 'color' can't be connected to 'half'\n",
         "Input type mismatch. Expected \"IColor\" but got \"IScalar::Half\""},
        {"wrong interface in a list",
         root("\"sum\"") + Shader("sum", "Sum", R"({"layers": ["plain", "half"]})") + ", " + plain +
             ", " + half,
         "{}", "/shaders/2/inputs/layers/1: the input 'layers' can't be connected to 'half'\n",
         "Interface mismatch. Expected \"IColor\" but got \"IScalar::Half\""},
        {"wrong interface of a class", Shader("root", "Lit") + ", " + half,
         R"({"Lit": {"light": "half"}})",
         "/classes/Lit/light: the input 'light' can't be connected to 'half'\n",
         "Input type mismatch. Expected \"IColor\" but got \"IScalar::Half\""},
        {"cycle",
         root("\"a\"") + Shader("a", "Tint", R"({"base": "b"})") + ", " +
             Shader("b", "Tint", R"({"base": "a"})"),
         "{}", "/shaders/3/inputs/base: the input 'base' can't be connected to 'a'\n",
         "Input cycle. \"IColor::Tint\" already depends on this input's shader"},
        {"itself", root("\"a\"") + Shader("a", "Tint", R"({"base": "a"})"), "{}",
         "/shaders/2/inputs/base: the input 'base' can't be connected to 'a'\n", "Input cycle. "},
        {"unconnected", root("\"a\"") + Shader("a", "Tint"), "{}",
         "/shaders/2: nothing is connected to the input 'base' of the shader 'a' of class 'Tint'"},
        {"disconnected", root("null") + plain, "{}",
         "/shaders/1/inputs/color: nothing is connected to the input 'color' of the shader 'root' of "
         "class 'Lit'"},
        {"empty cell",
         root("\"sum\"") + Shader("sum", "Sum", R"({"layers": ["plain", null]})") + ", " + plain,
         "{}",
         "/shaders/2/inputs/layers/1: nothing is connected to the input 'layers[1]' of the shader "
         "'sum' of class 'Sum'"},
        {"unconnected class", Shader("root", "Lit"), R"({"Lit": {"light": null}})",
         "/classes/Lit/light: nothing is connected to the static input 'light' of class 'Lit'"},
        {"unconnected class that is called", Shader("root", "UnderSky"),
         R"({"Sky": {"color": null}})",
         "/classes/Sky/color: nothing is connected to the static input 'color' of class 'Sky'"},
        {"unknown class", Shader("root", "Lit"), R"({"Skye": {"color": "root"}})",
         "/classes/Skye: there is no class 'Skye' (did you mean 'Sky'?)\n"},
        {"misspelt class", Shader("root", "Lid"), "{}",
         "/shaders/1/class: no shader of class 'Lid' can be made (did you mean 'Lit'?)\n"},
        {"unknown method", Shader("root", "Misspelt"), "{}",
         "/shaders/1/class: no shader of class 'Misspelt' can be made\n",
         "Interface \"IColor\" has no method named \"Colour\"."},
        {"list called as one",
         Shader("root", "Careless", R"({"colors": ["plain"]})") + ", " + plain, "{}",
         "/shaders/1/inputs/colors/0: ", "Calling array input \"colors\" as single value."},
    };
}

TEST(Connections, AMisspeltClassOfAnIncludedFile_IsToldWithTheOneThatIsMeant) {
    const std::string scene = WriteScene(Shader("root", "Lid"));
    WriteTemporary("nodes.klsl", "#include \"all.klsl\"\n");
    WriteTemporary("all.klsl", kLibrary);
    const Ended run = RunProgram("tolen-render", {scene, "-q", "-o", GetTemporary("out.png")});
    EXPECT_THAT(run.errors, HasSubstr("'Lid' can be made (did you mean 'Lit'?)\n"));
}

TEST(Connections, MistakesAreToldOnceWithTheirPlace) {
    for (const Mistake& mistake : MakeMistakes()) {
        SCOPED_TRACE(mistake.name);
        const std::string scene = WriteScene(mistake.shaders, mistake.classes);
        const Ended run = RunProgram("tolen-render", {scene, "-q", "-o", GetTemporary("out.png")});
        EXPECT_EQ(run.status, 1);
        EXPECT_THAT(run.errors, StartsWith(scene + ": " + mistake.message));
        EXPECT_THAT(run.errors, HasSubstr(mistake.more));
        const std::string more = mistake.more;
        if (!more.empty()) {
            EXPECT_THAT(run.errors.substr(run.errors.find(more) + more.size()), Not(HasSubstr(more)));
        }
    }
}

TEST(Connections, Set_RefusesWhatDoesNotFit) {
    const std::string scene = WriteScene(Shader("root", "Lit") + ", " + Plain("a", "[1, 1, 1]") +
                                         ", " + Shader("half", "Half"));
    struct {
        const char* value;
        const char* message;
    } const cases[] = {
        {"root.color=haf", "--set root.color: there is no shader 'haf' (did you mean 'half'?)"},
        {"root.color=half", "--set root.color: the input 'color' can't be connected to 'half'\n"},
        {"root.color=1,2", "--set root.color: expected a text, found a list"},
        {"root.color=null", "/shaders/1: nothing is connected to the input 'color'"},
        {"Lit.light=half", "--set Lit.light: the input 'light' can't be connected to 'half'\n"},
    };
    for (const auto& [value, message] : cases) {
        const Ended run = RunProgram("tolen-render", {scene, "-q", "--set", value});
        EXPECT_EQ(run.status, 1) << value;
        EXPECT_THAT(run.errors, StartsWith(scene + ": " + message));
    }
    const Ended run =
        RunProgram("tolen-render", {scene, "-q", "--animate", "root.color=a:a", "--frames", "2"});
    EXPECT_EQ(run.status, 1);
}

TEST(Connections, Graph_DrawsEdgesToTheCellsOfInputsAndDefaultsLighter) {
    const std::string scene =
        WriteScene(Shader("root", "Lit", R"({"color": "sum"})") + ", " +
                   Shader("sum", "Sum", R"({"layers": ["t", null]})") + ", " +
                   Shader("t", "Tint", R"({"base": "a"})") + ", " + Plain("a", "[1, 1, 1]"));
    const Ended run = RunProgram("klsl", {"graph", scene});
    EXPECT_EQ(run.status, 0) << run.errors;
    for (const char* part :
         {"    s2 -> s1:i_color:w;\n", "    s3 -> s2:i_layers_0:w;\n", "    s4 -> s3:i_base:w;\n",
          "port=\"i_layers_1\" align=\"left\">layers[1]<", ">not connected<",
          "    s5 [fontcolor=\"#a0a0a0\"", "    s5 -> c0:i_light:w [color=\"#a0a0a0\"];\n", "class Lit<",
          // A default with nothing to show is a word in the row of its input.
          ">gain</td><td align=\"left\"><font color=\"#a0a0a0\">Half<"}) {
        EXPECT_THAT(run.output, HasSubstr(part));
    }
    EXPECT_EQ(RunProgram("klsl", {"graph", scene, "-o", GetTemporary("c.svg")}).status, 0);
}

} // namespace
} // namespace Tolen::Tests

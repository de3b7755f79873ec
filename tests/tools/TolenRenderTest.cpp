#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace Tolen::Tests {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// A scene of one square, with parts to exchange.
struct Scene {
    std::string libraries = "[\"flat.klsl\"]";
    std::string shaders = R"([{"name": "camera", "class": "Camera"},
        {"name": "flat", "class": "Flat", "parameters": {"color": [1, 0.5, 0]}}])";
    std::string effects = R"([{"name": "camera", "kind": "renderer", "root": "camera"},
        {"name": "flat", "kind": "surface", "root": "flat"}])";
    std::string primitives = R"([{"name": "square", "shape": "plane", "size": [9, 9],
        "effect": "flat"}])";
    std::string renderer = "\"camera\"";
    std::string more;

    std::string Write() const {
        WriteTemporary("flat.klsl", R"(
class Camera {
    int GetRayCount() { return 1; }
    void Render() { spawnRay(vec3(0.0, 0.0, 5.0), vec3(0.0, 0.0, -1.0)); }
}
class Flat {
    input vec3 color = vec3(0.5);
    input float gain = 1.0;
    input int count = 1;
    input float weights[] = float[](1.0);
    static input float level = 1.0;
    coord vec2 uv;
    void Shade() { accumulate(o_color, color * gain * level * weights[0]); }
}
class Wrong { void Shade() { accumulate(o_color, nothing); } }
)");
        std::string text = "{\"libraries\": " + libraries + ", \"shaders\": " + shaders +
                           ", \"effects\": " + effects + ", \"primitives\": " + primitives +
                           ", \"renderer\": " + renderer +
                           ", \"outputs\": [{\"name\": \"o_color\", \"type\": \"vec3\","
                           " \"attachment\": 0}], \"size\": [8, 8], \"samples\": 1" +
                           more + "}";
        // Every shader of "Flat" reads its coordinates from one attribute.
        const std::string mark = "\"class\": \"Flat\"";
        for (std::size_t at = text.find(mark); at != std::string::npos;
             at = text.find(mark, at + mark.size())) {
            text.insert(at + mark.size(), ", \"coords\": {\"uv\": \"Coord\"}");
        }
        return WriteTemporary("scene.json", text);
    }
};

Ended Render(const Scene& scene, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {scene.Write(), "-o", GetTemporary("out.png"), "-q"});
    return RunProgram("tolen-render", arguments);
}

TEST(TolenRender, AScene_BecomesAPngAndAnExr) {
    const Ended png = Render({});
    EXPECT_EQ(png.status, 0) << png.errors;
    EXPECT_GT(std::filesystem::file_size(GetTemporary("out.png")), 60u);
    const Ended exr =
        RunProgram("tolen-render", {Scene().Write(), "-o", GetTemporary("out.exr"), "-q"});
    EXPECT_EQ(exr.status, 0) << exr.errors;
    EXPECT_GT(std::filesystem::file_size(GetTemporary("out.exr")), 60u);
}

TEST(TolenRender, TheSameScene_GivesTheSameFileForAnyNumberOfThreads) {
    const auto render = [](const char* threads) {
        EXPECT_EQ(Render({}, {"--threads", threads}).status, 0);
        std::ifstream file(GetTemporary("out.png"), std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    EXPECT_EQ(render("1"), render("2"));
}

struct BadScene {
    const char* name;
    Scene scene;
    const char* message; ///< behind the file's name
};

Scene With(std::string Scene::*part, const std::string& text) {
    Scene scene;
    scene.*part = text;
    return scene;
}

TEST(TolenRender, BadScenes_AreToldWithTheirPlace) {
    const BadScene cases[] = {
        {"unknown parameter",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"}, {"name": "flat",
             "class": "Flat", "parameters": {"colour": [1, 1, 1]}}])"),
         "/shaders/1/parameters/colour: class 'Flat' has no input 'colour' (did you mean 'color'?)"},
        {"wrong count",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"}, {"name": "flat",
             "class": "Flat", "parameters": {"color": [1, 1]}}])"),
         "/shaders/1/parameters/color: expected 3 numbers, found 2"},
        {"wrong kind",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"}, {"name": "flat",
             "class": "Flat", "parameters": {"gain": "much"}}])"),
         "/shaders/1/parameters/gain: expected a list, found a text"},
        {"fraction for an int",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"}, {"name": "flat",
             "class": "Flat", "parameters": {"count": 1.5}}])"),
         "/shaders/1/parameters/count: expected a whole number"},
        {"unknown class",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Cam"}])"),
         "/shaders/0/class: no shader of class 'Cam' can be made"},
        {"taken name",
         With(&Scene::shaders, R"([{"name": "a", "class": "Flat"}, {"name": "a", "class": "Flat"}])"),
         "/shaders/1/name: the name 'a' is taken"},
        {"unknown library", With(&Scene::libraries, R"(["none.klsl"])"),
         "/libraries/0: the library 'none.klsl' can't be loaded"},
        {"unknown root",
         With(&Scene::effects, R"([{"name": "camera", "kind": "renderer", "root": "camra"}])"),
         "/effects/0/root: there is no shader 'camra' (did you mean 'camera'?)"},
        {"unknown kind",
         With(&Scene::effects, R"([{"name": "camera", "kind": "surfce", "root": "camera"}])"),
         "/effects/0/kind: 'surfce' is none of surface, renderer, prefix (did you mean 'surface'?)"},
        {"root without its entry",
         With(&Scene::effects, R"([{"name": "camera", "kind": "renderer", "root": "flat"}])"),
         "/effects/0/root: class 'Flat' has no method 'Render', which the effect would run"},
        {"unknown effect", With(&Scene::renderer, "\"flt\""),
         "/renderer: there is no effect 'flt' (did you mean 'flat'?)"},
        {"wrong role", With(&Scene::renderer, "\"flat\""),
         "/renderer: 'flat' is no renderer effect"},
        {"unknown key", With(&Scene::more, ", \"sise\": [1, 1]"),
         "/sise: unknown key (did you mean 'size'?)"},
        {"size of nothing",
         With(&Scene::primitives, R"([{"name": "a", "shape": "sphere", "radius": 0,
             "effect": "flat"}])"),
         "/primitives/0/radius: expected numbers above 0"},
        {"no inverse",
         With(&Scene::primitives, R"([{"name": "a", "shape": "box", "effect": "flat",
             "transform": [{"scale": [1, 0, 1]}]}])"),
         "/primitives/0/transform/0/scale: expected one or three numbers other than 0"},
        {"missing mesh",
         With(&Scene::primitives, R"([{"name": "a", "shape": "mesh", "file": "none.obj",
             "effect": "flat"}])"),
         "/primitives/0/file: none.obj: "},
        {"wrong local",
         With(&Scene::primitives, R"([{"name": "a", "shape": "box", "effect": "flat",
             "local": {"weights": 1}}])"),
         "/primitives/0/local/weights: the shader 'flat' of this effect has no single value input"},
        {"unknown texture",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"}, {"name": "flat",
             "class": "Flat", "textures": {"color": "wood"}}])"),
         "/shaders/1/textures/color: there is no texture 'wood'"},
        {"a compiler's error",
         With(&Scene::shaders, R"([{"name": "camera", "class": "Camera"},
             {"name": "flat", "class": "Wrong"}])"),
         "/effects/1: the effect 'flat' can't be compiled\nflat.klsl:15: error: "},
        {"wrong class value", With(&Scene::more, R"(, "classes": {"Flat": {"levl": 1}})"),
         "/classes/Flat/levl: class 'Flat' has no static input 'levl' (did you mean 'level'?)"},
    };
    for (const BadScene& bad : cases) {
        SCOPED_TRACE(bad.name);
        const Ended ended = Render(bad.scene);
        EXPECT_EQ(ended.status, 1);
        EXPECT_THAT(ended.errors, StartsWith(GetTemporary("scene.json") + ": " + bad.message));
    }
}

TEST(TolenRender, TextThatIsNoJson_IsToldWithLineAndColumn) {
    const std::string file = WriteTemporary("broken.json", "{\n  \"size\": [1,\n}\n");
    const Ended ended = RunProgram("tolen-render", {file});
    EXPECT_EQ(ended.status, 1);
    EXPECT_THAT(ended.errors, StartsWith(file + ": no JSON at line 3, column 1"));
    EXPECT_EQ(RunProgram("tolen-render", {GetTemporary("none.json")}).status, 1);
}

TEST(TolenRender, ScenesWithAPartCutOff_NeverCrash) {
    std::ifstream stream(Scene().Write());
    const std::string whole(std::istreambuf_iterator<char>(stream), {});
    for (std::size_t length = 0; length < whole.size(); length += 61) {
        const std::string file = WriteTemporary("cut.json", whole.substr(0, length));
        EXPECT_EQ(RunProgram("tolen-render", {file, "-q"}).status, 1) << length;
    }
}

TEST(TolenRender, Misuse_EndsWithStatus2) {
    EXPECT_EQ(RunProgram("tolen-render", {}).status, 2);
    EXPECT_EQ(Render({}, {"--size", "8by8"}).status, 2);
    EXPECT_EQ(Render({}, {"--frames", "3"}).status, 2);
    EXPECT_EQ(Render({}, {"--set", "flat.gain"}).status, 2);
    EXPECT_EQ(RunProgram("tolen-render", {"--help"}).status, 0);
}

TEST(TolenRender, Set_ChangesAValueAndRefusesWhatDoesNotFit) {
    EXPECT_EQ(Render({}, {"--set", "flat.gain=2", "--set", "flat.color=1,0,0"}).status, 0);
    EXPECT_EQ(Render({}, {"--set", "Flat.level=2"}).status, 0);
    EXPECT_THAT(Render({}, {"--set", "flat.gian=2"}).errors,
                HasSubstr("--set flat.gian: class 'Flat' has no input 'gian' (did you mean 'gain'?)"));
    EXPECT_THAT(Render({}, {"--set", "flt.gain=2"}).errors,
                HasSubstr("there is no shader 'flt' (did you mean 'flat'?)"));
}

TEST(TolenRender, Renderer_TakesAnotherRendererEffect) {
    EXPECT_EQ(Render({}, {"--renderer", "camera"}).status, 0);
    for (const char* name : {"caamera", "camra"}) {
        const Ended ended = Render({}, {"--renderer", name});
        EXPECT_EQ(ended.status, 1);
        EXPECT_THAT(ended.errors, HasSubstr(std::string("--renderer: there is no renderer effect '") +
                                            name + "' (did you mean 'camera'?)"));
    }
}

TEST(TolenRender, LibrariesThatComeAlong_AreFoundByTheirNames) {
    const Ended ended = Render(With(&Scene::libraries, R"(["sampling.klsl", "flat.klsl"])"));
    EXPECT_EQ(ended.status, 0) << ended.errors;
}

TEST(TolenRender, Animate_RendersPicturesWithOneCompileAndAValueUpdateForEach) {
    const Ended ended = Render({}, {"--animate", "flat.gain=0:1", "--frames", "4"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    for (const char* name : {"out.0001.png", "out.0002.png", "out.0003.png", "out.0004.png"}) {
        EXPECT_TRUE(std::filesystem::exists(GetTemporary(name))) << name;
    }
    EXPECT_THAT(ended.output, HasSubstr("flat                              1              4"));
    EXPECT_THAT(ended.output, HasSubstr("camera                            1              0"));
}

TEST(TolenRender, PrintPrograms_ShowsEveryText) {
    const Ended ended = Render({}, {"--print-programs"});
    EXPECT_EQ(ended.status, 0);
    for (const char* part : {"// ==== renderer effect camera\n// ---- root\n",
                             "// ==== surface effect flat\n// ---- root\n", "// ---- graph\n",
                             "// ---- vertex\n", "void setup()", "void main()"}) {
        EXPECT_THAT(ended.output, HasSubstr(part));
    }
}

TEST(TolenRender, TimeReport_TellsWhereTheTimeWent) {
    const Ended ended = Render({}, {"--time-report"});
    EXPECT_EQ(ended.status, 0);
    for (const char* part : {"time report", "compile and apply", "Graph::_Compile", "rays"}) {
        EXPECT_THAT(ended.output, HasSubstr(part));
    }
}

/// What the demo gives to the program for a picture, but for its size and its samples.
std::vector<std::string> GetGalleryArguments(std::filesystem::path entry) {
    const std::filesystem::path folder = entry.parent_path();
    std::vector<std::string> arguments;
    if (std::filesystem::exists(entry.replace_extension(".json"))) {
        arguments.push_back(entry);
    }
    std::ifstream options(entry.replace_extension(".options"));
    for (std::string word; options >> word;) {
        if (word == "--size" || word == "--samples") {
            options >> word;
        } else {
            arguments.push_back(arguments.empty() ? (folder / word).string() : word);
        }
    }
    return arguments;
}

TEST(TolenRender, EveryGalleryPicture_Renders) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(SourceFolder() + "/examples/gallery")) {
        if (!entry.is_regular_file()) {
            continue;
        }
        std::vector<std::string> arguments = GetGalleryArguments(entry.path());
        const char* const more[] = {"--size", "24x16", "--samples", "2", "-q", "-o"};
        arguments.insert(arguments.end(), std::begin(more), std::end(more));
        arguments.push_back(GetTemporary("out.png"));
        const Ended ended = RunProgram("tolen-render", arguments);
        EXPECT_EQ(ended.status, 0) << entry.path() << ended.errors;
        ++count;
    }
    EXPECT_GE(count, 9);
}

} // namespace
} // namespace Tolen::Tests

// What klsl makes of whole scenes: the texts of their programs, and drawings of their graphs.

#include "tools/Process.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace Tolen::Tests {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

/// A scene with a camera and one more shader, @p shader, which is the root of a surface effect.
std::string WriteScene(const std::string& shader) {
    WriteTemporary("drawn.klsl", R"(
class Camera {
    int GetRayCount() { return 1; }
    void Render() { spawnRay(vec3(0.0, 0.0, 5.0), vec3(0.0, 0.0, -1.0)); }
}
class Flat {
    input vec3 color = vec3(0.5);
    input float weights[] = float[](1.0, 2.0);
    static input float level = 1.0;
    coord vec2 uv;
    void Shade() { accumulate(o_color, color * level * weights[0]); }
}
class Wrong { void Shade() { accumulate(o_color, nothing); } }
)");
    return WriteTemporary("drawn.json", R"({"libraries": ["drawn.klsl"],
"outputs": [{"name": "o_color", "type": "vec3", "attachment": 0}],
"shaders": [{"name": "camera", "class": "Camera"}, )" + shader + R"(],
"effects": [{"name": "eye", "kind": "renderer", "root": "camera"},
    {"name": "paint", "kind": "surface", "root": "paint"}],
"renderer": "eye"})");
}

std::string WriteGoodScene() {
    return WriteScene(R"({"name": "paint", "class": "Flat", "coords": {"uv": "Coord"}})");
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

TEST(KlslScene, Print_ShowsTheProgramsOfAllEffectsUnderHeadings) {
    const Ended run = RunProgram("klsl", {"print", WriteGoodScene()});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("// ==== renderer effect eye\n// ---- root\n"));
    EXPECT_THAT(run.output, AllOf(HasSubstr("// ==== surface effect paint\n// ---- root\n"),
                                  HasSubstr("// ---- graph\n"), HasSubstr("// ---- vertex\n"),
                                  HasSubstr("spawnRay("), HasSubstr("varying vec3 Normal;")));
}

TEST(KlslScene, Print_OfAnEffectThatIsRefused_ShowsItsTextAndThePlace) {
    const std::string file = WriteScene(R"({"name": "paint", "class": "Wrong"})");
    const Ended run = RunProgram("klsl", {"print", file});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.output, HasSubstr("accumulate(__outputAttachmentIndex_o_color, nothing)"));
    EXPECT_THAT(run.errors, StartsWith(file + ": /effects/1: the effect 'paint' can't be compiled\n"
                                              "drawn.klsl:13: error: "));
}

TEST(KlslScene, Print_WantsEitherASceneOrAClassWithItsEffect) {
    EXPECT_EQ(RunProgram("klsl", {"print", "a.klsl"}).status, 2);
    EXPECT_EQ(RunProgram("klsl", {"print", "a.json", "b.json"}).status, 2);
    EXPECT_EQ(RunProgram("klsl", {"print", "a.klsl", "--class", "A"}).status, 2);
    EXPECT_EQ(RunProgram("klsl", {"print", "a.json", "--effect", "surface"}).status, 2);
    EXPECT_EQ(RunProgram("klsl", {"print", GetTemporary("none.json")}).status, 1);
}

TEST(KlslScene, Graph_ShowsShadersWithTheirValuesAndEffects) {
    const Ended run = RunProgram("klsl", {"graph", WriteGoodScene()});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, StartsWith("digraph scene {\n"));
    for (const char* part :
         {"<b>camera</b>: Camera<", "<b>paint</b>: Flat<", "class Flat<",
          ">color</td><td align=\"left\">(0.5, 0.5, 0.5)<", ">weights</td><td align=\"left\">[1, 2]<",
          ">level</td><td align=\"left\">1<", ">uv</td><td align=\"left\">a_Coord<",
          "<b>eye</b>: renderer effect<", "<b>paint</b>: surface effect<", "    s0 -> e0 [",
          "    s1 -> e1 [", "    c0 -> s1 ["}) {
        EXPECT_THAT(run.output, HasSubstr(part));
    }
}

TEST(KlslScene, Graph_NeedsNoProgramThatCompiles) {
    const std::string file = WriteScene(R"({"name": "paint", "class": "Wrong"})");
    EXPECT_EQ(RunProgram("klsl", {"graph", file}).status, 0);
}

TEST(KlslScene, Graph_EscapesNames) {
    const std::string file = WriteScene(
        R"({"name": "paint", "class": "Flat"}, {"name": "<a & \"b\">\n", "class": "Flat"})");
    const Ended run = RunProgram("klsl", {"graph", file});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("<b>&lt;a &amp; &quot;b&quot;&gt; </b>: Flat<"));
}

TEST(KlslScene, Graph_IsDrawnByTheEndingOfTheFile) {
    const std::string scene = WriteGoodScene();
    struct {
        const char* name;
        const char* start;
    } const cases[] = {{"g.dot", "digraph scene {"}, {"g.svg", "<?xml"}, {"g.png", "\x89PNG"}};
    for (const auto& [name, start] : cases) {
        const Ended run = RunProgram("klsl", {"graph", scene, "-o", GetTemporary(name)});
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_THAT(ReadFile(GetTemporary(name)), StartsWith(start));
    }
    EXPECT_THAT(ReadFile(GetTemporary("g.svg")), HasSubstr("surface effect"));
    EXPECT_EQ(RunProgram("klsl", {"graph", scene, "-o", "g.gif"}).status, 2);
    EXPECT_EQ(RunProgram("klsl", {"graph", scene, "-o", "/none/g.dot"}).status, 1);
    EXPECT_EQ(RunProgram("klsl", {"graph", scene, "-o", "/none/g.svg"}).status, 1);
}

TEST(KlslScene, Graph_WithoutGraphviz_SaysWhatIsMissing) {
    const std::string scene = WriteGoodScene();
    const std::string before = std::getenv("PATH");
    setenv("PATH", "/none", 1);
    const Ended svg = RunProgram("klsl", {"graph", scene, "-o", GetTemporary("none.svg")});
    const Ended dot = RunProgram("klsl", {"graph", scene, "-o", GetTemporary("none.dot")});
    setenv("PATH", before.c_str(), 1);
    EXPECT_EQ(svg.status, 1);
    EXPECT_THAT(svg.errors, HasSubstr("none.svg: needs the program 'dot' of Graphviz"));
    EXPECT_EQ(dot.status, 0);
}

TEST(KlslScene, EveryGalleryScene_IsPrintedAndDrawn) {
    int count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(SourceFolder() + "/examples/gallery")) {
        if (entry.path().extension() != ".json") {
            continue;
        }
        EXPECT_EQ(RunProgram("klsl", {"print", entry.path()}).status, 0) << entry.path();
        // Graphviz takes minutes for thousands of tables, so that large ones stay texts.
        const char* const file = entry.file_size() > 40000 ? "g.dot" : "g.svg";
        EXPECT_EQ(RunProgram("klsl", {"graph", entry.path(), "-o", GetTemporary(file)}).status, 0)
            << entry.path();
        ++count;
    }
    EXPECT_GE(count, 5);
}

} // namespace
} // namespace Tolen::Tests

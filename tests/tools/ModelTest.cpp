// glTF 2.0 and OBJ files in the place of scenes.

#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kModels = "/usr/share/assimp/models/";

Ended Render(const std::string& model, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {model, "-q", "--size", "12x8", "--samples", "1", "-o",
                                         GetTemporary("model.png")});
    return RunProgram("tolen-render", arguments);
}

std::string Picture(const std::string& model, const std::vector<std::string>& arguments = {}) {
    const Ended run = Render(model, arguments);
    EXPECT_EQ(run.status, 0) << run.errors;
    std::ifstream file(GetTemporary("model.png"), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string Graph(const std::string& model) {
    const Ended run = RunProgram("klsl", {"graph", model});
    EXPECT_EQ(run.status, 0) << run.errors;
    return run.output;
}

TEST(Model, Models_RenderAtOnce) {
    for (const char* model : {"glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb",
                              "glTF2/BoxTextured-glTF/BoxTextured.gltf",
                              "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
                              "glTF2/BoxTextured-glTF-pbrSpecularGlossiness/BoxTextured.gltf",
                              "glTF2/ClearCoat-glTF/ClearCoatTest.gltf",
                              "glTF2/textureTransform/TextureTransformTest.gltf",
                              "glTF2/simple_skin/simple_skin.gltf", "glTF2/cameras/Cameras.gltf",
                              "OBJ/WusonOBJ.obj", "OBJ/spider.obj", "OBJ/concave_polygon.obj",
                              "OBJ/cube_with_vertexcolors.obj",
                              "OBJ/box_mat_with_spaces.obj"}) {
        const Ended run = Render(kModels + model);
        EXPECT_EQ(run.status, 0) << model << run.errors;
    }
}

TEST(Model, BrokenModels_AreRefusedOrShownAsFarAsTheyGo) {
    struct {
        const char* model;
        const char* message; ///< behind the file's name; null when it renders
    } const cases[] = {
        {"glTF2/MissingBin/BoxTextured.gltf", "GLTF: could not open referenced file"},
        {"glTF2/RecursiveNodes/RecursiveNodes.gltf", "GLTF: Object at index 0"},
        {"glTF2/TestNoRootNode/SceneWithoutNodes.gltf", "holds no triangles"},
        {"glTF2/wrongTypes/badArray.gltf", "Member \"primitives\" was not of type"},
        {"glTF2/glTF-Asset-Generator/Mesh_PrimitiveMode/Mesh_PrimitiveMode_00.gltf",
         "holds no triangles"},
        {"OBJ/point_cloud.obj", "holds no triangles"},
        {"OBJ/none.obj", "Unable to open file"},
        {"glTF2/BoxBadNormals-glTF-Binary/BoxBadNormals.glb", nullptr},
        {"glTF2/BoxWithInfinites-glTF-Binary/BoxWithInfinites.glb", nullptr},
        {"glTF2/IndexOutOfRange/IndexOutOfRange.gltf", nullptr},
        {"glTF2/IncorrectVertexArrays/Cube.gltf", nullptr},
    };
    for (const auto& [model, message] : cases) {
        const Ended run = Render(kModels + model);
        EXPECT_EQ(run.status, message == nullptr ? 0 : 1) << model << run.errors;
        EXPECT_THAT(run.errors, Not(HasSubstr("NaN")));
        if (message != nullptr) {
            EXPECT_THAT(run.errors, StartsWith(kModels + model + ": " + message));
        }
    }
}

TEST(Model, EmbeddedTextures_LookLikeThoseInFiles) {
    // The same model, but for how its image is repeated.
    const std::filesystem::path folder = kModels + "glTF2/BoxTextured-glTF";
    std::ifstream stream(folder / "BoxTextured.gltf");
    std::string text(std::istreambuf_iterator<char>(stream), {});
    for (const char* wrap : {"33648", "33071"}) {
        const std::size_t at = text.find(wrap);
        ASSERT_NE(at, std::string::npos);
        text.replace(at, 5, "10497");
    }
    for (const char* part : {"BoxTextured0.bin", "CesiumLogoFlat.png"}) {
        std::filesystem::copy_file(folder / part, GetTemporary(part),
                                   std::filesystem::copy_options::overwrite_existing);
    }
    const std::string inFile = Picture(WriteTemporary("box.gltf", text));
    EXPECT_EQ(Picture(kModels + "glTF2/BoxTextured-glTF-Embedded/BoxTextured.gltf"), inFile);
    EXPECT_EQ(Picture(kModels + "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb"), inFile);
}

TEST(Model, Materials_BecomeConnectedPrincipledShaders) {
    const std::string graph = Graph(kModels + "glTF2/BoxTextured-glTF/BoxTextured.gltf");
    for (const char* part :
         {"<b>Texture</b>: PrincipledMaterial<", "<b>Texture.baseColor</b>: ImageColor<",
          "<b>Texture.roughness</b>: ScalarConstant<", "<b>coordinates</b>: UvCoordinates<",
          "<b>light</b>: PathTracer<", "<b>sky</b>: GradientSky<", "<b>camera</b>: PinholeCamera<",
          ":i_baseColor:w;", ":i_mapping:w;", ":i_integrator:w;"}) {
        EXPECT_THAT(graph, HasSubstr(part));
    }
    const std::string coated = Graph(kModels + "glTF2/ClearCoat-glTF/ClearCoatTest.gltf");
    for (const char* part : {": NormalMap<", ":i_bump:w;", ":i_clearcoat:w;",
                             "<b>Partial_Coated.clearcoat</b>: ImageScalar<",
                             "<b>RoughVariations_Coated.clearcoatRoughness</b>: ImageScalar<"}) {
        EXPECT_THAT(coated, HasSubstr(part));
    }
}

TEST(Model, TheCamerasOfAModel_AreUsed) {
    const std::string graph = Graph(kModels + "glTF2/cameras/Cameras.gltf");
    EXPECT_THAT(graph, HasSubstr(">fieldOfView</td><td align=\"left\">40.1"));
    EXPECT_THAT(graph, HasSubstr(">position</td><td align=\"left\">(0.5, 0.5, 3)<"));
    EXPECT_THAT(graph, Not(HasSubstr("<b>camera</b>")));
}

TEST(Model, Set_ReachesTheShadersOfAModel) {
    const std::string model = kModels + "OBJ/box.obj";
    EXPECT_NE(Picture(model, {"--set", "Default.baseColor.value=1,0,0"}), Picture(model));
    EXPECT_THAT(Render(model, {"--set", "Defalt.ior=1"}).errors,
                HasSubstr("there is no shader 'Defalt' (did you mean 'Default'?)"));
    EXPECT_EQ(RunProgram("klsl", {"print", model}).status, 0);
}

/// A square of two triangles that faces +z, wrapped in a material.
std::string WriteSquare(const std::string& material, const std::string& node = "") {
    // Positions, then indices as bytes.
    const char* const kBuffer = "data:application/octet-stream;base64,"
                                "AACAvwAAgL8AAAAAAACAPwAAgL8AAAAAAACAPwAAgD8AAAAAAACAvwAAgD8AAAAA"
                                "AAECAAID";
    return WriteTemporary("square.gltf", R"({"asset": {"version": "2.0"}, "scene": 0,
"scenes": [{"nodes": [0]}], "nodes": [{"mesh": 0)" + node + R"(}],
"meshes": [{"primitives": [{"attributes": {"POSITION": 0}, "indices": 1, "material": 0}]}],
"materials": [)" + material + R"(],
"buffers": [{"byteLength": 54, "uri": ")" + kBuffer + R"("}],
"bufferViews": [{"buffer": 0, "byteLength": 48}, {"buffer": 0, "byteOffset": 48, "byteLength": 6}],
"accessors": [
  {"bufferView": 0, "componentType": 5126, "count": 4, "type": "VEC3", "min": [-1, -1, 0],
   "max": [1, 1, 0]},
  {"bufferView": 1, "componentType": 5121, "count": 6, "type": "SCALAR"}]})");
}

TEST(Model, AlphaModes_BecomeOpacity) {
    const auto graph = [](const std::string& mode) {
        return Graph(WriteSquare(R"({"name": "m", "pbrMetallicRoughness": {"baseColorFactor":
            [1, 1, 1, 0.25]}, "alphaMode": ")" + mode + R"(", "alphaCutoff": 0.75})"));
    };
    EXPECT_THAT(graph("OPAQUE"), Not(HasSubstr("m.opacity")));
    EXPECT_THAT(graph("BLEND"), HasSubstr("<b>m.opacity</b>: ScalarConstant<"));
    EXPECT_THAT(graph("BLEND"), HasSubstr(">cutoff</td><td align=\"left\">0<"));
    EXPECT_THAT(graph("MASK"), HasSubstr(">cutoff</td><td align=\"left\">0.75<"));
}

TEST(Model, ATextureThatIsMissing_IsLeftOutWithAWarning) {
    WriteTemporary("bare.mtl", "newmtl paint\nKd 1 0 0\nmap_Kd none.png\n");
    const std::string model = WriteTemporary(
        "bare.obj", "mtllib bare.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0 0\nusemtl paint\n"
                    "f 1/1 2/1 3/1\n");
    const Ended run = Render(model);
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, StartsWith(model + ": warning: a texture is left out: "));
    EXPECT_THAT(run.errors, HasSubstr("none.png: can't be read"));
}

TEST(Model, ANodeWithoutAnInverse_IsLeftOut) {
    const Ended run = Render(WriteSquare(R"({"name": "m"})", R"(, "scale": [0, 0, 0])"));
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.errors, HasSubstr("holds no triangles"));
}

TEST(Model, FilesWithAPartCutOff_NeverCrash) {
    std::ifstream stream(kModels + "glTF2/BoxTextured-glTF-Binary/BoxTextured.glb",
                         std::ios::binary);
    const std::string whole(std::istreambuf_iterator<char>(stream), {});
    ASSERT_GT(whole.size(), 1000u);
    for (std::size_t length = 0; length < whole.size(); length += whole.size() / 9) {
        const Ended run = Render(WriteTemporary("cut.glb", whole.substr(0, length)));
        EXPECT_TRUE(run.status == 0 || run.status == 1) << length << run.errors;
    }
}

TEST(Model, EveryFileOfTheCollectionRendersOrIsRefusedInOneLine) {
    constexpr std::uintmax_t kLargest = 400 * 1024; // the larger ones differ by their size alone
    int rendered = 0;
    for (const char* folder : {"glTF2", "OBJ", "invalid"}) {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(kModels + folder)) {
            const std::string file = entry.path().string();
            const std::string ending = entry.path().extension().string();
            if ((ending != ".gltf" && ending != ".glb" && ending != ".obj") ||
                entry.file_size() > kLargest) {
                continue;
            }
            SCOPED_TRACE(file);
            const Ended run = Render(file);
            EXPECT_TRUE(run.status == 0 || run.status == 1) << run.errors;
            if (run.status == 1) {
                EXPECT_THAT(run.errors, StartsWith(file + ": "));
                EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), 1) << run.errors;
            } else {
                ++rendered;
            }
        }
    }
    EXPECT_GT(rendered, 30);
}

} // namespace
} // namespace Tolen::Tests

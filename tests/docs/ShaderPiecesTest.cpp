// What docs/shaders.md shows of scenes: pieces that are put into a scene of the gallery, which
// renders.

#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <filesystem>
#include <string>

namespace Tolen::Tests {
namespace {

using nlohmann::json;

constexpr const char* kDocument = "docs/shaders.md";
constexpr const char* kScene = "/examples/gallery/06-patina.json";

/// A piece is a list of shaders, or members of a scene.
json _ReadPiece(const std::string& text) {
    return text.front() == '{' ? json{{"shaders", json::parse("[" + text + "]")}}
                               : json::parse("{" + text + "}");
}

/// The scene, small, with all pieces in it, and with something that each of them is used by.
json _MakeScene() {
    json scene = json::parse(ReadText(SourceFolder() + kScene), nullptr, true, true);
    for (json& library : scene["libraries"]) {
        library = std::filesystem::path(library.get<std::string>()).filename();
    }
    scene["libraries"].push_back("images.klsl");
    for (const CodeBlock& block : ReadCodeBlocks(kDocument)) {
        if (block.language != "json") {
            continue;
        }
        const json piece = _ReadPiece(block.text);
        for (const auto& [key, values] : piece.items()) {
            for (const json& value : values) {
                json& list = scene[key];
                // The scene has ray attributes of its own.
                if (std::find(list.begin(), list.end(), value) == list.end()) {
                    list.push_back(value);
                }
            }
        }
    }
    scene["shaders"].push_back({{"name", "hall sky"},
                                {"class", "LatLongEnvironment"},
                                {"textures", {{"image", "hall"}, {"importance", "hall lights"}}}});
    scene["effects"].push_back({{"name", "board"}, {"kind", "surface"}, {"root", "board"}});
    scene["primitives"].push_back({{"name", "board"}, {"shape", "plane"}, {"effect", "board"}});
    scene["size"] = {8, 6};
    scene["samples"] = 1;
    return scene;
}

TEST(ShadersDocument, ShowsPiecesOfAScene_ThatRenders) {
    const std::filesystem::path folder = GetTemporary("pieces");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    const Ended image =
        RunProgram("ies2image", {SourceFolder() + "/examples/gallery/textures/lamp.ies", "-o",
                                 (folder / "hall.exr").string()});
    ASSERT_EQ(image.status, 0) << image.errors;
    const std::string scene = WriteTemporary("pieces/scene.json", _MakeScene().dump(2));
    const Ended run = RunProgram("tolen-render", {scene, "-I", SourceFolder() + "/shaders", "-o",
                                                  (folder / "out.png").string(), "--quiet"});
    EXPECT_EQ(run.status, 0) << run.errors;
    EXPECT_TRUE(std::filesystem::exists(folder / "out.png"));
}

} // namespace
} // namespace Tolen::Tests

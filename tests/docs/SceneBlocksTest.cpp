// What docs/scenes.md shows of scenes and of tolen-render, tried out.
//
// The document's first JSON block is a whole scene. Every other one is a piece: its lists are added
// to the scene's and its other members take the place of the scene's. Each then renders, small. A
// piece that is marked "wrong" fails with the lines of the text block that follows.

#include "Markdown.h"

#include "support/paths/SourceFolder.h"
#include "tools/Process.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>

namespace Tolen::Tests {
namespace {

using nlohmann::json;
using testing::HasSubstr;

constexpr const char* kDocument = "docs/scenes.md";

struct ScenePiece {
    CodeBlock block;
    std::string messages; ///< the text block behind it
};

void PrintTo(const ScenePiece& piece, std::ostream* stream) {
    *stream << piece.block.GetPlace();
}

std::vector<ScenePiece> _ReadPieces() {
    std::vector<ScenePiece> pieces;
    const std::vector<CodeBlock> blocks = ReadCodeBlocks(kDocument);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        if (blocks[i].language == "json") {
            const bool hasText = i + 1 < blocks.size() && blocks[i + 1].language == "text";
            pieces.push_back({blocks[i], hasText ? blocks[i + 1].text : ""});
        }
    }
    return pieces;
}

json _Merge(json scene, const json& piece) {
    for (const auto& [key, value] : piece.items()) {
        if (value.is_array() && scene.contains(key) && key != "size") {
            scene[key].insert(scene[key].end(), value.begin(), value.end());
        } else {
            scene[key] = value;
        }
    }
    return scene;
}

/// Makes a scene and what scenes of the document refer to, and renders it with the working folder
/// beside it.
Ended _Render(const std::string& scene, const std::vector<std::string>& options) {
    const std::filesystem::path folder = GetTemporary("scenes");
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    std::filesystem::copy(SourceFolder() + "/examples/gallery/textures", folder / "textures");
    WriteTemporary("scenes/tetrahedron.obj",
                   "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n");
    WriteTemporary("scenes/scene.json", scene);

    std::vector<std::string> arguments = {"scene.json", "-I", SourceFolder() + "/shaders", "--quiet"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder);
    const Ended run = RunProgram("tolen-render", arguments);
    std::filesystem::current_path(before);
    return run;
}

bool _HasRendered() { return std::filesystem::exists(GetTemporary("scenes/out.png")); }

/// The document's scene with the other members of @p piece, as a small picture.
std::string _MakeScene(const CodeBlock& piece) {
    const json scene = json::parse(_ReadPieces().at(0).block.text, nullptr, true, true);
    const json added = json::parse(piece.text, nullptr, true, true);
    json merged = piece.HasMark("scene") ? scene : _Merge(scene, added);
    merged["size"] = {8, 6};
    merged["samples"] = 1;
    return merged.dump(2);
}

class SceneBlocks : public testing::TestWithParam<ScenePiece> {};

TEST_P(SceneBlocks, DoWhatTheDocumentSays) {
    const ScenePiece& piece = GetParam();
    SCOPED_TRACE(piece.block.GetPlace());
    const Ended run = _Render(_MakeScene(piece.block), {});
    if (!piece.block.HasMark("wrong")) {
        EXPECT_EQ(run.status, 0) << run.errors;
        EXPECT_TRUE(_HasRendered());
        return;
    }
    EXPECT_EQ(run.status, 1);
    ASSERT_FALSE(piece.messages.empty()) << "no text block with the messages follows";
    std::istringstream lines(piece.messages);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(run.errors, HasSubstr(line));
    }
}

INSTANTIATE_TEST_SUITE_P(Document, SceneBlocks, testing::ValuesIn(_ReadPieces()),
                         [](const auto& test) { return NameOf(test.param.block); });

TEST(SceneDocument, StartsWithAWholeScene) {
    ASSERT_FALSE(_ReadPieces().empty());
    EXPECT_TRUE(_ReadPieces()[0].block.HasMark("scene"));
}

TEST(SceneDocument, ShowsCommandsThatDoWhatItSays) {
    int count = 0;
    const std::vector<CodeBlock> blocks = ReadCodeBlocks(kDocument);
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        std::istringstream lines(blocks[i].text);
        for (std::string line; blocks[i].language == "sh" && std::getline(lines, line); ++count) {
            SCOPED_TRACE(line);
            std::istringstream words(line);
            std::string program;
            std::string scene;
            words >> program >> scene;
            ASSERT_EQ(program + " " + scene, "tolen-render scene.json");
            const std::vector<std::string> options{std::istream_iterator<std::string>(words), {}};
            const Ended run = _Render(_MakeScene(_ReadPieces().at(0).block), options);
            if (blocks[i].HasMark("wrong")) {
                EXPECT_EQ(run.status, 1);
                EXPECT_THAT(run.errors, HasSubstr(blocks.at(i + 1).text));
            } else {
                EXPECT_EQ(run.status, 0) << run.errors;
            }
        }
    }
    EXPECT_GT(count, 4);
}

TEST(SceneDocument, ListsTheOptionsThatTheProgramHas) {
    const Ended run = RunProgram("tolen-render", {"--help"});
    ASSERT_EQ(run.status, 0);
    const auto find = [](const std::string& text) {
        const std::regex option("--[a-z][a-z-]+");
        return std::set<std::string>(std::sregex_token_iterator(text.begin(), text.end(), option),
                                     std::sregex_token_iterator());
    };
    EXPECT_EQ(find(ReadText(SourceFolder() + "/" + kDocument)), find(run.output));
}

TEST(SceneDocument, NamesEveryKeyThatTheGalleryUses) {
    const std::string document = ReadText(SourceFolder() + "/" + kDocument);
    int scenes = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(SourceFolder() + "/examples/gallery")) {
        if (entry.path().extension() != ".json") {
            continue;
        }
        ++scenes;
        const json scene = json::parse(ReadText(entry.path().string()), nullptr, true, true);
        for (const auto& [key, value] : scene.items()) {
            EXPECT_THAT(document, HasSubstr("`" + key + "`"));
        }
        for (const json& primitive : scene["primitives"]) {
            for (const auto& [key, value] : primitive.items()) {
                EXPECT_THAT(document, HasSubstr("`" + key + "`"));
            }
        }
    }
    EXPECT_GT(scenes, 0);
}

} // namespace
} // namespace Tolen::Tests

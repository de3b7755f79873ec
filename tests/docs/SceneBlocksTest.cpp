// What docs/scenes.md shows of scenes and of tolen-render, tried out.
//
// The document's first JSON block is a whole scene. Every other one is a piece: its lists are added
// to the scene's and its other members take the place of the scene's. Each then renders, small. A
// piece that is marked "wrong" fails with the lines of the text block that follows.

#include "Markdown.h"
#include "RunProgram.h"

#include "support/paths/SourceFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>
#include <sstream>
#include <unistd.h>

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

/// A folder with a scene and what scenes of the document refer to.
class SceneFolder {
public:
    explicit SceneFolder(const std::string& scene)
        : _path(std::filesystem::temp_directory_path() /
                ("tolen-docs-" + std::to_string(getpid()))) {
        std::filesystem::remove_all(_path);
        std::filesystem::create_directories(_path);
        std::filesystem::copy(SourceFolder() + "/examples/gallery/textures", _path / "textures");
        std::ofstream(_path / "tetrahedron.obj")
            << "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 1 4 3\nf 2 3 4\n";
        std::ofstream(_path / "scene.json") << scene;
    }
    ~SceneFolder() { std::filesystem::remove_all(_path); }
    SceneFolder(const SceneFolder&) = delete;
    SceneFolder& operator=(const SceneFolder&) = delete;

    /// Runs tolen-render on the scene.
    ProgramRun Render(const std::vector<std::string>& options) const {
        std::vector<std::string> words = {ProgramFolder() + "/tolen-render", "scene.json", "-I",
                                          SourceFolder() + "/shaders", "--quiet"};
        words.insert(words.end(), options.begin(), options.end());
        return RunProgram(words, _path.string());
    }
    bool Has(const std::string& file) const { return std::filesystem::exists(_path / file); }

private:
    std::filesystem::path _path;
};

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
    const SceneFolder folder(_MakeScene(piece.block));
    const ProgramRun run = folder.Render({});
    if (!piece.block.HasMark("wrong")) {
        EXPECT_EQ(run.status, 0) << run.output;
        EXPECT_TRUE(folder.Has("out.png"));
        return;
    }
    EXPECT_EQ(run.status, 1);
    ASSERT_FALSE(piece.messages.empty()) << "no text block with the messages follows";
    std::istringstream lines(piece.messages);
    for (std::string line; std::getline(lines, line);) {
        EXPECT_THAT(run.output, HasSubstr(line));
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
            const SceneFolder folder(_MakeScene(_ReadPieces().at(0).block));
            const ProgramRun run = folder.Render(options);
            if (blocks[i].HasMark("wrong")) {
                EXPECT_EQ(run.status, 1);
                EXPECT_THAT(run.output, HasSubstr(blocks.at(i + 1).text));
            } else {
                EXPECT_EQ(run.status, 0) << run.output;
            }
        }
    }
    EXPECT_GT(count, 4);
}

TEST(SceneDocument, ListsTheOptionsThatTheProgramHas) {
    const ProgramRun run = RunProgram({ProgramFolder() + "/tolen-render", "--help"});
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

#include "compiler/LinkedProgram.h"
#include "support/paths/SourceFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace Tolen::OpenKL::Tests {

namespace {

struct NamedText {
    std::string name;
    std::string text;
};

/// The texts in a file of generated ones, each headed by its shader's name as a comment.
std::vector<NamedText> ReadTexts(const std::string& path) {
    std::ifstream file(path);
    std::vector<NamedText> texts;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("// effect")) {
            texts.push_back({line.substr(3), ""});
        } else if (!texts.empty()) {
            texts.back().text += line + "\n";
        }
    }
    return texts;
}

} // namespace

/// The texts that effects are known to generate link to programs that run.
TEST(GeneratedText, OfEveryKindOfEffect_CompilesAndLinks) {
    struct {
        const char* file;
        Stage stage;
        std::size_t texts;
    } const cases[] = {
        {"effect_surface.txt", kStage_Ray, 3},
        {"effect_prefix.txt", kStage_Prefix, 2},
        {"effect_renderer.txt", kStage_Frame, 2},
    };
    for (const auto& c : cases) {
        const auto texts =
            ReadTexts(Tolen::Tests::SourceFolder() + "/tests/effects/golden/" + c.file);
        ASSERT_EQ(texts.size(), c.texts) << c.file;
        std::vector<LinkInput> inputs;
        for (const NamedText& text : texts) {
            const bool isVertex = text.text.find("kl_Position") != std::string::npos;
            std::string messages;
            inputs.push_back({text.name, CompileShader(isVertex ? kStage_Vertex : c.stage,
                                                       text.text, messages)});
            ASSERT_NE(inputs.back().shader, nullptr) << c.file << " " << text.name << "\n"
                                                     << messages;
        }
        std::string messages;
        const auto program = LinkProgram(c.file, inputs, messages);
        ASSERT_NE(program, nullptr) << messages;
        EXPECT_NE(program->shading.main, nullptr) << c.file;
        EXPECT_NE(program->shading.setup, nullptr) << c.file;
        EXPECT_EQ(program->vertex != nullptr, c.stage == kStage_Ray) << c.file;
        EXPECT_EQ(program->GetUniformLocation("__outputAttachmentIndex_o_color"), 0) << c.file;
    }
}

} // namespace Tolen::OpenKL::Tests

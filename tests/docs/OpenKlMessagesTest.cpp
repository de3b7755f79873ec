// The messages that docs/openkl.md shows, provoked.

#include "Markdown.h"

#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"
#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace Tolen::Tests {
namespace {

/// The blocks marked so, in the document's order.
std::string _GetShown(std::size_t index) {
    std::vector<std::string> texts;
    for (const CodeBlock& block : ReadCodeBlocks("docs/openkl.md")) {
        if (block.HasMark("messages")) {
            texts.push_back(block.text);
        }
    }
    return index < texts.size() ? texts[index] : "";
}

/// A text from some of its lines; those in between are empty.
std::string _TextOf(const std::map<int, std::string>& lines) {
    std::string text;
    int line = 1;
    for (const auto& [number, content] : lines) {
        text += std::string(static_cast<std::size_t>(number - line), '\n') + content;
        line = number;
    }
    return text;
}

struct NamedText {
    IKLShader::Type type;
    std::string name;
    std::string text;
};

class OpenKlMessages : public testing::Test {
protected:
    OpenKlMessages() {
        OpenKL::ContextOptions options;
        options.threads = 1;
        options.limits.loopSteps = 1000;
        _pContext = OpenKL::CreateContext(options, &_result);
    }
    ~OpenKlMessages() override { OpenKL::DestroyContext(_pContext); }

    /// @return null when the program does not link
    IKLProgram* _Link(const std::string& name, std::initializer_list<NamedText> texts) {
        IKLProgram* const program = _pContext->CreateProgram();
        program->SetName(name);
        for (const NamedText& text : texts) {
            IKLShader* const shader = _pContext->CreateShader(text.type);
            shader->SetName(text.name);
            EXPECT_TRUE(shader->SetString(text.text, &_result)) << _GetTold();
            program->AddShader(shader);
        }
        return program->Link(&_result) ? program : nullptr;
    }

    OpenKL::IPrimitive* _Shade(const std::string& name, IKLProgram* program) {
        OpenKL::IPrimitive* const primitive = _pContext->CreatePrimitive();
        primitive->SetName(name);
        const AutoBindKLPrimitive bind(primitive);
        klUseProgram(program->GetHandle());
        return primitive;
    }

    std::string _GetTold() const {
        std::string told;
        for (const std::string& message : _result.GetMessages()) {
            told += message + (message.empty() || message.back() != '\n' ? "\n" : "");
        }
        return told;
    }

    Result _result;
    OpenKL::IContext* _pContext;
};

TEST_F(OpenKlMessages, OfTexts_AreThoseOfTheDocument) {
    IKLShader* const shader = _pContext->CreateShader(IKLShader::kType_Ray);
    EXPECT_FALSE(shader->SetString(_TextOf({{3, "uniform float scale;"},
                                            {11, "void main() {"},
                                            {12, "accumulate(0, colour);"},
                                            {20, "scale = 1.0;"},
                                            {21, "}"}}),
                                   &_result));
    EXPECT_EQ(_GetTold(), _GetShown(0));
}

TEST_F(OpenKlMessages, OfLinks_AreThoseOfTheDocument) {
    const std::string vertex = _TextOf(
        {{1, "attribute vec2 a_uv;"}, {2, "varying vec2 uv;"}, {3, "void main() { uv = a_uv; }"}});
    const std::string graph =
        _TextOf({{9, "varying vec3 uv;"}, {10, "vec3 Read_k1() { return uv; }"}});
    EXPECT_EQ(_Link("floor", {{IKLShader::kType_Ray, "floor_root",
                               "vec3 Read_k1();\nvoid main() { accumulate(0, Read_k1()); }\n"},
                              {IKLShader::kType_Ray, "floor_graph", graph},
                              {IKLShader::kType_Vertex, "floor_vertex", vertex}}),
              nullptr);
    EXPECT_EQ(
        _Link(
            "floor",
            {{IKLShader::kType_Ray, "floor_root",
              _TextOf(
                  {{1, "void Shade_k1();"}, {6, "void main() {"}, {7, "Shade_k1();"}, {8, "}"}})}}),
        nullptr);
    EXPECT_EQ(_GetTold(), _GetShown(1));
}

TEST_F(OpenKlMessages, OfRenders_AreThoseOfTheDocument) {
    IKLProgram* const camera = _Link("camera", {{IKLShader::kType_Frame, "camera_root", R"(
        void main() {
            float x = kl_PixelCoord.x < 3.0 ? 100.0 : 0.0; // three look past the floor
            spawnRay(vec3(x, 0.0, 5.0), vec3(0.0, 0.0, -1.0));
        })"}});
    IKLProgram* const floor = _Link("floor", {{IKLShader::kType_Ray, "floor_root", R"(
        void main() { accumulate(0, vec4(sqrt(-kl_HitDistance))); })"}});
    IKLProgram* const sky =
        _Link("sky", {{IKLShader::kType_Ray, "sky_graph",
                       _TextOf({{40, "void main() {"},
                                {41, "for (int i = 0; i >= 0; i *= 1) { accumulate(0, 0.0); }"},
                                {42, "}"}})}});
    ASSERT_TRUE(camera != nullptr && floor != nullptr && sky != nullptr) << _GetTold();
    _pContext->SetFramePrimitive(_Shade("camera_1", camera));
    _pContext->SetMissPrimitive(_Shade("dome", sky));
    OpenKL::SetMesh(*_Shade("floor_1", floor), OpenKL::MakePlane(2.0f, 2.0f));

    OpenKL::IFramebuffer* const picture = _pContext->CreateFramebuffer(206, 1, &_result);
    picture->Attach(0);
    _pContext->Render(picture, OpenKL::RenderSettings(), &_result);
    // The limit is lower here than that of the document.
    std::string shown = _GetShown(2);
    const std::string limit = "10000000 loop";
    ASSERT_NE(shown.find(limit), std::string::npos);
    shown.replace(shown.find(limit), limit.size(), "1000 loop");
    EXPECT_EQ(_GetTold(), shown);
}

} // namespace
} // namespace Tolen::Tests

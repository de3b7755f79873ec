#pragma once

#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenOpenKLWrapper/Scoped.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

struct ContextDeleter {
    void operator()(IContext* context) const { DestroyContext(context); }
};
using ContextPointer = std::unique_ptr<IContext, ContextDeleter>;

/// The means of an attachment.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<float> rgba;

    /// @param channel 0 red to 3 alpha
    float At(int x, int y, int channel = 0) const {
        return rgba.at((static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                        static_cast<std::size_t>(x)) *
                           4 +
                       static_cast<std::size_t>(channel));
    }
    /// The mean over all pixels.
    double GetMean(int channel = 0) const {
        double sum = 0.0;
        for (std::size_t i = static_cast<std::size_t>(channel); i < rgba.size(); i += 4) {
            sum += double{rgba[i]};
        }
        return sum / (static_cast<double>(rgba.size()) / 4.0);
    }
};

/// A context and short ways to fill it with hand-written programs.
class RenderFixture {
public:
    explicit RenderFixture(const ContextOptions& options = ContextOptions()) {
        Result result;
        pContext.reset(CreateContext(options, &result));
        EXPECT_NE(nullptr, pContext) << result.GetLast();
    }

    /// A compiled shader; the test fails when it doesn't compile.
    IKLShader* MakeShader(IKLShader::Type type, const std::string& text) {
        IKLShader* const shader = pContext->CreateShader(type);
        Result result;
        EXPECT_TRUE(shader->SetString(text, &result)) << result.GetLast() << "\n" << text;
        return shader;
    }

    /// A linked program of shaders; the test fails when it doesn't link.
    IKLProgram* Link(const std::vector<IKLShader*>& shaders) {
        IKLProgram* const program = pContext->CreateProgram();
        program->SetName("test");
        for (IKLShader* shader : shaders) {
            EXPECT_TRUE(program->AddShader(shader));
        }
        Result result;
        EXPECT_TRUE(program->Link(&result)) << result.GetLast();
        return program;
    }

    /// A new primitive that is shaded by a program.
    IPrimitive* MakePrimitive(IKLProgram* program) {
        IPrimitive* const primitive = pContext->CreatePrimitive();
        const AutoBindKLPrimitive bind(primitive);
        klUseProgram(program->GetHandle());
        return primitive;
    }

    IPrimitive* MakeFrame(const std::string& text) {
        IPrimitive* const primitive =
            MakePrimitive(Link({MakeShader(IKLShader::kType_Frame, text)}));
        pContext->SetFramePrimitive(primitive);
        return primitive;
    }

    IPrimitive* MakePrefix(const std::string& text) {
        IPrimitive* const primitive =
            MakePrimitive(Link({MakeShader(IKLShader::kType_PrefixRay, text)}));
        pContext->SetPrefixPrimitive(primitive);
        return primitive;
    }

    IPrimitive* MakeMiss(const std::string& text) {
        IPrimitive* const primitive = MakePrimitive(Link({MakeShader(IKLShader::kType_Ray, text)}));
        pContext->SetMissPrimitive(primitive);
        return primitive;
    }

    /// A primitive with a mesh, shaded by @p text and by the vertex shader below.
    IPrimitive* MakeObject(const Mesh& mesh, const std::string& text,
                           const std::string& vertexText = vertexShader) {
        IPrimitive* const primitive =
            MakePrimitive(Link({MakeShader(IKLShader::kType_Ray, text),
                                MakeShader(IKLShader::kType_Vertex, vertexText)}));
        EXPECT_TRUE(SetMesh(*primitive, mesh));
        return primitive;
    }

    /// A framebuffer with the first @p attachments attached.
    IFramebuffer* MakeFramebuffer(int width, int height, int attachments = 1) {
        Result result;
        IFramebuffer* const framebuffer = pContext->CreateFramebuffer(width, height, &result);
        EXPECT_NE(nullptr, framebuffer) << result.GetLast();
        for (int i = 0; i < attachments; ++i) {
            EXPECT_TRUE(framebuffer->Attach(i));
        }
        return framebuffer;
    }

    static Picture Read(const IFramebuffer& framebuffer, int attachment = 0) {
        Picture picture{framebuffer.GetWidth(), framebuffer.GetHeight(), {}};
        picture.rgba.resize(static_cast<std::size_t>(picture.width) *
                            static_cast<std::size_t>(picture.height) * 4);
        EXPECT_TRUE(framebuffer.Read(attachment, picture.rgba.data()));
        return picture;
    }

    /// Renders a picture; the test fails when there is anything to report.
    Picture Render(int width, int height, int samples = 1) {
        IFramebuffer* const framebuffer = MakeFramebuffer(width, height);
        RenderSettings settings;
        settings.samples = samples;
        Result result;
        EXPECT_EQ(kRender_Finished, pContext->Render(framebuffer, settings, &result));
        EXPECT_TRUE(result.IsEmpty()) << result.GetLast();
        Picture picture = Read(*framebuffer);
        pContext->DestroyFramebuffer(framebuffer);
        return picture;
    }

    /// Renders and returns all messages, each on a line.
    std::string RenderMessages(int width, int height, int samples = 1) {
        IFramebuffer* const framebuffer = MakeFramebuffer(width, height);
        RenderSettings settings;
        settings.samples = samples;
        Result result;
        pContext->Render(framebuffer, settings, &result);
        pContext->DestroyFramebuffer(framebuffer);
        std::string text;
        for (const std::string& message : result.GetMessages()) {
            text += message + "\n";
        }
        return text;
    }

    /// Writes a uniform by name.
    template <class T>
    static bool SetUniform(IPrimitive& primitive, const std::string& name, const T& value) {
        return primitive.SetUniform(name, primitive.GetProgram()->GetUniformLocation(name), value);
    }

    /// Position, and a normal and texture coordinates as varyings.
    static constexpr const char* vertexShader = R"(
        attribute vec3 a_Position;
        attribute vec3 a_Normal;
        attribute vec2 a_Coord;
        transformed normalized varying vec3 Normal;
        varying vec2 Coord;
        void main() {
            kl_Position = vec4(a_Position, 1.0);
            Normal = a_Normal;
            Coord = a_Coord;
        })";

    /// A camera at z = 5 that looks down; the plane z = 0 is seen from -2 to 2.
    static constexpr const char* perspectiveCamera = R"(
        void main() {
            vec2 p = kl_PixelCoord / kl_Resolution * 4.0 - 2.0;
            spawnRay(vec3(0.0, 0.0, 5.0), vec3(p, -5.0));
        })";

    /// Parallel rays down the z axis from z = 5; x and y go from -1 to 1.
    static constexpr const char* parallelCamera = R"(
        void main() {
            vec2 p = kl_PixelCoord / kl_Resolution * 2.0 - 1.0;
            spawnRay(vec3(p, 5.0), vec3(0.0, 0.0, -1.0));
        })";

    ContextPointer pContext;
};

} // namespace Tolen::OpenKL

#pragma once

#include "support/CapturedConsole.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenCore/Result.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// A manager over the embedded OpenKL and a small square picture, onto which a camera looks
/// straight along -z: pixel x, y shows the point (x + 0.5, y + 0.5) of the plane z = 0.
class PictureFixture : public testing::Test {
protected:
    static constexpr int kEdge = 4;
    using Pixel = std::array<float, 4>;

    /// @param pixels along each edge
    explicit PictureFixture(int pixels = kEdge) : edge(pixels) {
        Result result;
        context = OpenKL::CreateContext(OpenKL::ContextOptions(), &result);
        EXPECT_NE(context, nullptr);
        EXPECT_TRUE(manager.Init(console.Get(), context, &result));
        manager.SetOutputAttachmentIndex("o_color", 0);
        framebuffer = context->CreateFramebuffer(edge, edge, &result);
        framebuffer->Attach(0);
        Load("camera.klsl", R"(
            class Camera {
                int GetRayCount() { return 1; }
                void Render() {
                    spawnRay(vec3(floor(kl_PixelCoord) + 0.5, 5.0), vec3(0.0, 0.0, -1.0));
                }
            })");
        camera = manager.CreateEffectRenderer();
        camera->SetRoot(Make("Camera"));
        OpenKL::IPrimitive* const frame = context->CreatePrimitive();
        camera->CreateReference(frame);
        context->SetFramePrimitive(frame);
    }
    ~PictureFixture() override {
        manager.Shutdown();
        OpenKL::DestroyContext(context);
    }

    void Load(const std::string& name, const std::string& source) {
        Result result;
        ASSERT_TRUE(manager.AddLibrary(name, source, &result)) << result.GetLast();
    }

    Effects::IShader* Make(const std::string& className) {
        Result result;
        Effects::IShader* const shader = manager.CreateShader(className, &result);
        EXPECT_NE(shader, nullptr) << (result.IsEmpty() ? className : result.GetLast());
        return shader;
    }

    /// A square that covers the whole picture, with an effect on it.
    OpenKL::IPrimitive* AddSquare(Effects::IEffect* effect) {
        return AddSquare(effect, 0.0f, static_cast<float>(edge));
    }
    /// The same for the pixels from @p x on.
    OpenKL::IPrimitive* AddSquare(Effects::IEffect* effect, float x, float width) {
        const auto height = static_cast<float>(edge);
        OpenKL::IPrimitive* const primitive = context->CreatePrimitive();
        OpenKL::SetMesh(*primitive, OpenKL::MakePlane(width, height));
        Matrix44f place;
        place(0, 3) = x + 0.5f * width;
        place(1, 3) = 0.5f * height;
        primitive->SetTransform(place);
        effect->CreateReference(primitive);
        return primitive;
    }

    /// Brings all effects up to date and renders one sample.
    void Render() {
        Result result;
        EXPECT_TRUE(manager.Update(&result))
            << (result.IsEmpty() ? "" : result.GetLast()) << console.GetAll();
        framebuffer->Clear();
        Result messages;
        EXPECT_EQ(context->Render(framebuffer, OpenKL::RenderSettings(), &messages),
                  OpenKL::kRender_Finished);
        for (const std::string& message : messages.GetMessages()) {
            ADD_FAILURE() << message;
        }
    }

    Pixel GetPixel(int x = 0, int y = 0) const {
        std::vector<float> rgba(static_cast<std::size_t>(edge * edge * 4));
        framebuffer->Read(0, rgba.data());
        Pixel pixel;
        for (std::size_t i = 0; i < 4; ++i) {
            pixel[i] = rgba[static_cast<std::size_t>(y * edge + x) * 4 + i];
        }
        return pixel;
    }

    const int edge;
    CapturedConsole console;
    Effects::MgrEffects manager;
    OpenKL::IContext* context = nullptr;
    OpenKL::IFramebuffer* framebuffer = nullptr;
    Effects::IEffect* camera = nullptr;
};

} // namespace Tolen::Tests

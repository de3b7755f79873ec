// An edit session: a value changes, a text with a mistake is refused, a better one takes over.
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <chrono>
#include <cstdio>
using namespace Tolen;
const char* const kFirst = R"(
class Camera {
    void Render() { spawnRay(vec3(0.0, 0.0, 5.0), vec3(0.0, 0.0, -1.0)); }
}
class Paint {
    input vec3 color = vec3(0.8, 0.2, 0.1);
    void Shade() { accumulate(o_color, color); }
})";
const char* const kWrong = R"(
class Stripes {
    input vec3 color = vec3(0.8, 0.2, 0.1);
    void Shade() { accumulate(o_color, colour); }
})";
const char* const kRight = R"(
class Bands {
    input vec3 color = vec3(0.1, 0.2, 0.8);
    void Shade() { accumulate(o_color, color * step(0.5, fract(4.0 * Normal.x + 0.75))); }
})";

int main() {
    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.SetOutputAttachmentIndex("o_color", 0);
    manager.AddLibrary("first", kFirst, &result);

    Effects::IEffect* const renderer = manager.CreateEffectRenderer();
    renderer->SetRoot(manager.CreateShader("Camera"));
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    renderer->CreateReference(frame);
    context->SetFramePrimitive(frame);
    Effects::IShader* const paint = manager.CreateShader("Paint");
    Effects::IEffect* const surface = manager.CreateEffectSurface();
    surface->SetRoot(paint);
    OpenKL::IPrimitive* const ball = context->CreatePrimitive();
    OpenKL::SetMesh(*ball, OpenKL::MakeSphere(1.0f, 64, 32));
    surface->CreateReference(ball);
    OpenKL::IFramebuffer* const picture = context->CreateFramebuffer(1, 1, &result);
    picture->Attach(0);

    const auto show = [&](const char* what) {
        Result messages;
        const auto begin = std::chrono::steady_clock::now();
        const bool isGood = manager.Update(&messages);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
        picture->Clear();
        context->Render(picture, {}, &messages);
        float rgba[4];
        picture->Read(0, rgba);
        std::printf("%-28s %-4s %.1f %.1f %.1f\n", what, isGood ? "good" : "bad", rgba[0], rgba[1], rgba[2]);
        std::fprintf(stderr, "%s: %.3f ms\n", what, 1000.0 * time.count());
    };
    show("the first program");
    paint->SetParameter(nullptr, "color", Vector3f(0.1f, 0.6f, 0.2f));
    show("a value: no compile");
    manager.AddLibrary("wrong", kWrong, &result);
    surface->SetRoot(manager.CreateShader("Stripes", &result));
    show("a mistake in the text");
    surface->SetRoot(paint);
    show("back to the last good one");
    manager.AddLibrary("right", kRight, &result);
    surface->SetRoot(manager.CreateShader("Bands", &result));
    show("another program");
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

// A ball of clay: from a text in memory to characters on the terminal.
#include "TolenEffects/IEffect.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdio>

using namespace Tolen;

const char* const kSource = R"(
class Camera {
    void Render() {
        vec2 p = 2.0 * kl_PixelCoord / kl_Resolution - 1.0;
        spawnRay(vec3(0.0, 0.0, 4.0), normalize(vec3(p, -3.5)));
    }
}
class Clay {
    input vec3 light = vec3(-1.0, 1.0, 1.0);
    void Shade() { accumulate(o_color, vec3(max(0.12, dot(Normal, normalize(light))))); }
}
)";

void Print(OpenKL::IFramebuffer* picture) {
    static float rgba[24][48][4];
    picture->Read(0, &rgba[0][0][0]);
    for (int i = 0; i < 24 * 49; ++i) { // row 0 is the lowest
        const float* const pixel = rgba[23 - i / 49][std::min(i % 49, 47)];
        std::putchar(i % 49 == 48 ? '\n' : " .:-=+*#%@"[static_cast<int>(std::min(*pixel, 1.0f) * 9)]);
    }
}

int main() {
    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.AddLibrary("hello", kSource, &result);
    manager.SetOutputAttachmentIndex("o_color", 0);

    Effects::IShader* const clay = manager.CreateShader("Clay");
    Effects::IEffect* const surface = manager.CreateEffectSurface();
    surface->SetRoot(clay);
    OpenKL::IPrimitive* const ball = context->CreatePrimitive();
    OpenKL::SetMesh(*ball, OpenKL::MakeSphere(1.0f, 64, 32));
    surface->CreateReference(ball);

    Effects::IShader* const camera = manager.CreateShader("Camera");
    Effects::IEffect* const renderer = manager.CreateEffectRenderer();
    renderer->SetRoot(camera);
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    renderer->CreateReference(frame);
    context->SetFramePrimitive(frame);

    OpenKL::IFramebuffer* const picture = context->CreateFramebuffer(48, 24, &result);
    picture->Attach(0);
    OpenKL::RenderSettings settings;
    settings.samples = 16;
    manager.Update(&result) && context->Render(picture, settings, &result);
    result.ReportToConsole(nullptr);
    Print(picture);

    manager.DestroyShader(camera);
    manager.DestroyShader(clay);
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

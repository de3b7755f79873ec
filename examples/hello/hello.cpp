// A shader in memory, rendered by the embedded OpenKL and shown as characters.
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdio>

using namespace Tolen;

constexpr int kWidth = 48;
constexpr int kHeight = 24;

const char* const kSource = R"(
class Camera
{
    void Render()
    {
        vec2 p = 2.0 * kl_PixelCoord / kl_Resolution - 1.0;
        spawnRay(vec3(0.0, 0.0, 4.0), normalize(vec3(p, -3.5)));
    }
}

class Clay
{
    input vec3 light = vec3(0.0, 1.0, 0.0);

    void Shade() { accumulate(o_color, vec3(max(0.12, dot(Normal, normalize(light))))); }
}
)";

int main() {
    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext(OpenKL::ContextOptions(), &result);
    OpenKL::IFramebuffer* const picture = context->CreateFramebuffer(kWidth, kHeight, &result);
    picture->Attach(0);

    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.SetOutputAttachmentIndex("o_color", 0);
    if (!manager.AddLibrary("hello", kSource, &result)) {
        result.ReportToConsole(nullptr);
        return 1;
    }

    // A ball of clay, lit from where we say.
    Effects::IShader* const clay = manager.CreateShader("Clay", &result);
    clay->SetParameter(&result, "light", Vector3f(-1.0f, 1.0f, 1.0f));
    Effects::IEffect* const surface = manager.CreateEffectSurface();
    surface->SetRoot(clay);
    OpenKL::IPrimitive* const ball = context->CreatePrimitive();
    OpenKL::SetMesh(*ball, OpenKL::MakeSphere(1.0f, 64, 32));
    surface->CreateReference(ball);

    // A camera that sends one ray for each sample.
    Effects::IShader* const camera = manager.CreateShader("Camera", &result);
    Effects::IEffect* const renderer = manager.CreateEffectRenderer();
    renderer->SetRoot(camera);
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    renderer->CreateReference(frame);
    context->SetFramePrimitive(frame);

    OpenKL::RenderSettings settings;
    settings.samples = 16;
    const bool rendered = manager.Update(&result) &&
                          context->Render(picture, settings, &result) == OpenKL::kRender_Finished;
    result.ReportToConsole(nullptr);

    static float rgba[kHeight][kWidth][4];
    picture->Read(0, &rgba[0][0][0]);
    for (int y = kHeight - 1; y >= 0; --y) { // row 0 is the lowest
        for (int x = 0; x < kWidth; ++x) {
            const float brightness = std::min(rgba[y][x][0], 1.0f);
            std::putchar(" .:-=+*#%@"[static_cast<int>(brightness * 9.0f)]);
        }
        std::putchar('\n');
    }
    manager.DestroyShader(camera);
    manager.DestroyShader(clay);
    manager.Shutdown();
    OpenKL::DestroyContext(context);
    return rendered ? 0 : 1;
}

// A shader graph: two noises and a color, mixed; then one connection changes.
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdio>
using namespace Tolen;

const char* const kSource = R"(
interface IHeight { float Get(vec2 p); }
class Waves : IHeight {
    input float count = 3.0;
    float Get(vec2 p) { return 0.5 + 0.5 * sin(count * p.x); }
}
class Rings : IHeight {
    input float count = 4.0;
    float Get(vec2 p) { return 0.5 + 0.5 * cos(count * length(p)); }
}
class Product : IHeight {
    input IHeight factors[];
    float Get(vec2 p) {
        float product = 1.0;
        for (int i = 0; i < factors.length; i++) { product *= factors[i].Get(p); }
        return product;
    }
}
class Plot {
    input IHeight height;
    void Render() {
        vec2 p = 3.0 * (2.0 * kl_PixelCoord / kl_Resolution - 1.0);
        accumulate(o_color, vec3(height.Get(p)));
    }
})";

int main() {
    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.AddLibrary("graph", kSource, &result);
    manager.SetOutputAttachmentIndex("o_color", 0);

    Effects::IShader* const waves = manager.CreateShader("Waves");
    Effects::IShader* const rings = manager.CreateShader("Rings");
    Effects::IShader* const product = manager.CreateShader("Product");
    Effects::IShader* const plot = manager.CreateShader("Plot");
    product->GetParameter("factors")->SetLength(2);
    product->SetParameter(&result, "factors", waves, 0);
    product->SetParameter(&result, "factors", rings, 1);
    plot->SetParameter(&result, "height", waves);

    Effects::IEffect* const renderer = manager.CreateEffectRenderer();
    renderer->SetRoot(plot);
    OpenKL::IPrimitive* const frame = context->CreatePrimitive();
    renderer->CreateReference(frame);
    context->SetFramePrimitive(frame);
    OpenKL::IFramebuffer* const picture = context->CreateFramebuffer(48, 20, &result);
    picture->Attach(0);
    const auto show = [&] {
        picture->Clear();
        manager.Update(&result) && context->Render(picture, {}, &result);
        float rgba[20][48][4];
        picture->Read(0, &rgba[0][0][0]);
        for (int i = 0; i < 20 * 49; ++i) { // row 0 is the lowest
            const float value = std::clamp(rgba[19 - i / 49][std::min(i % 49, 47)][0], 0.0f, 1.0f);
            std::putchar(i % 49 == 48 ? '\n' : " .:-=+*#%@"[static_cast<int>(value * 9.0f)]);
        }
    };
    show();
    plot->SetParameter(&result, "height", product); // the one connection
    show();
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

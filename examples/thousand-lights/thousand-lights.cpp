// A thousand lamps over a floor, each a shader of its own to its client; the program compiles once.
// usage: thousand-lights [FOLDER], that of the shader libraries; by itself the installed one
#include "TolenEffects/IEffect.h"
#include "TolenEffects/IMgrLightShaders.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"
#include "TolenOpenKL/Mesh.h"
#include "TolenCore/Assets.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
using namespace Tolen;

int main(int count, char** arguments) {
    const std::filesystem::path folder = count > 1 ? arguments[1] : SHADERS;
    Result result;
    MgrAssets assets;
    SetMgrAssets(&assets);
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.SetOutputAttachmentIndex("o_color", 0);
    manager.AddRayAttribute(Effects::kType_Vec3, "throughput");
    manager.AddRayAttribute(Effects::kType_Float, "direct");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.path().extension() == ".klsl" && !manager.AddLibrary(entry.path().string(), &result)) {
            return result.ReportToConsole(nullptr), 1;
        }
    }
    Effects::IMgrLightShaders* const lights = Effects::CreateMgrLightShaders();
    lights->Init(&manager, GetMgrConsole());
    Effects::IShader* const all = lights->CreateShader("LightManagerArray", &result);
    Effects::IShader* const paths = manager.CreateShader("DirectLight", &result);
    Effects::IShader* const material = manager.CreateShader("Material", &result);
    paths->SetParameter(&result, "lighting", all);
    material->SetParameter(&result, "integrator", paths);

    const auto add = [&, decay = lights->CreateShader("LightDecayInvSquareArray", &result)](int i) {
        Effects::IShader* const lamp = lights->CreateShader("LightPointArray", &result);
        lamp->SetParameter(&result, "intensity", Vector3f(i % 3 == 0 ? 0.3f : 0.1f, 0.1f, 0.1f));
        lamp->SetParameter(&result, "decay", decay);
        Effects::IShader* const instance = lights->CreateShader("LightInstanceStandardArray", &result);
        Matrix44f place;
        place(0, 3) = 0.17f * std::sqrt(static_cast<float>(i)) * std::cos(2.4f * static_cast<float>(i));
        place(1, 3) = 0.4f;
        place(2, 3) = 0.17f * std::sqrt(static_cast<float>(i)) * std::sin(2.4f * static_cast<float>(i));
        instance->SetParameter(&result, "light", lamp);
        instance->SetParameter(&result, "transform", place);
        all->GetParameter("lights")->SetLength(i + 1);
        all->SetParameter(&result, "lights", instance, i);
    };
    Effects::IEffect* const surface = manager.CreateEffectSurface();
    surface->SetRoot(material);
    OpenKL::IPrimitive* const floor = context->CreatePrimitive();
    OpenKL::SetMesh(*floor, OpenKL::MakePlane(8.0f, 8.0f));
    surface->CreateReference(floor);
    add(0);
    manager.Update(&result);
    const auto compiles = context->GetStatistics().shadersCompiled;
    for (int i = 1; i < 1000; ++i) {
        add(i);
    }
    manager.Update(&result);
    result.ReportToConsole(nullptr);
    std::printf("1000 lights, %s, %d more compiles\n", surface->IsCompiled() ? "ready" : "failed",
                static_cast<int>(context->GetStatistics().shadersCompiled - compiles));
    Effects::DestroyMgrLightShaders();
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

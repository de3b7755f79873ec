// The program in which the C++ of docs/klsl.md stands.

#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

using namespace Tolen;

int main() {
    Result result;
    OpenKL::IContext* const context = OpenKL::CreateContext({}, &result);
    Effects::MgrEffects manager;
    manager.Init(GetMgrConsole(), context, &result);
    manager.AddLibrary("patterns", R"(
        interface Pattern { float At(vec2 place); }
        class Gray : Pattern { input float level = 1.0; float At(vec2 place) { return level; } }
        class Show { input Pattern pattern; }
    )",
                       &result);
    Effects::IShader* const show = manager.CreateShader("Show", &result);

    // The statements of a page stand here.

    result.ReportToConsole(nullptr);
    manager.Shutdown();
    OpenKL::DestroyContext(context);
}

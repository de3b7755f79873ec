#include "Commands.h"
#include "Options.h"
#include "Report.h"

#include "language/Session.h"
#include "scene/ProgramTexts.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"

#include "TolenCore/FastDelegate.h"

#include <cstdio>
#include <string>

namespace Tolen::Klsl {

namespace {

using namespace Effects;

IEffect* CreateEffect(MgrEffects& manager, Options::Effect kind) {
    switch (kind) {
    case Options::kEffect_Surface:
        return manager.CreateEffectSurface();
    case Options::kEffect_Renderer:
        return manager.CreateEffectRenderer();
    case Options::kEffect_Prefix:
        return manager.CreateEffectPrefix();
    }
    return nullptr;
}

/// Feeds each coordinate of a shader from the vertex attribute of the same name.
struct CoordFeeder {
    bool Feed(const std::string& name, IParameter* coord) { return coord->Set(name); }
};

/// Makes the program of the class. @return false with the reasons in @p result
bool MakeProgram(MgrEffects& manager, const Options& options, Result& result) {
    IShader* const shader = manager.CreateShader(options.className, &result);
    if (shader == nullptr) {
        if (result.IsEmpty()) {
            result.Add("There is no class \"%s\"", options.className.c_str());
        }
        return false;
    }
    CoordFeeder feeder;
    auto feed = MakeDelegate(&feeder, &CoordFeeder::Feed);
    shader->VisitCoords(feed);
    IEffect* const effect = CreateEffect(manager, options.effect);
    if (effect == nullptr || !effect->SetName(options.className) || !effect->SetRoot(shader)) {
        result.Add("Class \"%s\" can't be the root of an effect", options.className.c_str());
        return false;
    }
    return effect->Update(&result);
}

} // namespace

int PrintClass(const Options& options) {
    const Language::SourceTexts noTexts;
    Language::Session session(options.searchPaths, noTexts);
    std::string error;
    if (!session.Start(options.names, error)) {
        std::fprintf(stderr, "klsl: %s\n", error.c_str());
        return 1;
    }
    bool isMade = session.LoadLibraries(options.files);
    if (isMade) {
        Result result;
        const Scene::ProgramTexts texts(session.GetContext());
        isMade = MakeProgram(session.GetManager(), options, result);
        std::fputs(texts.Print().c_str(), stdout);
        std::fflush(stdout);
        session.Report(result, isMade, {options.files.front(), options.className});
    }
    return Report(session.GetDiagnostics()) || !isMade ? 1 : 0;
}

} // namespace Tolen::Klsl

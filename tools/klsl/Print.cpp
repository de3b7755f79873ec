#include "Commands.h"
#include "Session.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"

#include "TolenOpenKLWrapper/IKLShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/FastDelegate.h"

#include <cstdio>
#include <string>

namespace Tolen::Klsl {

namespace {

using namespace Effects;

/// Keeps the last text of each part of a program.
class Texts : public CreationOrder {
public:
    explicit Texts(OpenKL::IContext& context) : _context(context) {
        auto onText = MakeDelegate(this, &Texts::_OnText);
        _context.AddListenerText(onText);
    }
    ~Texts() {
        auto onText = MakeDelegate(this, &Texts::_OnText);
        _context.RemoveListenerText(onText);
    }
    Texts(const Texts&) = delete;
    Texts& operator=(const Texts&) = delete;

    void Print() const {
        _Print("root", _root);
        _Print("graph", _graph);
        _Print("vertex", _vertex);
    }

private:
    static void _Print(const char* part, const std::string& text) {
        if (!text.empty()) {
            std::printf("// ---- %s\n%s%s", part, text.c_str(), text.back() == '\n' ? "" : "\n");
        }
    }

    bool _OnText(const IKLShader& shader, const std::string& text) {
        if (shader.GetType() == IKLShader::kType_Vertex) {
            _vertex = text;
        } else if (shader.GetName().ends_with("_root")) {
            _root = text;
        } else {
            _graph = text;
        }
        return true;
    }

    OpenKL::IContext& _context;
    std::string _root;
    std::string _graph;
    std::string _vertex;
};

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

int Print(const Options& options) {
    Session session(options);
    if (!session.Start() || !session.LoadLibraries()) {
        return 1;
    }
    Diagnostic place;
    place.file = options.files.front();
    Result result;
    const Texts texts(session.GetContext());
    const bool isMade = MakeProgram(session.GetManager(), options, result);
    texts.Print();
    std::fflush(stdout);
    session.Report(result, isMade, [&place](const std::string&) { return place; });
    return isMade && !session.HasErrors() ? 0 : 1;
}

} // namespace Tolen::Klsl

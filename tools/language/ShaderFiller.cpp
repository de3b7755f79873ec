#include "ShaderFiller.h"

#include "TolenEffects/IParameter.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/Limits.h"
#include "TolenEffects/MgrEffects.h"

#include "TolenCore/FastDelegate.h"
#include "TolenCore/Result.h"

namespace Tolen::Language {

using namespace Effects;

namespace {

/// Shaders beyond this are needed only by classes that need shaders of themselves without end.
constexpr std::size_t kMaxMade = 1000;

struct CoordFeeder {
    bool Feed(const std::string& name, IParameter* coord) { return coord->Set(name); }
};

} // namespace

ShaderFiller::ShaderFiller(MgrEffects& manager,
                           const std::map<std::string, std::string>& implementations)
    : _manager(manager), _implementations(implementations) {}

ShaderFiller::~ShaderFiller() {
    for (IShader* const shader : _made) {
        _manager.DestroyShader(shader);
    }
}

IShader* ShaderFiller::Make(const std::string& className) {
    if (_made.size() >= kMaxMade) {
        return nullptr;
    }
    Result ignored;
    IShader* const shader = _manager.CreateShader(className, &ignored);
    if (shader != nullptr) {
        _made.push_back(shader);
        _FillShader(*shader);
    }
    return shader;
}

void ShaderFiller::Fill(IPrototypeShader& prototype) {
    auto fill = MakeDelegate(this, &ShaderFiller::_FillParameter);
    prototype.VisitParameters(fill);
}

void ShaderFiller::_FillShader(IShader& shader) {
    if (_depth >= kLimitDefaultDepth) {
        return;
    }
    ++_depth;
    CoordFeeder feeder;
    auto feed = MakeDelegate(&feeder, &CoordFeeder::Feed);
    shader.VisitCoords(feed);
    auto fill = MakeDelegate(this, &ShaderFiller::_FillParameter);
    shader.VisitParameters(fill);
    --_depth;
}

bool ShaderFiller::_FillParameter(const std::string&, IParameter* parameter) {
    if (parameter->GetClass() != IParameter::kClass_Interface) {
        return true;
    }
    for (int index = 0; index < parameter->GetLength(); ++index) {
        IShader* shader = nullptr;
        const bool isArray = parameter->IsArray();
        isArray ? parameter->Get(shader, index) : parameter->Get(shader);
        if (shader != nullptr) {
            _FillShader(*shader);
        } else if ((shader = _MakeFor(parameter->GetType())) != nullptr) {
            isArray ? parameter->Set(shader, index) : parameter->Set(shader);
        }
    }
    return true;
}

IShader* ShaderFiller::_MakeFor(const std::string& type) {
    const auto implementation = _implementations.find(type);
    return Make(implementation == _implementations.end() ? type : implementation->second);
}

} // namespace Tolen::Language

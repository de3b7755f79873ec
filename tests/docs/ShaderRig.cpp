#include "ShaderRig.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/IShader.h"

#include <sstream>

namespace Tolen::Tests {

using namespace Effects;

ShaderRig::ShaderRig() : _pAssetsBefore(SetMgrAssets(&_assets)) {
    OpenKL::ContextOptions options;
    options.threads = 1;
    _pContext = OpenKL::CreateContext(options, &_result);
    auto onText = MakeDelegate(this, &ShaderRig::_OnText);
    _pContext->AddListenerText(onText);
    _pManager = std::make_unique<MgrEffects>();
    _pManager->Init(_console.Get(), _pContext, &_result);
    _pManager->AddRayAttribute(kType_Vec3, "throughput");
    _pManager->AddRayAttribute(kType_Float, "direct");
    _pManager->AddVariableGlobal(kType_Float, "wetness");
    _pManager->SetOutputAttachmentIndex("o_color", 0);
}

ShaderRig::~ShaderRig() {
    _pManager.reset();
    OpenKL::DestroyContext(_pContext);
    SetMgrAssets(_pAssetsBefore);
}

void ShaderRig::AddFile(const std::string& name, const std::string& text) {
    _assets.AddMemoryAsset(Path(name), text);
}

bool ShaderRig::Load(const std::string& name) { return _pManager->AddLibrary(name, &_result); }

bool ShaderRig::Use(const std::string& className, bool isPrefix) {
    IShader* const shader = _Create(className);
    if (shader == nullptr) {
        return false;
    }
    if (shader->HasMethod("Render") &&
        !_Compile(_pManager->CreateEffectRenderer(), shader, _pContext->CreatePrimitive())) {
        return false;
    }
    return !shader->HasMethod("Shade") ||
           _Compile(isPrefix ? _pManager->CreateEffectPrefix() : _pManager->CreateEffectSurface(),
                    shader, _pContext->CreatePrimitive());
}

std::vector<float> ShaderRig::RenderPixel(const std::string& className) {
    IShader* const shader = _Create(className);
    OpenKL::IPrimitive* const frame = _pContext->CreatePrimitive();
    if (shader == nullptr || !_Compile(_pManager->CreateEffectRenderer(), shader, frame)) {
        return {};
    }
    _pContext->SetFramePrimitive(frame);
    OpenKL::IFramebuffer* const framebuffer = _pContext->CreateFramebuffer(1, 1, &_result);
    framebuffer->Attach(0);
    if (_pContext->Render(framebuffer, OpenKL::RenderSettings(), &_result) !=
        OpenKL::kRender_Finished) {
        return {};
    }
    std::vector<float> rgba(4);
    framebuffer->Read(0, rgba.data());
    rgba.resize(3);
    return rgba;
}

std::string ShaderRig::GetMessages() const {
    std::string messages = _console.GetAll();
    for (const std::string& message : _result.GetMessages()) {
        messages += message + "\n";
    }
    return messages;
}

IShader* ShaderRig::_Create(const std::string& className) {
    IShader* const shader = _pManager->CreateShader(className, &_result);
    if (shader == nullptr || className != "Show") {
        return shader;
    }
    std::istringstream connections(_connections);
    for (std::string input, classes;
         std::getline(connections, input, ':') && std::getline(connections, classes, ',');) {
        if (!_Connect(shader, input, classes)) {
            return nullptr;
        }
    }
    return shader;
}

bool ShaderRig::_Connect(IShader* shader, const std::string& input, const std::string& classes) {
    std::vector<IShader*> values;
    std::istringstream names(classes);
    for (std::string name; std::getline(names, name, '+');) {
        values.push_back(_pManager->CreateShader(name, &_result));
        if (values.back() == nullptr) {
            return false;
        }
    }
    IParameter* const parameter = shader->GetParameter(input);
    if (parameter == nullptr || !parameter->IsArray()) {
        return values.size() == 1 && shader->SetParameter(&_result, input, values.front());
    }
    const int count = static_cast<int>(values.size());
    return (!parameter->IsResizable() || parameter->SetLength(count)) &&
           shader->SetParameter(&_result, input, values.data(), count);
}

bool ShaderRig::_OnText(const IKLShader&, const std::string& text) {
    _programs += text;
    return true;
}

bool ShaderRig::_Compile(IEffect* effect, IShader* root, IKLPrimitive* primitive) {
    // A program that doesn't link leaves the effect dirty, while Update goes on.
    return effect->SetRoot(root) && effect->CreateReference(primitive) != nullptr &&
           effect->Update(&_result) && effect->IsCompiled();
}

} // namespace Tolen::Tests

#include "Shader_LightShaderReceiver.h"

#include "Parameter_WrapperVectorInterfaceMulti.h"
#include "Parameter_WrapperVectorInterfaceSingle.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/Shader_LightShaderReceiver";

} // namespace

Shader_LightShaderReceiver::~Shader_LightShaderReceiver() {
    Shutdown();
}

bool Shader_LightShaderReceiver::Init(IMgrEffects* manager, IShader* shader) {
    if (!Shader_PassThrough::Init(manager, shader, true)) {
        return false;
    }
    _parameters.Copy(shader);
    const auto all = _parameters.GetPlain();
    for (const auto& [name, parameter] : all) {
        if (parameter->GetClass() == IParameter::kClass_Interface && !_Wrap(name, parameter)) {
            return false;
        }
    }
    return true;
}

bool Shader_LightShaderReceiver::_Wrap(const std::string& name, IParameter* parameter) {
    IParameter* const companion = _parameters.FindCompanion(name);
    if (companion == nullptr) {
        return true;
    }
    const std::string type = companion->GetType();
    if (parameter->IsArray()) {
        if (!TOLEN_CHECK_TEXT(type == "ivec2",
                              "array interface input requires ivec2 indexer parameter.", kSource)) {
            return false;
        }
        _parameters.Add(name, std::make_unique<Parameter_WrapperVectorInterfaceMulti>(parameter,
                                                                                      companion));
    } else {
        if (!TOLEN_CHECK_TEXT(type == "int", "interface input requires int indexer parameter.",
                              kSource)) {
            return false;
        }
        _parameters.Add(name, std::make_unique<Parameter_WrapperVectorInterfaceSingle>(parameter,
                                                                                       companion));
    }
    _parameters.Remove(name);
    _parameters.Remove(companion->GetName());
    return true;
}

void Shader_LightShaderReceiver::Shutdown() {
    _TellDelete();
    _parameters.Clear();
    Shader_PassThrough::Shutdown();
}

void Shader_LightShaderReceiver::_Detach() {
    _parameters.Detach();
}

IParameter* Shader_LightShaderReceiver::GetParameter(const std::string& name) {
    return _parameters.Find(name);
}

bool Shader_LightShaderReceiver::VisitParameters(
    FastDelegate2<const std::string&, IParameter*, bool>& visit) {
    return GetShader() != nullptr && _parameters.Visit(visit);
}

} // namespace Tolen::Effects

#include "Shader_LightShader.h"

#include "Parameter_WrapperArrayCell.h"
#include "Parameter_WrapperVectorInterfaceMultiToSingle.h"

#include "TolenCore/Assert.h"

#include <utility>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/Shader_LightShader";

} // namespace

Shader_LightShader::~Shader_LightShader() {
    Shutdown();
}

bool Shader_LightShader::Init(IMgrEffects* manager, IShader* shader, int index) {
    if (!Shader_PassThrough::Init(manager, shader, false)) {
        return false;
    }
    _index = index;
    _parameters.Copy(shader);
    return _Wrap();
}

void Shader_LightShader::Shutdown() {
    _TellDelete();
    _parameters.Clear();
    _index = -2;
    Shader_PassThrough::Shutdown();
}

bool Shader_LightShader::_Wrap() {
    auto shared = _parameters.GetPlain();
    for (const auto& [name, parameter] : _parameters.GetPlain()) {
        // The companion of an array of shaders has gone with that.
        if (!parameter->IsArray() || shared.count(name) == 0) {
            continue;
        }
        switch (parameter->GetClass()) {
        case IParameter::kClass_Undefined:
            TOLEN_CHECK_TEXT(false, "don't know how to wrap kClass_Undefined", kSource);
            break;
        case IParameter::kClass_Value: {
            _parameters.Add(name, std::make_unique<Parameter_WrapperArrayCell>(this, parameter));
            shared.erase(name);
            break;
        }
        case IParameter::kClass_Coord:
            TOLEN_CHECK_TEXT(false, "wrapping vectorized kClass_Coord param is not possible yet.",
                             kSource);
            return false;
        case IParameter::kClass_Interface:
            if (!_WrapInterface(name, parameter, shared)) {
                return false;
            }
            break;
        }
    }
    _parameters.SetPlain(std::move(shared));
    return true;
}

bool Shader_LightShader::_WrapInterface(const std::string& name, IParameter* parameter,
                                        std::map<std::string, IParameter*>& shared) {
    IParameter* const companion = _parameters.FindCompanion(name);
    if (companion == nullptr) {
        return true;
    }
    if (!TOLEN_CHECK_TEXT(companion->GetType() == "ivec2",
                          "array interface input requires ivec2 indexer parameter.", kSource)) {
        return false;
    }
    _parameters.Add(name, std::make_unique<Parameter_WrapperVectorInterfaceMultiToSingle>(
                              this, parameter, companion));
    shared.erase(name);
    shared.erase(companion->GetName());
    return true;
}

void Shader_LightShader::_Detach() {
    _parameters.Detach();
}

IParameter* Shader_LightShader::GetParameter(const std::string& name) {
    return _parameters.Find(name);
}

bool Shader_LightShader::VisitParameters(
    FastDelegate2<const std::string&, IParameter*, bool>& visit) {
    return GetShader() != nullptr && _parameters.Visit(visit);
}

bool Shader_LightShader::AddListenerChangeIndex(
    FastDelegate2<Shader_LightShader*, int, bool>& listener) {
    return _listenersChangeIndex.Add(listener);
}

bool Shader_LightShader::RemoveListenerChangeIndex(
    FastDelegate2<Shader_LightShader*, int, bool>& listener) {
    return _listenersChangeIndex.Remove(listener);
}

bool Shader_LightShader::SetSubIndex(int index, bool move) {
    if (index == _index) {
        return true;
    }
    const LifeToken::Watch alive = GetWatch();
    const bool isMoved = _parameters.ForEachWrapper(
        [=](IParameterWrapper_ArrayCell& wrapper) { return wrapper.SetSubIndex(index, move); });
    if (alive) {
        const int before = std::exchange(_index, index);
        _listenersChangeIndex.Fire(this, before);
    }
    return isMoved;
}

} // namespace Tolen::Effects

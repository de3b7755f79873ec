#include "Shader.h"

#include "PrototypeShader.h"
#include "ScopedResult.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"
#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <vector>

/// The setters of a shader: look up, set, and tell what went wrong.

namespace Tolen::Effects {

namespace {

constexpr const char* kNotFound = "Can't find parameter";
constexpr const char* kNotFoundIndexed = "Can't find indexed parameter";
constexpr const char* kRefused = "Can't set parameter";
constexpr const char* kRefusedIndexed = "Can't set indexed parameter";

} // namespace

template <class Set>
bool Shader::_SetParameter(Result* result, const std::string& name, const SetTexts& texts,
                           Set set) {
    return _Set(result, name, GetParameter(name), texts, set);
}

template <class Set>
bool Shader::_Set(Result* result, const std::string& name, IParameter* parameter,
                  const SetTexts& texts, Set set) {
    if (parameter == nullptr) {
        _ReportParameterError(result, texts.notFound, name);
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    const ScopedResult scope(GetMgrEffects(), result);
    const bool good = set(parameter);
    if (!good && alive) {
        _ReportParameterError(result, texts.refused, name);
    }
    return good;
}

#define TOLEN_DEFINE_SET_PARAMETER(specifier, T, typeName, bytes)                                  \
    bool Shader::SetParameter(Result* result, const std::string& name, ArgumentOf<T> value) {      \
        return _SetParameter(result, name, {kNotFound, kRefused},                                  \
                             [&](IParameter* parameter) { return parameter->Set(value); });        \
    }                                                                                              \
    bool Shader::SetParameter(Result* result, const std::string& name, ArgumentOf<T> value,        \
                              int index) {                                                         \
        return _SetParameter(result, name, {kNotFoundIndexed, kRefusedIndexed},                    \
                             [&](IParameter* parameter) { return parameter->Set(value, index); }); \
    }                                                                                              \
    bool Shader::SetParameter(Result* result, const std::string& name, const T* values,            \
                              int count) {                                                         \
        return _SetParameter(                                                                      \
            result, name, {kNotFoundIndexed, kRefusedIndexed},                                     \
            [&](IParameter* parameter) { return parameter->Set(values, count); });                 \
    }
TOLEN_ELEMENT_TYPES(TOLEN_DEFINE_SET_PARAMETER)
#undef TOLEN_DEFINE_SET_PARAMETER

bool Shader::SetParameter(Result* result, const std::string& name, IShader* shader) {
    if (!_IsCompatible(result, shader)) {
        return false;
    }
    if (GetParameter(name) == nullptr) {
        _Report(result,
                Format("Can't get parameter %s of the shader %s\n", name.c_str(), _name.c_str()));
        return false;
    }
    IShader* const base = GetBase(shader);
    return _SetParameter(result, name, {kNotFound, kRefused},
                         [&](IParameter* parameter) { return parameter->Set(base); });
}

bool Shader::SetParameter(Result* result, const std::string& name, IShader* shader, int index) {
    if (!_IsCompatible(result, shader)) {
        return false;
    }
    IShader* const base = GetBase(shader);
    return _SetParameter(result, name, {kNotFoundIndexed, kRefusedIndexed},
                         [&](IParameter* parameter) { return parameter->Set(base, index); });
}

bool Shader::SetParameter(Result* result, const std::string& name, IShader** shaders, int count) {
    std::vector<IShader*> bases;
    for (int i = 0; i < count && shaders != nullptr; ++i) {
        if (!_IsCompatible(result, shaders[i])) {
            return false;
        }
        bases.push_back(GetBase(shaders[i]));
    }
    IShader** const values = shaders == nullptr ? nullptr : bases.data();
    return _SetParameter(result, name, {kNotFoundIndexed, kRefusedIndexed},
                         [&](IParameter* parameter) { return parameter->Set(values, count); });
}

bool Shader::SetCoord(Result* result, const std::string& name, const std::string& value) {
    return _Set(result, name, GetCoord(name), {kNotFound, kRefused},
                [&](IParameter* coord) { return coord->Set(value); });
}

bool Shader::_IsCompatible(Result* result, IShader* shader) {
    if (shader == nullptr || GetBase(shader) != nullptr) {
        return true;
    }
    _Report(result, Format("sub shader %s can not be attached to %s, it's not compatible\n",
                           shader->GetName().c_str(), _name.c_str()));
    return false;
}

void Shader::_ReportParameterError(Result* result, const char* text, const std::string& name) {
    IMgrEffects* manager = GetMgrEffects();
    if (manager == nullptr || manager->GetConsole() == nullptr) {
        return;
    }
    _Report(result, Format("Parameter error \"%s\" parameter:\"%s\" class:\"%s\"\n", text,
                           name.c_str(), GetClassName().c_str()));
}

void Shader::_Report(Result* result, const std::string& text) {
    IMgrEffects* manager = GetMgrEffects();
    if (manager != nullptr && manager->GetConsole() != nullptr) {
        manager->GetConsole()->Print("%s", text.c_str());
    }
    if (result != nullptr) {
        result->Add("%s", text.c_str());
    }
}

} // namespace Tolen::Effects

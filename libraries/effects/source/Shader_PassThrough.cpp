#include "Shader_PassThrough.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"

#include "TolenCore/Assert.h"

#include <utility>

namespace Tolen::Effects {

Shader_PassThrough::~Shader_PassThrough() {
    Shutdown();
}

bool Shader_PassThrough::Init(IMgrEffects* manager, IShader* shader, bool isOwner) {
    if (manager == nullptr || shader == nullptr) {
        return false;
    }
    _pMgrEffects = manager;
    _pShader = shader;
    _isOwner = isOwner;
    auto onDelete = MakeDelegate(this, &Shader_PassThrough::_OnDeleteShader);
    return Effects::AddListenerEnd(_pShader, onDelete);
}

void Shader_PassThrough::Shutdown() {
    _TellDelete();
    IShader* const shader = std::exchange(_pShader, nullptr);
    IMgrEffects* const manager = std::exchange(_pMgrEffects, nullptr);
    if (shader == nullptr) {
        return;
    }
#define TOLEN_RELAY(name, ...) _relay##name.Clear(shader, &IShader::RemoveListener##name);
    TOLEN_SHADER_LISTENERS(TOLEN_RELAY)
#undef TOLEN_RELAY
    auto onDelete = MakeDelegate(this, &Shader_PassThrough::_OnDeleteShader);
    Effects::RemoveListenerEnd(shader, onDelete);
    if (_isOwner) {
        manager->DestroyShader(shader);
    }
}

void Shader_PassThrough::_TellDelete() {
    _isGoing = true;
    _listenersDelete.Fire(this);
    _listenersDelete.Clear();
    _FireEnd(this);
}

bool Shader_PassThrough::_OnDeleteShader(IShader* shader) {
    const LifeToken::Watch alive = _life.GetWatch();
    _listenersDelete.Fire(shader);
    if (!alive || _pShader == nullptr) {
        return true;
    }
    _Detach();
    _pShader = nullptr;
    TOLEN_CHECK_TEXT(false, "possible object leak", "Source/Shader_PassThrough");
    return true;
}

#define TOLEN_FORWARD(answer, name, parameters, arguments)                                         \
    answer Shader_PassThrough::name parameters {                                                   \
        return _pShader == nullptr ? IShader::name arguments : _pShader->name arguments;           \
    }
TOLEN_SHADER_SLOTS(TOLEN_FORWARD)
#undef TOLEN_FORWARD

bool Shader_PassThrough::AddListenerDelete(FastDelegate1<IShader*, bool>& listener) {
    return _pShader != nullptr && _listenersDelete.Add(listener);
}

bool Shader_PassThrough::RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener) {
    return _listenersDelete.Remove(listener) && _pShader != nullptr;
}

#define TOLEN_RELAY(name, ...)                                                                     \
    bool Shader_PassThrough::AddListener##name(                                                    \
        fastdelegate::FastDelegate<bool, __VA_ARGS__>& listener) {                                 \
        return _relay##name.Add(_pShader, &IShader::AddListener##name, listener);                  \
    }                                                                                              \
    bool Shader_PassThrough::RemoveListener##name(                                                 \
        fastdelegate::FastDelegate<bool, __VA_ARGS__>& listener) {                                 \
        return _relay##name.Remove(_pShader, &IShader::RemoveListener##name, listener);            \
    }
TOLEN_SHADER_LISTENERS(TOLEN_RELAY)
#undef TOLEN_RELAY

template <class Set>
bool Shader_PassThrough::_SetParameter(const std::string& name, Set set) {
    IParameter* const parameter = GetParameter(name);
    return parameter != nullptr && set(parameter);
}

#define TOLEN_SET(T, Argument, Elements)                                                           \
    bool Shader_PassThrough::SetParameter(Result*, const std::string& name, Argument value) {      \
        return _SetParameter(name, [&](IParameter* parameter) { return parameter->Set(value); });  \
    }                                                                                              \
    bool Shader_PassThrough::SetParameter(Result*, const std::string& name, Argument value,        \
                                          int index) {                                             \
        return _SetParameter(                                                                      \
            name, [&](IParameter* parameter) { return parameter->Set(value, index); });            \
    }                                                                                              \
    bool Shader_PassThrough::SetParameter(Result*, const std::string& name, Elements values,       \
                                          int count) {                                             \
        return _SetParameter(                                                                      \
            name, [&](IParameter* parameter) { return parameter->Set(values, count); });           \
    }
#define TOLEN_SET_ELEMENT(specifier, T, typeName, bytes) TOLEN_SET(T, ArgumentOf<T>, const T*)
TOLEN_ELEMENT_TYPES(TOLEN_SET_ELEMENT)
TOLEN_SET(IShader*, IShader*, IShader**)
#undef TOLEN_SET_ELEMENT
#undef TOLEN_SET

} // namespace Tolen::Effects

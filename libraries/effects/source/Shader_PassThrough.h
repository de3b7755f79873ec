#pragma once

#include "EndingShader.h"
#include "ListenerRelay.h"
#include "ShaderSlots.h"

#include "TolenEffects/IShader.h"

#include "TolenCore/CreationOrder.h"
#include "TolenCore/LifeToken.h"
#include "TolenCore/ListenerSet.h"

namespace Tolen::Effects {

/// A shader that presents a real one with a changed view of its parameters.
class IShaderWrapper : public IShader {};

/// Passes everything on to a real shader, but for what depends on its parameters: values are set
/// through the parameters that this view shows.
///
/// Listeners added through the view are the view's: they hear what the real shader tells and are
/// taken off it when the view goes. Delete listeners hear of the real shader's end, and then of the
/// view's own. The real shader should outlive its views; when it doesn't, a check fails, and the
/// view answers false, null or an empty text from then on.
class Shader_PassThrough : public IShaderWrapper, public CreationOrder, public EndingShader {
public:
    Shader_PassThrough() = default;
    ~Shader_PassThrough() override;
    Shader_PassThrough(const Shader_PassThrough&) = delete;
    Shader_PassThrough& operator=(const Shader_PassThrough&) = delete;

    /// @param manager borrowed
    /// @param shader  the real one; borrowed unless @p isOwner
    /// @return false without a manager or a shader
    bool Init(IMgrEffects* manager, IShader* shader, bool isOwner);
    /// Tells the delete listeners, lets the real shader go and destroys it if it is owned. Safe to
    /// repeat.
    void Shutdown();

    /// Whether the end has begun: from then on nothing new may hold the view.
    bool IsGoing() const { return _isGoing; }
    /// Tells whether the view is still there.
    LifeToken::Watch GetWatch() const { return _life.GetWatch(); }

#define TOLEN_FORWARD(answer, name, parameters, arguments) answer name parameters override;
    TOLEN_SHADER_SLOTS(TOLEN_FORWARD)
#undef TOLEN_FORWARD
    bool AddListenerDelete(FastDelegate1<IShader*, bool>& listener) override;
    bool RemoveListenerDelete(FastDelegate1<IShader*, bool>& listener) override;
#define TOLEN_RELAY(name, ...)                                                                     \
    bool AddListener##name(fastdelegate::FastDelegate<bool, __VA_ARGS__>& listener) override;      \
    bool RemoveListener##name(fastdelegate::FastDelegate<bool, __VA_ARGS__>& listener) override;
    TOLEN_SHADER_LISTENERS(TOLEN_RELAY)
#undef TOLEN_RELAY

    /// Sets the parameter that GetParameter of this view gives. Nothing is told to @p result. A
    /// shader that is a view itself is passed as it is.
#define TOLEN_SET(T, Argument, Elements)                                                           \
    bool SetParameter(Result* result, const std::string& name, Argument value) override;           \
    bool SetParameter(Result* result, const std::string& name, Argument value, int index)          \
        override;                                                                                  \
    bool SetParameter(Result* result, const std::string& name, Elements values, int count) override;
#define TOLEN_SET_ELEMENT(specifier, T, typeName, bytes) TOLEN_SET(T, ArgumentOf<T>, const T*)
    TOLEN_ELEMENT_TYPES(TOLEN_SET_ELEMENT)
    TOLEN_SET(IShader*, IShader*, IShader**)
#undef TOLEN_SET_ELEMENT
#undef TOLEN_SET

    shaderType GetShaderType() override { return kShaderType_Undefined; }

    /// The real shader, borrowed; null before Init and when it is gone.
    virtual IShader* GetShader() { return _pShader; }

protected:
    /// The real shader goes, and is still whole.
    virtual bool _OnDeleteShader(IShader* shader);
    /// Forgets what belongs to the real shader.
    virtual void _Detach() {}
    /// Tells those who hold this view that it ends, while it is whole; once.
    void _TellDelete();

private:
    template <class Set>
    bool _SetParameter(const std::string& name, Set set);

    IShader* _pShader = nullptr;         ///< borrowed unless _isOwner
    IMgrEffects* _pMgrEffects = nullptr; ///< borrowed
    bool _isOwner = false;
    bool _isGoing = false;
    ListenerSet<FastDelegate1<IShader*, bool>> _listenersDelete;
#define TOLEN_RELAY(name, ...) ListenerRelay<__VA_ARGS__> _relay##name;
    TOLEN_SHADER_LISTENERS(TOLEN_RELAY)
#undef TOLEN_RELAY
    LifeToken _life;
};

} // namespace Tolen::Effects

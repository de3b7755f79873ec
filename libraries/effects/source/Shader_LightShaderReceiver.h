#pragma once

#include "IParameterWrapper.h"
#include "Shader_PassThrough.h"
#include "WrappedParameters.h"

namespace Tolen::Effects {

/// Shows a shader with inputs for lights so that lights are connected to it like other shaders: an
/// input `x` that takes shaders and has a companion `xRef` of indexers shows without it.
class Shader_LightShaderReceiver final : public Shader_PassThrough {
public:
    Shader_LightShaderReceiver() = default;
    ~Shader_LightShaderReceiver() override;

    /// @param manager borrowed
    /// @param shader  the real one, owned from here on
    /// @return false without a manager or a shader, and for companions of the wrong type
    bool Init(IMgrEffects* manager, IShader* shader);
    /// Destroys the real shader. Safe to repeat.
    void Shutdown();

    IParameter* GetParameter(const std::string& name) override;
    /// Stops at the first that @p visit answers false for.
    bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) override;

protected:
    void _Detach() override;

private:
    bool _Wrap(const std::string& name, IParameter* parameter);

    WrappedParameters<IParameterWrapper> _parameters;
};

} // namespace Tolen::Effects

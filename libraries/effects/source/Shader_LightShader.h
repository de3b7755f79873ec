#pragma once

#include "IParameterWrapper.h"
#include "Shader_PassThrough.h"
#include "WrappedParameters.h"

namespace Tolen::Effects {

/// Shows one cell of a shader whose inputs are arrays as if it were a shader of its own: one light.
///
/// Arrays of values show their cell. An array of shaders `x` with a companion `ivec2 xRef[]` shows
/// as an input for one shader, and the companion is hidden; without a companion it stays as it is.
/// Inputs that are no arrays are common to all lights of the class.
class Shader_LightShader final : public Shader_PassThrough {
public:
    Shader_LightShader() = default;
    ~Shader_LightShader() override;

    /// @param manager, shader borrowed
    /// @param index the cell
    /// @return false without a manager or a shader, and for a class whose inputs can't be shown
    bool Init(IMgrEffects* manager, IShader* shader, int index);
    /// Safe to repeat. The cell's connections are marked as those of no light.
    void Shutdown();

    IParameter* GetParameter(const std::string& name) override;
    /// Stops at the first that @p visit answers false for.
    bool VisitParameters(FastDelegate2<const std::string&, IParameter*, bool>& visit) override;

    /// Listeners that hear when the view shows another cell, with the cell before.
    virtual bool AddListenerChangeIndex(FastDelegate2<Shader_LightShader*, int, bool>& listener);
    virtual bool RemoveListenerChangeIndex(FastDelegate2<Shader_LightShader*, int, bool>& listener);

    /// The cell; -1 before Init, -2 after Shutdown.
    int GetSubIndex() const { return _index; }
    /// Shows another cell from now on.
    /// @param move whether the values of the old cell go into the new one
    /// @return false when a value couldn't be moved; those behind it then stay where they were
    bool SetSubIndex(int index, bool move);

protected:
    void _Detach() override;

private:
    bool _Wrap();
    bool _WrapInterface(const std::string& name, IParameter* parameter,
                        std::map<std::string, IParameter*>& shared);

    int _index = -1;
    WrappedParameters<IParameterWrapper_ArrayCell> _parameters;
    ListenerSet<FastDelegate2<Shader_LightShader*, int, bool>> _listenersChangeIndex;
};

} // namespace Tolen::Effects

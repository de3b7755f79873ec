#pragma once

#include "support/CapturedConsole.h"

#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Assets.h"
#include "TolenCore/CreationOrder.h"
#include "TolenCore/Result.h"

#include <memory>
#include <string>
#include <vector>

namespace Tolen::Tests {

/// The library on the embedded OpenKL, as a client has it, for trying out sources.
///
/// Rays carry "throughput" (vec3) and "direct" (float); there is a global variable "wetness"
/// (float). "o_color" goes to attachment 0.
class ShaderRig : public CreationOrder {
public:
    ShaderRig();
    ~ShaderRig();
    ShaderRig(const ShaderRig&) = delete;
    ShaderRig& operator=(const ShaderRig&) = delete;

    /// Makes a text available to `#include` and Load.
    void AddFile(const std::string& name, const std::string& text);

    /// Preprocesses and parses a file.
    bool Load(const std::string& name);

    /// Connects new shaders to inputs of all shaders of class Show that are made from now on.
    /// @param connections as in "first:Dots,list:Dots+Rings"; several make an array of that length
    void SetConnections(const std::string& connections) { _connections = connections; }

    /// Makes a shader of a class, and an effect of each kind whose entry the class has: a renderer
    /// with Render, a surface with Shade, or a prefix in its place.
    bool Use(const std::string& className, bool isPrefix);

    /// Renders one pixel, at its centre, with a class that has Render.
    /// @return red, green, blue; empty when that failed
    std::vector<float> RenderPixel(const std::string& className);

    /// Everything that was told so far, on the console and in results.
    std::string GetMessages() const;

    /// The texts that the library generated so far.
    const std::string& GetPrograms() const { return _programs; }

private:
    Effects::IShader* _Create(const std::string& className);
    bool _Connect(Effects::IShader* shader, const std::string& input, const std::string& classes);
    bool _OnText(const IKLShader& shader, const std::string& text);
    bool _Compile(Effects::IEffect* effect, Effects::IShader* root, IKLPrimitive* primitive);

    CapturedConsole _console;
    MgrAssets _assets;
    IMgrAssets* _pAssetsBefore; ///< borrowed
    Result _result;
    std::string _programs;
    std::string _connections;
    OpenKL::IContext* _pContext; ///< owned
    std::unique_ptr<Effects::MgrEffects> _pManager;
};

} // namespace Tolen::Tests

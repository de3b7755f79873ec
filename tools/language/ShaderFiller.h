#pragma once

#include <map>
#include <string>
#include <vector>

namespace Tolen::Effects {
class IParameter;
class IPrototypeShader;
class IShader;
class MgrEffects;
} // namespace Tolen::Effects

namespace Tolen::Language {

/// Gives shaders all that a program needs of them, with what is nearest at hand: coords get the
/// vertex attribute of their own name, and what is to be connected gets a shader of the class, or
/// of one that does nothing. Destroys what it has made with itself.
class ShaderFiller {
public:
    /// @param manager borrowed
    /// @param implementations classes that do nothing, by their interfaces; borrowed
    ShaderFiller(Effects::MgrEffects& manager,
                 const std::map<std::string, std::string>& implementations);
    ~ShaderFiller();
    ShaderFiller(const ShaderFiller&) = delete;
    ShaderFiller& operator=(const ShaderFiller&) = delete;

    /// A shader with all that it needs. @return null when it can't be made
    Effects::IShader* Make(const std::string& className);
    /// Fills the static inputs of a class.
    void Fill(Effects::IPrototypeShader& prototype);

private:
    bool _FillParameter(const std::string& name, Effects::IParameter* parameter);
    void _FillShader(Effects::IShader& shader);
    Effects::IShader* _MakeFor(const std::string& type);

    Effects::MgrEffects& _manager;
    const std::map<std::string, std::string>& _implementations;
    std::vector<Effects::IShader*> _made; ///< outer ones first
    int _depth = 0;
};

} // namespace Tolen::Language

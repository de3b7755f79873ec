#pragma once

#include "TolenOpenKLWrapper/IKLShader.h"

#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

class Context;
class Program;
struct CompiledShader;

/// A text and what it compiled to. Programs share the compiled text, so that what is linked lives
/// on when the shader changes or goes.
class Shader : public IKLShader {
public:
    Shader(Context& context, Type type);
    ~Shader() override;
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    Type GetType() const override { return _type; }
    void SetName(const std::string& name) override { _name = name; }
    const std::string& GetName() const override { return _name; }
    bool SetString(const std::string& text, Result* result) override;

    /// Keeps the programs that the shader is attached to, so that it can leave them when it dies.
    void OnAttached(Program& program) { _programs.push_back(&program); }
    void OnDetached(Program& program) { std::erase(_programs, &program); }

    /// Null before a text has compiled.
    const std::shared_ptr<const CompiledShader>& GetCompiled() const { return _pCompiled; }

private:
    Context& _context;
    Type _type;
    std::string _name;
    std::shared_ptr<const CompiledShader> _pCompiled;
    std::vector<Program*> _programs; ///< borrowed
};

} // namespace Tolen::OpenKL

#pragma once

#include "engine/Kernel.h"

#include "TolenOpenKLWrapper/IKLProgram.h"

#include "TolenCore/ListenerSet.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

class Context;
class Shader;
struct LinkedProgram;

/// What one link made. It never changes; primitives and renders share it.
struct LinkedCode {
    std::uint64_t serial = 0;       ///< differs for every link of the process
    std::string name;               ///< of the program at that time, for messages
    std::vector<std::string> texts; ///< names of the shaders, for messages
    std::shared_ptr<const LinkedProgram> program;
    std::unique_ptr<const Kernel> main;
    std::unique_ptr<const Kernel> vertex; ///< null without a vertex shader
};

/// Shaders and what they linked to.
class Program : public IKLProgram {
public:
    explicit Program(Context& context);
    ~Program() override;
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    void SetName(const std::string& name) override { _name = name; }
    const std::string& GetName() const override { return _name; }
    bool AddShader(IKLShader* shader) override;
    bool DetachShader(IKLShader* shader) override;
    bool Link(Result* result) override;
    int GetUniformLocation(const std::string& name) const override;
    int GetUniformBlockLocation(const std::string& name) const override;
    int GetAttributeLocation(const std::string& name) const override;
    KLprogram GetHandle() const override { return _handle; }
    bool AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override;
    bool RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) override;

    /// What the last link made; null before the first and after one that failed.
    const std::shared_ptr<const LinkedCode>& GetCode() const { return _pCode; }

private:
    std::shared_ptr<const LinkedCode> _Link(std::string& messages) const;

    Context& _context;
    std::string _name;
    KLprogram _handle;
    std::vector<Shader*> _shaders; ///< borrowed
    std::shared_ptr<const LinkedCode> _pCode;
    ListenerSet<FastDelegate1<IKLProgram*, bool>> _linkListeners;
};

} // namespace Tolen::OpenKL

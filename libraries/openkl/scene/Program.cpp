#include "scene/Program.h"

#include "compiler/LinkedProgram.h"
#include "scene/Context.h"
#include "scene/ObjectRegistry.h"
#include "scene/ScopedSeconds.h"
#include "scene/Shader.h"

#include "TolenCore/Result.h"

#include <algorithm>

namespace Tolen::OpenKL {

Program::Program(Context& context) : _context(context), _handle(RegisterProgram(*this)) {}

Program::~Program() {
    UnregisterProgram(_handle);
    for (Shader* shader : _shaders) {
        shader->OnDetached(*this);
    }
}

bool Program::AddShader(IKLShader* shader) {
    Shader* const own = _context.FindShader(shader);
    if (own == nullptr) {
        return false;
    }
    if (std::find(_shaders.begin(), _shaders.end(), own) == _shaders.end()) {
        _shaders.push_back(own);
        own->OnAttached(*this);
    }
    return true;
}

bool Program::DetachShader(IKLShader* shader) {
    const auto found = std::find(_shaders.begin(), _shaders.end(), shader);
    if (found == _shaders.end()) {
        return false;
    }
    Shader* const own = *found;
    _shaders.erase(found);
    own->OnDetached(*this);
    return true;
}

bool Program::Link(Result* result) {
    std::string messages;
    {
        const ScopedSeconds seconds(_context.GetCounters().linkSeconds);
        _pCode = _Link(messages);
    }
    ++_context.GetCounters().programsLinked;
    if (_pCode == nullptr) {
        if (result != nullptr) {
            result->Add("%s", messages.c_str());
        }
        return false;
    }
    _linkListeners.FireAll(this);
    return true;
}

std::shared_ptr<const LinkedCode> Program::_Link(std::string& messages) const {
    auto code = std::make_shared<LinkedCode>();
    std::vector<LinkInput> texts;
    for (const Shader* shader : _shaders) {
        if (shader->GetCompiled() == nullptr) {
            messages =
                "error: shader '" + shader->GetName() + "' of program '" + _name + "' has no code";
            return nullptr;
        }
        texts.push_back({shader->GetName(), shader->GetCompiled()});
        code->texts.push_back(shader->GetName());
    }
    code->serial = MakeStamp();
    code->name = _name;
    code->program = LinkProgram(_name, texts, messages);
    if (code->program == nullptr) {
        return nullptr;
    }

    const KernelOptions options{
        .loopSteps = static_cast<std::uint64_t>(_context.GetOptions().limits.loopSteps)};
    std::string error;
    code->main = Kernel::Compile(*code->program, KernelStage::Main, options, &error);
    if (code->main != nullptr && code->program->vertex != nullptr) {
        code->vertex = Kernel::Compile(*code->program, KernelStage::Vertex, options, &error);
    }
    if (!error.empty()) {
        messages = "error: program '" + _name + "': " + error;
        return nullptr;
    }
    return code;
}

int Program::GetUniformLocation(const std::string& name) const {
    return _pCode == nullptr ? -1 : _pCode->program->GetUniformLocation(name);
}

int Program::GetUniformBlockLocation(const std::string& name) const {
    return _pCode == nullptr ? -1 : _pCode->program->GetUniformBlockLocation(name);
}

int Program::GetAttributeLocation(const std::string& name) const {
    return _pCode == nullptr ? -1 : _pCode->program->GetAttributeLocation(name);
}

bool Program::AddListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) {
    return _linkListeners.Add(listener);
}

bool Program::RemoveListenerLink(const FastDelegate1<IKLProgram*, bool>& listener) {
    return _linkListeners.Remove(listener);
}

} // namespace Tolen::OpenKL

#include "scene/Shader.h"

#include "compiler/CompiledShader.h"
#include "scene/Context.h"
#include "scene/Program.h"
#include "scene/ScopedSeconds.h"

#include "TolenCore/Result.h"

#include <utility>

namespace Tolen::OpenKL {

namespace {

Stage ToStage(IKLShader::Type type) {
    switch (type) {
    case IKLShader::kType_Vertex:
        return kStage_Vertex;
    case IKLShader::kType_Frame:
        return kStage_Frame;
    case IKLShader::kType_PrefixRay:
        return kStage_Prefix;
    case IKLShader::kType_Ray:
        break;
    }
    return kStage_Ray;
}

} // namespace

Shader::Shader(Context& context, Type type) : _context(context), _type(type) {}

Shader::~Shader() {
    for (Program* program : std::vector<Program*>(std::move(_programs))) {
        program->DetachShader(this);
    }
}

bool Shader::SetString(const std::string& text, Result* result) {
    _context.OnText(*this, text);
    std::string messages;
    {
        const ScopedSeconds seconds(_context.GetCounters().compileSeconds);
        _pCompiled = CompileShader(ToStage(_type), text, messages);
    }
    ++_context.GetCounters().shadersCompiled;
    if (_pCompiled == nullptr && result != nullptr) {
        result->Add("%s", messages.c_str());
    }
    return _pCompiled != nullptr;
}

} // namespace Tolen::OpenKL

#include "support/RecordingContext.h"

#include <utility>

namespace Tolen::Tests {

int RecordingContext::GetCountLive() const {
    return static_cast<int>(_shaders.live.size() + _programs.live.size() + _buffers.live.size() +
                            _images.live.size());
}

template <class T, class... Args>
T* RecordingContext::_Create(Kind<T>& kind, const std::string& operation, const std::string& noun,
                             const std::string& details, Args&&... args) {
    if (!_log.Begin(operation)) {
        _log.End(operation, details, false);
        return nullptr;
    }
    const int number = ++kind.last;
    const std::string id = noun + std::to_string(number);
    _log.End(operation, details + "-> " + id);
    auto& object = kind.live[number];
    object = std::make_unique<T>(*this, id, std::forward<Args>(args)...);
    return object.get();
}

template <class T, class I>
void RecordingContext::_Destroy(Kind<T>& kind, const std::string& operation, I* object) {
    if (object == nullptr) {
        return;
    }
    for (auto it = kind.live.begin(); it != kind.live.end(); ++it) {
        if (it->second.get() == object) {
            _log.Record(operation, it->second->GetId());
            kind.live.erase(it);
            return;
        }
    }
    _log.AddMisuse(operation + " of an object that is not alive");
}

IKLShader* RecordingContext::CreateShader(IKLShader::Type type) {
    static const char* const names[] = {"ray ", "vertex ", "frame ", "prefix "};
    return _Create(_shaders, "CreateShader", "shader", names[type], type);
}

void RecordingContext::DestroyShader(IKLShader* shader) {
    for (const auto& entry : _programs.live) {
        entry.second->Forget(static_cast<RecordingShader*>(shader));
    }
    _Destroy(_shaders, "DestroyShader", shader);
}

IKLProgram* RecordingContext::CreateProgram() {
    return _Create(_programs, "CreateProgram", "program", "");
}

void RecordingContext::DestroyProgram(IKLProgram* program) {
    _Destroy(_programs, "DestroyProgram", program);
}

IKLBuffer* RecordingContext::CreateBuffer() {
    return _Create(_buffers, "CreateBuffer", "buffer", "");
}

void RecordingContext::DestroyBuffer(IKLBuffer* buffer) {
    _Destroy(_buffers, "DestroyBuffer", buffer);
}

IKLTexImage2D* RecordingContext::CreateTexImage2D() {
    return _Create(_images, "CreateTexImage2D", "image", "");
}

void RecordingContext::DestroyTexImage2D(IKLTexImage2D* image) {
    _Destroy(_images, "DestroyTexImage2D", image);
}

} // namespace Tolen::Tests

#include "support/RecordingPrimitive.h"

#include "support/RecordingBindings.h"
#include "support/RecordingContext.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <sstream>

namespace Tolen::Tests {

namespace {

/// X(C++ type, keyword) for the types whose text is that of their stream.
#define TOLEN_STREAMED_TYPES(X)                                                                    \
    X(Matrix44f, "mat4")                                                                           \
    X(Matrix33f, "mat3")                                                                           \
    X(Vector4f, "vec4")                                                                            \
    X(Vector3f, "vec3")                                                                            \
    X(Vector2f, "vec2")                                                                            \
    X(float, "float")                                                                              \
    X(int, "int")

#define TOLEN_DEFINE_TEXT(T, keyword)                                                              \
    const char* Keyword(const T&) {                                                                \
        return keyword;                                                                            \
    }                                                                                              \
    std::string Text(const T& value) {                                                             \
        std::ostringstream stream;                                                                 \
        stream << value;                                                                           \
        return stream.str();                                                                       \
    }
TOLEN_STREAMED_TYPES(TOLEN_DEFINE_TEXT)
#undef TOLEN_DEFINE_TEXT
#undef TOLEN_STREAMED_TYPES

const char* Keyword(const Vector4i&) {
    return "ivec4";
}
std::string Text(const Vector4i& v) {
    return Format("(%d,%d,%d,%d)", v.x, v.y, v.z, v.w);
}
const char* Keyword(const Vector3i&) {
    return "ivec3";
}
std::string Text(const Vector3i& v) {
    return Format("(%d,%d,%d)", v.x, v.y, v.z);
}
const char* Keyword(const Vector2i&) {
    return "ivec2";
}
std::string Text(const Vector2i& v) {
    return Format("(%d,%d)", v.x, v.y);
}
const char* Keyword(const bool&) {
    return "bool";
}
std::string Text(const bool& value) {
    return value ? "true" : "false";
}
const char* Keyword(const KLprimitive&) {
    return "primitive";
}
std::string Text(const KLprimitive& value) {
    return Format("%d", static_cast<int>(value));
}
const char* Keyword(const KLtexture&) {
    return "texture";
}
std::string Text(const KLtexture& value) {
    return value == nullptr ? "null" : value->id;
}

} // namespace

RecordingPrimitive::RecordingPrimitive(RecordingContext& context)
    : _context(context), _handle(context.MakePrimitiveHandle()) {}

RecordingPrimitive::~RecordingPrimitive() {
    auto& bound = RecordingBindings::Get().primitives;
    bound.erase(std::remove(bound.begin(), bound.end(), this), bound.end());
}

std::string RecordingPrimitive::GetId() const {
    return Format("primitive%d", static_cast<int>(_handle));
}

std::string RecordingPrimitive::GetUniform(const std::string& name) const {
    const auto found = _uniforms.find(name);
    return found == _uniforms.end() ? "" : found->second;
}

RecordingProgram* RecordingPrimitive::GetProgram() const {
    const auto& programs = RecordingBindings::Get().programs;
    const auto found = programs.find(_program);
    return found == programs.end() ? nullptr : found->second;
}

int RecordingPrimitive::GetCountBound() const {
    const auto& bound = RecordingBindings::Get().primitives;
    return static_cast<int>(std::count(bound.begin(), bound.end(), this));
}

void RecordingPrimitive::Bind() {
    _context.GetLog().Record("BindPrimitive", GetId());
    RecordingBindings::Get().primitives.push_back(this);
}

void RecordingPrimitive::Unbind() {
    _context.GetLog().Record("UnbindPrimitive", GetId());
    auto& bound = RecordingBindings::Get().primitives;
    if (bound.empty() || bound.back() != this) {
        _context.GetLog().AddMisuse("UnbindPrimitive " + GetId() + " is not the innermost");
        return;
    }
    bound.pop_back();
}

bool RecordingPrimitive::_Write(const std::string& operation, const std::string& name, int location,
                                const std::string& value) {
    const bool good = _context.GetLog().Begin(operation) && location >= 0;
    if (good) {
        _uniforms[name] = value;
    }
    return _context.GetLog().End(
        operation, GetId() + " \"" + name + "\" @" + Format("%d ", location) + value, good);
}

template <class T>
bool RecordingPrimitive::_WriteArray(const std::string& name, int location, int count,
                                     const T* values) {
    std::string text = Format("%s[%d]", Keyword(T()), count);
    for (int i = 0; i < count; ++i) {
        text += ' ';
        text += Text(values[i]);
    }
    return _Write("SetUniformArray", name, location, text);
}

#define TOLEN_DEFINE_UNIFORM(T)                                                                    \
    bool RecordingPrimitive::SetUniform(const std::string& name, int location, const T& value) {   \
        return _Write("SetUniform", name, location,                                                \
                      Format("%s %s", Keyword(value), Text(value).c_str()));                       \
    }                                                                                              \
    bool RecordingPrimitive::SetUniformArray(const std::string& name, int location, int count,     \
                                             const T* values) {                                    \
        return _WriteArray(name, location, count, values);                                         \
    }
TOLEN_UNIFORM_TYPES(TOLEN_DEFINE_UNIFORM)
#undef TOLEN_DEFINE_UNIFORM

bool RecordingPrimitive::SetUniformBlock(const std::string& name, int location, IKLBuffer* buffer) {
    const auto* recording = static_cast<const RecordingBuffer*>(buffer);
    return _Write("SetUniformBlock", name, location,
                  "block " + (recording == nullptr ? "null" : recording->GetId()));
}

bool RecordingPrimitive::SetUniformTexture(const std::string& name, int location,
                                           KLtexture texture) {
    return _Write("SetUniformTexture", name, location, "texture " + Text(texture));
}

} // namespace Tolen::Tests

#include "scene/Primitive.h"

#include "scene/Buffer.h"
#include "scene/Context.h"
#include "scene/ObjectRegistry.h"
#include "scene/Program.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Tolen::OpenKL {

Primitive::Primitive(Context& context)
    : _context(context), _handle(static_cast<KLprimitive>(MakeHandle())) {}

Primitive::~Primitive() {
    ForgetBoundPrimitive(*this);
}

void Primitive::Bind() {
    PushBoundPrimitive(*this);
}
void Primitive::Unbind() {
    PopBoundPrimitive(*this);
}

const UniformStore& Primitive::GetUniforms() {
    const Program* const program = FindProgram(_program);
    _uniforms.Adopt(program == nullptr ? nullptr : program->GetCode());
    return _uniforms;
}

bool Primitive::_CountWrite(bool isTaken) {
    _context.GetCounters().uniformWrites += isTaken ? 1 : 0;
    return isTaken;
}

#define TOLEN_DEFINE_UNIFORM(T)                                                                    \
    bool Primitive::SetUniform(const std::string& name, int location, const T& value) {            \
        return SetUniformArray(name, location, 1, &value);                                         \
    }                                                                                              \
    bool Primitive::SetUniformArray(const std::string&, int location, int count,                   \
                                    const T* values) {                                             \
        GetUniforms();                                                                             \
        return _CountWrite(_uniforms.Write(location, count, values));                              \
    }
TOLEN_UNIFORM_TYPES(TOLEN_DEFINE_UNIFORM)
#undef TOLEN_DEFINE_UNIFORM

bool Primitive::SetUniformBlock(const std::string&, int location, IKLBuffer* buffer) {
    const Buffer* const own = _context.FindBuffer(buffer);
    if (buffer != nullptr && own == nullptr) {
        return false;
    }
    GetUniforms();
    return _CountWrite(_uniforms.SetBlock(location, own));
}

bool Primitive::SetUniformTexture(const std::string& name, int location, KLtexture texture) {
    return SetUniform(name, location, texture);
}

bool Primitive::SetTriangles(const std::uint32_t* indices, std::size_t triangles) {
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max() / 3;
    if (triangles > most || (indices == nullptr && triangles != 0)) {
        return false;
    }
    _indices.assign(indices, indices + triangles * 3);
    _meshVersion = MakeStamp();
    return true;
}

bool Primitive::SetAttribute(const std::string& name, int components, const float* values,
                             std::size_t vertices) {
    constexpr std::size_t most = std::numeric_limits<std::int32_t>::max();
    if (name.empty() || components < 1 || components > 4 || vertices > most ||
        (values == nullptr && vertices != 0)) {
        return false;
    }
    if (vertices == 0) {
        _attributes.erase(name);
    } else {
        const std::size_t count = static_cast<std::size_t>(components) * vertices;
        AttributeData& attribute = _attributes[name];
        attribute.components = components;
        attribute.values.assign(values, values + count);
    }
    _meshVersion = MakeStamp();
    return true;
}

const AttributeData* Primitive::FindAttribute(const std::string& name) const {
    const auto found = _attributes.find(name);
    return found == _attributes.end() ? nullptr : &found->second;
}

std::size_t Primitive::GetVertexCount() const {
    std::size_t count = 0;
    for (const auto& [name, attribute] : _attributes) {
        count = std::max(count, attribute.GetVertexCount());
    }
    return count;
}

bool Primitive::SetTransform(const Matrix44f& matrix) {
    if (!std::all_of(std::begin(matrix.m), std::end(matrix.m),
                     [](float component) { return std::isfinite(component); })) {
        return false;
    }
    Matrix44f inverse;
    if (!matrix.Invert(inverse)) {
        return false;
    }
    inverse.Transpose(_inverseTranspose);
    _transform = matrix;
    _transformVersion = MakeStamp();
    return true;
}

IKLProgram* Primitive::GetProgram() const {
    return FindProgram(_program);
}

void Primitive::UseProgram(KLprogram program) {
    _program = program;
    GetUniforms();
}

} // namespace Tolen::OpenKL

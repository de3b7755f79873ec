#pragma once

#include "scene/UniformStore.h"

#include "TolenOpenKL/IPrimitive.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::OpenKL {

class Context;
class Program;

/// The values of a vertex attribute.
struct AttributeData {
    int components = 0;
    std::vector<float> values;

    std::size_t GetVertexCount() const {
        return components == 0 ? 0 : values.size() / static_cast<std::size_t>(components);
    }
};

/// What a client sets on a primitive. What the renderer makes of it is kept beside the scene.
class Primitive final : public IPrimitive {
public:
    explicit Primitive(Context& context);
    ~Primitive() override;
    Primitive(const Primitive&) = delete;
    Primitive& operator=(const Primitive&) = delete;

    KLprimitive GetHandle() const override { return _handle; }
    void Bind() override;
    void Unbind() override;

#define TOLEN_OVERRIDE_UNIFORM(T)                                                                  \
    bool SetUniform(const std::string& name, int location, const T& value) override;               \
    bool SetUniformArray(const std::string& name, int location, int count, const T* values)        \
        override;
    TOLEN_UNIFORM_TYPES(TOLEN_OVERRIDE_UNIFORM)
#undef TOLEN_OVERRIDE_UNIFORM
    bool SetUniformBlock(const std::string& name, int location, IKLBuffer* buffer) override;
    bool SetUniformTexture(const std::string& name, int location, KLtexture texture) override;

    void SetName(const std::string& name) override { _name = name; }
    const std::string& GetName() const override { return _name; }
    bool SetTriangles(const std::uint32_t* indices, std::size_t triangles) override;
    bool SetAttribute(const std::string& name, int components, const float* values,
                      std::size_t vertices) override;
    std::size_t GetVertexCount() const override;
    std::size_t GetTriangleCount() const override { return _indices.size() / 3; }
    bool SetTransform(const Matrix44f& matrix) override;
    const Matrix44f& GetTransform() const override { return _transform; }
    void SetVisible(bool visible) override { _isVisible = visible; }
    bool IsVisible() const override { return _isVisible; }
    IKLProgram* GetProgram() const override;

    /// Lets the program of a handle shade the primitive; 0 takes it away.
    void UseProgram(KLprogram program);

    /// The uniform values, laid out for the code that the program has now.
    const UniformStore& GetUniforms();

    const std::vector<std::uint32_t>& GetIndices() const { return _indices; }
    /// Null when nobody has set such an attribute.
    const AttributeData* FindAttribute(const std::string& name) const;
    /// The inverse transpose of the transform.
    const Matrix44f& GetInverseTranspose() const { return _inverseTranspose; }
    /// The stamp of the last change of triangles or attributes.
    std::uint64_t GetMeshVersion() const { return _meshVersion; }
    std::uint64_t GetTransformVersion() const { return _transformVersion; }

private:
    /// Counts a write of a uniform that was taken. @return @p isTaken
    bool _CountWrite(bool isTaken);

    Context& _context;
    KLprimitive _handle;
    std::string _name;
    KLprogram _program = 0; ///< a program that dies is found no more
    UniformStore _uniforms;

    std::vector<std::uint32_t> _indices;
    std::map<std::string, AttributeData> _attributes;
    Matrix44f _transform;
    Matrix44f _inverseTranspose;
    std::uint64_t _meshVersion = 0;
    std::uint64_t _transformVersion = 0;
    bool _isVisible = true;
};

} // namespace Tolen::OpenKL

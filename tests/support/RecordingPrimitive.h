#pragma once

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include <map>
#include <string>

namespace Tolen::Tests {

class RecordingContext;
class RecordingProgram;

/// A primitive that keeps the uniforms that were written. A test makes it and lets it die before
/// its context.
class RecordingPrimitive : public IKLPrimitive {
public:
    explicit RecordingPrimitive(RecordingContext& context);
    ~RecordingPrimitive() override;
    RecordingPrimitive(const RecordingPrimitive&) = delete;
    RecordingPrimitive& operator=(const RecordingPrimitive&) = delete;

    /// What the log calls this primitive: "primitive" and its handle.
    std::string GetId() const;
    /// The text of the last value written under a name, such as "vec3 (1,0,0)",
    /// "float[2] 1 2", "block buffer1" or "texture image1"; empty when there was none.
    std::string GetUniform(const std::string& name) const;
    /// All of them, by name.
    const std::map<std::string, std::string>& GetUniforms() const { return _uniforms; }
    void ClearUniforms() { _uniforms.clear(); }
    /// The program of the last klUseProgram while the primitive was bound; null when there is none
    /// or it died.
    RecordingProgram* GetProgram() const;
    void SetProgram(KLprogram program) { _program = program; }
    /// How many binds are open.
    int GetCountBound() const;

    KLprimitive GetHandle() const override { return _handle; }
    void Bind() override;
    void Unbind() override;

#define TOLEN_DECLARE_UNIFORM(T)                                                                   \
    bool SetUniform(const std::string& name, int location, const T& value) override;               \
    bool SetUniformArray(const std::string& name, int location, int count, const T* values)        \
        override;
    TOLEN_UNIFORM_TYPES(TOLEN_DECLARE_UNIFORM)
#undef TOLEN_DECLARE_UNIFORM

    bool SetUniformBlock(const std::string& name, int location, IKLBuffer* buffer) override;
    bool SetUniformTexture(const std::string& name, int location, KLtexture texture) override;

private:
    bool _Write(const std::string& operation, const std::string& name, int location,
                const std::string& value);
    template <class T>
    bool _WriteArray(const std::string& name, int location, int count, const T* values);

    RecordingContext& _context;
    KLprimitive _handle;
    KLprogram _program = 0;
    std::map<std::string, std::string> _uniforms;
};

} // namespace Tolen::Tests

#pragma once

#include "TolenOpenKLWrapper/UniformTypes.h"

#include <string>

namespace Tolen {

class IKLBuffer;

/// A thing that rays reach or that a frame runs on, with a program and uniform values of its own.
///
/// Uniforms are written by location; the name only serves messages. A location comes from the
/// program that shades the primitive. Neither a current program nor a bound primitive is needed for
/// a write. Every write answers false, and changes nothing, for a negative location.
class IKLPrimitive {
public:
    virtual ~IKLPrimitive() = default;

    virtual KLprimitive GetHandle() const = 0;

    /// Binds the primitive as the one that klUseProgram speaks of; binds nest.
    virtual void Bind() = 0;
    /// Ends the innermost bind.
    virtual void Unbind() = 0;

    /// SetUniform writes one value; SetUniformArray writes @p count values, copied.
#define TOLEN_DECLARE_UNIFORM(T)                                                                   \
    virtual bool SetUniform(const std::string& name, int location, const T& value) = 0;            \
    virtual bool SetUniformArray(const std::string& name, int location, int count,                 \
                                 const T* values) = 0;
    TOLEN_UNIFORM_TYPES(TOLEN_DECLARE_UNIFORM)
#undef TOLEN_DECLARE_UNIFORM

    /// Lets a uniform block read @p buffer, borrowed, whose later content and size count.
    virtual bool SetUniformBlock(const std::string& name, int location, IKLBuffer* buffer) = 0;

    /// Lets a sampler read @p texture.
    virtual bool SetUniformTexture(const std::string& name, int location, KLtexture texture) = 0;
};

} // namespace Tolen

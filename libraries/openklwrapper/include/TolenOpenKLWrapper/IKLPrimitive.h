#pragma once

#include "TolenOpenKLWrapper/UniformTypes.h"

#include <string>

namespace Tolen {

class IKLBuffer;

/// A thing that rays reach or that a frame runs on, with a program and uniform values of its own.
/// Renderers make primitives and keep them as long as effects are on them.
///
/// Uniforms are written by location; the name only serves messages. A location comes from the
/// program that shades the primitive. Neither a current program nor a bound primitive is needed for
/// a write. Every write answers false, and changes nothing, for a location that the program doesn't
/// have, a negative one above all, for another type than the declared one, and for more elements
/// than the array has. Integers may be written where floats of the same shape are declared.
class IKLPrimitive {
public:
    virtual ~IKLPrimitive() = default;

    /// The handle by which programs and uniforms know the primitive; never KL_NO_PRIMITIVE.
    virtual KLprimitive GetHandle() const = 0;

    /// Binds the primitive as the one that klUseProgram speaks of; binds nest.
    virtual void Bind() = 0;
    /// Ends the innermost bind.
    virtual void Unbind() = 0;

#define TOLEN_DECLARE_UNIFORM(T)                                                                   \
    /** Writes one value, copied; to an array, its first element. @return whether it was taken */  \
    virtual bool SetUniform(const std::string& name, int location, const T& value) = 0;            \
    /** Writes @p count values, copied, from the first element on. @return as for one value */     \
    virtual bool SetUniformArray(const std::string& name, int location, int count,                 \
                                 const T* values) = 0;
    TOLEN_UNIFORM_TYPES(TOLEN_DECLARE_UNIFORM)
#undef TOLEN_DECLARE_UNIFORM

    /// Lets a uniform block read @p buffer, borrowed, whose later content and size count. Null
    /// takes the buffer away; without one the block reads zeros.
    /// @return whether it was taken
    virtual bool SetUniformBlock(const std::string& name, int location, IKLBuffer* buffer) = 0;

    /// Lets a sampler read @p texture; null lets it read black with an alpha of 1.
    /// @return whether it was taken
    virtual bool SetUniformTexture(const std::string& name, int location, KLtexture texture) = 0;
};

} // namespace Tolen

#pragma once

#include "TolenOpenKLWrapper/IKLBuffer.h"
#include "TolenOpenKLWrapper/IKLPrimitive.h"
#include "TolenOpenKLWrapper/IKLProgram.h"
#include "TolenOpenKLWrapper/IKLShader.h"
#include "TolenOpenKLWrapper/IKLTexImage2D.h"

namespace Tolen {

/// The one factory of API objects. Every object goes back to the context it came from, before the
/// context dies. Used from one thread at a time.
class IOpenKLContext {
public:
    virtual ~IOpenKLContext() = default;

    /// Makes a shader for one stage, without a text.
    /// @return to be given back by DestroyShader; null on failure
    virtual IKLShader* CreateShader(IKLShader::Type type) = 0;
    /// Destroys a shader of this context; passes over null. Programs that it is attached to let go
    /// of it and keep what they have linked.
    virtual void DestroyShader(IKLShader* shader) = 0;
    /// Makes a program, with nothing attached.
    /// @return to be given back by DestroyProgram; null on failure
    virtual IKLProgram* CreateProgram() = 0;
    /// Destroys a program of this context; passes over null. Primitives that it shades have no
    /// program then.
    virtual void DestroyProgram(IKLProgram* program) = 0;
    /// Makes a buffer, without storage. @return to be given back by DestroyBuffer; null on failure
    virtual IKLBuffer* CreateBuffer() = 0;
    /// Destroys a buffer of this context; passes over null. Blocks that read it read zeros from
    /// then on.
    virtual void DestroyBuffer(IKLBuffer* buffer) = 0;
    /// Makes an image, without texels.
    /// @return to be given back by DestroyTexImage2D; null on failure
    virtual IKLTexImage2D* CreateTexImage2D() = 0;
    /// Destroys an image of this context; passes over null. Samplers that read it get black with an
    /// alpha of 1 from then on.
    virtual void DestroyTexImage2D(IKLTexImage2D* image) = 0;

    /// Whether rays carry differentials.
    virtual bool AreDifferentialsEnabled() const = 0;
    /// Whether samples are spread by a reconstruction filter.
    virtual bool AreFilteredAccumulatesEnabled() const = 0;
};

} // namespace Tolen

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

    /// Creations answer null on failure; destructions pass over null.
    virtual IKLShader* CreateShader(IKLShader::Type type) = 0;
    virtual void DestroyShader(IKLShader* shader) = 0;
    virtual IKLProgram* CreateProgram() = 0;
    virtual void DestroyProgram(IKLProgram* program) = 0;
    virtual IKLBuffer* CreateBuffer() = 0;
    virtual void DestroyBuffer(IKLBuffer* buffer) = 0;
    virtual IKLTexImage2D* CreateTexImage2D() = 0;
    virtual void DestroyTexImage2D(IKLTexImage2D* image) = 0;

    /// Whether rays carry differentials.
    virtual bool AreDifferentialsEnabled() const = 0;
    /// Whether samples are spread by a reconstruction filter.
    virtual bool AreFilteredAccumulatesEnabled() const = 0;
};

} // namespace Tolen

#pragma once

#include "TolenOpenKL/ContextOptions.h"
#include "TolenOpenKL/IFramebuffer.h"
#include "TolenOpenKL/IPrimitive.h"
#include "TolenOpenKL/RenderSettings.h"
#include "TolenOpenKL/Statistics.h"

#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Export.h"
#include "TolenCore/FastDelegate.h"

#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::OpenKL {

/// The embedded OpenKL: compiles programs, traces rays on the CPU and fills framebuffers.
///
/// ~~~
/// IContext* context = CreateContext(ContextOptions(), &result);
/// IPrimitive* frame = context->CreatePrimitive();
/// {
///     AutoBindKLPrimitive bind(frame);
///     klUseProgram(program->GetHandle()); // a linked program of the frame stage
/// }
/// context->SetFramePrimitive(frame);
///
/// IFramebuffer* framebuffer = context->CreateFramebuffer(640, 360, &result);
/// framebuffer->Attach(0);
/// RenderSettings settings;
/// settings.samples = 16;
/// context->Render(framebuffer, settings, &result);
/// framebuffer->Read(0, pixels.data());
/// DestroyContext(context);
/// ~~~
///
/// A context and its objects are used by one thread at a time; Cancel alone may be called from any.
/// Objects belong to the context and go back to it; those that are left die with it. Distances,
/// positions and directions are in world space; matrices multiply columns; colours are linear.
class IContext : public IOpenKLContext {
public:
    virtual const ContextOptions& GetOptions() const = 0;

    /// A new primitive without geometry or program, visible, at the origin.
    virtual IPrimitive* CreatePrimitive() = 0;
    /// Passes over null. A primitive that has a role in the context loses it.
    virtual void DestroyPrimitive(IKLPrimitive* primitive) = 0;
    /// The primitive of a handle, or null.
    virtual IPrimitive* FindPrimitive(KLprimitive handle) const = 0;

    /// @param width, height pixels, above 0
    /// @return null beyond the limits or without memory, with a message
    virtual IFramebuffer* CreateFramebuffer(int width, int height, Result* result) = 0;
    virtual void DestroyFramebuffer(IFramebuffer* framebuffer) = 0;

    /// The primitive whose program, of the frame stage, runs for each sample of each pixel.
    virtual void SetFramePrimitive(IKLPrimitive* primitive) = 0;
    /// The primitive whose program, of the prefix stage, runs for each ray that reached a primitive
    /// or has one to miss to, ahead of that primitive's program. Null for none.
    virtual void SetPrefixPrimitive(IKLPrimitive* primitive) = 0;
    /// The primitive whose program runs for rays that reach nothing and weren't spawned with a miss
    /// primitive of their own. Null lets such rays end.
    virtual void SetMissPrimitive(IKLPrimitive* primitive) = 0;
    virtual IPrimitive* GetFramePrimitive() const = 0;
    virtual IPrimitive* GetPrefixPrimitive() const = 0;
    virtual IPrimitive* GetMissPrimitive() const = 0;

    /// Brings the scene up to date: runs vertex programs and builds acceleration structures for
    /// what has changed. Render does so by itself; this tells the time and the messages apart.
    virtual bool Prepare(Result* result) = 0;

    /// Renders samples into @p framebuffer, on top of those that it has.
    ///
    /// The same scene, samples and framebuffer size give the same bits for any number of threads.
    /// @param result takes what went wrong, and limits and replaced values that were met, each
    /// once;
    ///               null drops the messages
    virtual RenderOutcome Render(IFramebuffer* framebuffer, const RenderSettings& settings,
                                 Result* result) = 0;

    /// Ends the render that is in progress after the tiles in work; without one it does nothing.
    virtual void Cancel() = 0;

    /// Calls @p listener with every text that a shader of this context is given, before it is
    /// compiled; for tools that show or keep programs. The answers are not looked at.
    virtual bool
    AddListenerText(FastDelegate2<const IKLShader&, const std::string&, bool>& listener) = 0;
    virtual bool
    RemoveListenerText(FastDelegate2<const IKLShader&, const std::string&, bool>& listener) = 0;

    virtual Statistics GetStatistics() const = 0;
    virtual void ResetStatistics() = 0;

protected:
    ~IContext() override = default;
};

/// @param result takes the reason when the options are out of range or ask for instructions that
///               this machine doesn't have; null drops it
/// @return a context for DestroyContext, or null
TOLEN_EXPORT IContext* CreateContext(const ContextOptions& options, Result* result);

/// Destroys a context and whatever it still holds; passes over null.
TOLEN_EXPORT void DestroyContext(IContext* context);

} // namespace Tolen::OpenKL

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

/// The OpenKL that comes along: it compiles programs and traces rays on the CPU. CreateContext() is
/// the entry.
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
    /// The options that the context was made with.
    virtual const ContextOptions& GetOptions() const = 0;

    /// A new primitive without geometry or program, visible, at the origin.
    /// @return to be given back by DestroyPrimitive; null when memory runs out
    virtual IPrimitive* CreatePrimitive() = 0;
    /// Destroys a primitive of this context; passes over null. One that has a role in the context
    /// loses it. Effects are to be taken off it before.
    virtual void DestroyPrimitive(IKLPrimitive* primitive) = 0;
    /// The primitive of a handle, or null.
    virtual IPrimitive* FindPrimitive(KLprimitive handle) const = 0;

    /// A new framebuffer with nothing attached.
    /// @param width, height pixels, above 0
    /// @param result        takes the reason of a failure; null drops it
    /// @return to be given back by DestroyFramebuffer; null beyond the limits or without memory
    virtual IFramebuffer* CreateFramebuffer(int width, int height, Result* result) = 0;
    /// Destroys a framebuffer of this context; passes over null.
    virtual void DestroyFramebuffer(IFramebuffer* framebuffer) = 0;

    /// Sets the primitive, borrowed, whose program, of the frame stage, runs for each sample of
    /// each pixel. Null, and one of another context, leave none.
    virtual void SetFramePrimitive(IKLPrimitive* primitive) = 0;
    /// Sets the primitive, borrowed, whose program, of the prefix stage, runs for each ray that
    /// reached a primitive or has one to miss to, ahead of that primitive's program. Null for none.
    virtual void SetPrefixPrimitive(IKLPrimitive* primitive) = 0;
    /// Sets the primitive, borrowed, whose program runs for rays that reach nothing and weren't
    /// spawned with a miss primitive of their own. Null lets such rays end.
    virtual void SetMissPrimitive(IKLPrimitive* primitive) = 0;
    /// What SetFramePrimitive has set; null for none.
    virtual IPrimitive* GetFramePrimitive() const = 0;
    /// What SetPrefixPrimitive has set; null for none.
    virtual IPrimitive* GetPrefixPrimitive() const = 0;
    /// What SetMissPrimitive has set; null for none.
    virtual IPrimitive* GetMissPrimitive() const = 0;

    /// Brings the scene up to date: runs vertex programs and builds acceleration structures for
    /// what has changed. Render does so by itself; this tells the time and the messages apart.
    /// @param result takes what is left out of the scene, and why; null drops it
    /// @return false when memory runs out
    virtual bool Prepare(Result* result) = 0;

    /// Renders samples into @p framebuffer, on top of those that it has. Blocks until it is done.
    ///
    /// The same scene, samples and framebuffer size give the same bits for any number of threads.
    /// @param framebuffer one of this context
    /// @param settings    which samples and pixels, and whom to tell of progress
    /// @param result      takes what went wrong, and limits and replaced values that were met, each
    ///                    once; null drops the messages
    /// @return how it has ended
    virtual RenderOutcome Render(IFramebuffer* framebuffer, const RenderSettings& settings,
                                 Result* result) = 0;

    /// Ends the render that is in progress after the tiles in work; without one it does nothing.
    virtual void Cancel() = 0;

    /// Calls @p listener with every text that a shader of this context is given, before it is
    /// compiled; for tools that show or keep programs. The answers are not looked at.
    /// @return true
    virtual bool
    AddListenerText(FastDelegate2<const IKLShader&, const std::string&, bool>& listener) = 0;
    /// Takes a listener of AddListenerText() off. @return true
    virtual bool
    RemoveListenerText(FastDelegate2<const IKLShader&, const std::string&, bool>& listener) = 0;

    /// What has been counted; not while it renders, RenderSettings::progress tells that.
    virtual Statistics GetStatistics() const = 0;
    /// Counts from 0 again. Messages that were told once may be told again.
    virtual void ResetStatistics() = 0;

protected:
    ~IContext() override = default;
};

/// Makes a context.
/// @param options how it is to be; fixed from here on
/// @param result  takes the reason when the options are out of range or ask for instructions that
///                this machine doesn't have; null drops it
/// @return a context for DestroyContext, or null
TOLEN_EXPORT IContext* CreateContext(const ContextOptions& options, Result* result);

/// Destroys a context and whatever it still holds; passes over null. The effects manager that uses
/// it is to be shut down before.
TOLEN_EXPORT void DestroyContext(IContext* context);

} // namespace Tolen::OpenKL

#pragma once

#include "render/Framebuffer.h"
#include "render/PixelSampler.h"
#include "scene/Scene.h"
#include "scene/ThreadTeam.h"

#include "TolenOpenKL/RenderSettings.h"

#include <atomic>
#include <set>
#include <string>
#include <vector>

namespace Tolen {
class Result;
}

namespace Tolen::OpenKL {

class Context;
class Reports;
struct RenderJob;

/// Renders the scene of a context: cuts pictures into tiles, hands them to threads, tells of
/// progress and of what went wrong.
class Renderer {
public:
    explicit Renderer(Context& context, InstructionSet instructionSet);

    /// Whether rays can be traced on this machine.
    bool IsUsable() const { return _scene.IsUsable(); }

    bool Prepare(Result* result);
    RenderOutcome Render(Framebuffer& framebuffer, const RenderSettings& settings, Result* result);
    /// May be called from any thread.
    void Cancel() { _isCancelled = true; }
    /// Lets problems that were told before be told again.
    void ForgetTold() { _told.clear(); }

private:
    void _UpdateScene(Result* result);
    bool _RunPasses(const RenderJob& job, const RenderSettings& settings,
                    const std::vector<PixelRegion>& tiles, Reports& reports);

    Context& _context;
    ThreadTeam _team;
    Scene _scene;
    PixelSampler _sampler;
    std::atomic<bool> _isCancelled{false};
    std::set<std::string> _told;
};

} // namespace Tolen::OpenKL

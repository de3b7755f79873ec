#include "render/Renderer.h"

#include "render/RenderPlan.h"
#include "render/Reports.h"
#include "render/Wavefront.h"
#include "scene/Context.h"
#include "scene/ScopedSeconds.h"
#include "scene/StatisticsSum.h"

#include "TolenCore/Result.h"

#include <tbb/enumerable_thread_specific.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <exception>
#include <mutex>

namespace Tolen::OpenKL {

namespace {

/// Samples of a pixel that are rendered before the next tile: enough to fill batches of many
/// primitives, few enough to show progress.
constexpr int kSamplesOfPass = 16;

using Clock = std::chrono::steady_clock;

double GetSecondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

RenderOutcome Fail(Result* result, const char* message) {
    if (result != nullptr) {
        result->Add("%s", message);
    }
    return kRender_Failed;
}

/// Holds one side of a region inside 0 to @p end; a length of 0 reaches up to the end.
void Cut(int& start, int& length, int end) {
    const std::int64_t last =
        length == 0 ? end : std::min<std::int64_t>(std::int64_t{start} + length, end);
    start = std::clamp(start, 0, end);
    length = static_cast<int>(std::max<std::int64_t>(last - start, 0));
}

/// The tiles of the picture that meet the region of the settings, cut to it.
std::vector<PixelRegion> ListTiles(const Framebuffer& framebuffer, const RenderSettings& settings) {
    PixelRegion region{settings.x, settings.y, settings.width, settings.height};
    Cut(region.x, region.width, framebuffer.GetWidth());
    Cut(region.y, region.height, framebuffer.GetHeight());
    constexpr int side = Wavefront::kTileSide;
    std::vector<PixelRegion> tiles;
    for (int y = region.y; y < region.y + region.height; y = (y / side + 1) * side) {
        for (int x = region.x; x < region.x + region.width; x = (x / side + 1) * side) {
            tiles.push_back({x, y, std::min((x / side + 1) * side, region.x + region.width) - x,
                             std::min((y / side + 1) * side, region.y + region.height) - y});
        }
    }
    return tiles;
}

} // namespace

Renderer::Renderer(Context& context, InstructionSet instructionSet)
    : _context(context), _team(context.GetOptions().threads, instructionSet), _scene(context),
      _sampler(context.GetOptions().filteredAccumulates) {}

void Renderer::_UpdateScene(Result* result) {
    const ScopedSeconds seconds(_context.GetCounters().sceneSeconds);
    _scene.Update(_team, result);
}

bool Renderer::Prepare(Result* result) {
    try {
        _UpdateScene(result);
        return true;
    } catch (const std::exception&) {
        Fail(result, "out of memory while the scene was prepared");
        return false;
    }
}

RenderOutcome Renderer::Render(Framebuffer& framebuffer, const RenderSettings& settings,
                               Result* result) {
    _isCancelled = false;
    if (settings.firstSample < 0 || settings.samples < 0 || settings.sampleCount < 0 ||
        settings.width < 0 || settings.height < 0 ||
        settings.firstSample > INT_MAX - settings.samples) {
        return Fail(result, "samples or the region of the render are out of range");
    }
    try {
        _UpdateScene(result);
        Reports reports;
        const RenderPlan plan(_context, _scene, _team, settings, framebuffer.GetWidth(),
                              framebuffer.GetHeight(), reports);
        if (plan.GetFrame() == nullptr) {
            return Fail(result, "there is no frame primitive with a linked program of the frame "
                                "stage");
        }
        const RayTracer tracer(_scene);
        const RenderJob job{_context.GetOptions(), plan, tracer, _sampler, framebuffer};
        bool isFinished = false;
        {
            const ScopedSeconds seconds(_context.GetCounters().renderSeconds);
            isFinished = _RunPasses(job, settings, ListTiles(framebuffer, settings), reports);
        }
        AddStatistics(_context.GetCounters(), reports.counters);
        if (result != nullptr) {
            reports.Tell(_context.GetOptions().limits, _told, *result);
        }
        return isFinished ? kRender_Finished : kRender_Cancelled;
    } catch (const std::exception&) {
        return Fail(result, "out of memory while rendering");
    }
}

/// Renders pass by pass, each over all tiles. @return false when cancelled
bool Renderer::_RunPasses(const RenderJob& job, const RenderSettings& settings,
                          const std::vector<PixelRegion>& tiles, Reports& reports) {
    const std::int64_t passes =
        (std::int64_t{settings.samples} + kSamplesOfPass - 1) / kSamplesOfPass;
    RenderProgress progress;
    progress.tiles = passes * static_cast<std::int64_t>(tiles.size());
    const Clock::time_point start = Clock::now();
    std::mutex progressMutex; // guards the reports as well
    tbb::enumerable_thread_specific<Wavefront> wavefronts(
        [&] { return Wavefront(job, _team.GetKernelThread()); });

    for (std::int64_t pass = 0; pass < passes && !_isCancelled; ++pass) {
        const int done = static_cast<int>(pass) * kSamplesOfPass;
        const int samples = std::min(kSamplesOfPass, settings.samples - done);
        const auto renderTile = [&](std::size_t index) {
            if (_isCancelled) {
                return;
            }
            Wavefront& wavefront = wavefronts.local();
            wavefront.RenderTile(tiles[index], settings.firstSample + done, samples);
            const std::lock_guard lock(progressMutex);
            reports.Add(wavefront.TakeReports());
            progress.statistics = reports.counters;
            progress.statistics.renderSeconds = GetSecondsSince(start);
            ++progress.tilesDone;
            if (!settings.progress(progress)) {
                _isCancelled = true;
            }
        };
        _team.ForEach(tiles.size(), renderTile);
    }
    return progress.tilesDone == progress.tiles;
}

} // namespace Tolen::OpenKL

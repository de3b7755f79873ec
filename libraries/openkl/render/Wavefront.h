#pragma once

#include "render/Framebuffer.h"
#include "render/LaneRows.h"
#include "render/PixelSampler.h"
#include "render/RayRecord.h"
#include "render/RayTracer.h"
#include "render/Reports.h"

#include "engine/BatchOutput.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace Tolen::OpenKL {

class RenderPlan;
struct ContextOptions;
struct KernelThread;

/// What all threads of a render share.
struct RenderJob {
    const ContextOptions& options;
    const RenderPlan& plan;
    const RayTracer& tracer;
    const PixelSampler& sampler;
    Framebuffer& framebuffer;
};

/// Renders tiles on one thread: runs frame programs, follows what they spawn until nothing is left,
/// and adds what is accumulated to the framebuffer.
///
/// Rays that were traced wait on a stack. Each step takes the newest ones, as many as make full
/// batches, runs them program by program, and traces what they spawn. So the stack stays within
/// what one step and the depth of rays make, whatever the size of the picture.
class Wavefront {
public:
    /// Pixels along the side of a tile.
    static constexpr int kTileSide = 32;

    Wavefront(const RenderJob& job, KernelThread& thread);

    /// Renders samples of the pixels of @p tile, at most kTileSide along each side.
    void RenderTile(const PixelRegion& tile, int firstSample, int samples);

    /// What was reported since the last call.
    Reports TakeReports() { return std::exchange(_reports, Reports()); }

private:
    /// Where the rays of a batch come from.
    struct Parents;
    class Queries;

    void _RunFrame(int blockX, int blockY, int sample);
    void _Step();
    void _RunPrefix();
    void _RunPrograms();
    void _RunBatch(const PlanPrimitive& primitive, const std::uint32_t* indices, std::size_t count);

    void _RunKernel(const PlanPrimitive& primitive, std::size_t lanes, bool hasSurface);
    void _Finish(const PlanPrimitive& primitive, const Parents& parents);
    void _Accumulate(const PlanPrimitive& primitive, const Parents& parents);
    void _Spawn(const PlanPrimitive& primitive, const Parents& parents);
    bool _MakeRay(const SpawnedRay& spawned, const RayRecord& parent, bool hasSurface,
                  RayRecord& ray) const;
    void _LeaveSurface(int lane, const float* direction, float* origin) const;
    void _TraceSpawned(bool isCoherent);

    const RenderJob& _job;
    KernelThread& _thread;
    Reports _reports;
    LaneRows _rows;
    RayList _stack;
    RayList _spawned;
    RayList _step;                     ///< what the current step works on
    std::vector<std::uint32_t> _order; ///< indices into _step
    std::vector<std::uint32_t> _sortScratch;
    RayList _samples;                          ///< of a frame batch, as the parents of its rays
    std::vector<std::int32_t> _missPrimitives; ///< of the rays in _spawned
    PixelRegion _tile;
};

} // namespace Tolen::OpenKL

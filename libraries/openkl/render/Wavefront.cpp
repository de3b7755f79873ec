#include "render/Wavefront.h"

#include "render/RadixSort.h"
#include "render/RayCones.h"
#include "render/RenderPlan.h"
#include "render/Surface.h"
#include "scene/ScopedSeconds.h"
#include "scene/ThreadTeam.h"

#include "TolenOpenKL/ContextOptions.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <numeric>

namespace Tolen::OpenKL {

namespace {

/// Pixels along the side of what one batch of a frame program covers.
constexpr int kBlockSide = 16;
static_assert(kBlockSide * kBlockSide == kMaxLanes);
static_assert(Statistics::kLanesOfBatch == kMaxLanes);

/// Rays that one step takes from the stack.
constexpr std::size_t kStepRays = 4096;

/// The pixel of a lane of a frame batch: 16 lanes, a packet of rays, cover 4 x 4 pixels.
int GetLaneX(int lane) {
    return (lane / 16 % 4) * 4 + lane % 4;
}
int GetLaneY(int lane) {
    return (lane / 64) * 4 + lane % 16 / 4;
}

bool IsFinite(const float* values, int count) {
    return std::all_of(values, values + count, [](float value) { return std::isfinite(value); });
}

/// The distance up to which a ray looks; false for what is no number.
bool ToDistance(float given, float& out) {
    out = given > FLT_MAX ? FLT_MAX : given < 0.0f ? 0.0f : given;
    return !std::isnan(given);
}

} // namespace

/// The rays, or samples of a frame, that a batch ran for.
struct Wavefront::Parents {
    const RayList& rays;
    const std::uint32_t* indices; ///< by lane
    bool areSamples;

    const RayRecord& GetRecord(std::uint32_t lane) const { return rays.GetRecord(indices[lane]); }
    const std::uint32_t* GetAttributes(std::uint32_t lane) const {
        return rays.GetAttributes(indices[lane]);
    }
};

/// Answers the rays that programs ask about at once.
class Wavefront::Queries : public IRayQueries {
public:
    /// @param hasSurface whether the lanes stand on surfaces that their rays start from
    Queries(Wavefront& wavefront, const PlanPrimitive& primitive, bool hasSurface)
        : _wavefront(wavefront), _primitive(primitive), _hasSurface(hasSurface) {}

    void FindOcclusion(const RayQuery& query, std::uint32_t* pOccluded) override {
        _ForEach(query, _wavefront._reports.counters.occlusionRays,
                 [&](int lane, const float* origin, const float* direction, float maxDistance) {
                     pOccluded[lane] =
                         _wavefront._job.tracer.IsOccluded(origin, direction, maxDistance) ? 1 : 0;
                 });
    }

    void FindDistance(const RayQuery& query, float* pDistance) override {
        for (int lane = 0; lane < query.laneCount; ++lane) {
            pDistance[lane] = -1.0f;
        }
        _ForEach(query, _wavefront._reports.counters.distanceRays,
                 [&](int lane, const float* origin, const float* direction, float maxDistance) {
                     pDistance[lane] =
                         _wavefront._job.tracer.FindDistance(origin, direction, maxDistance);
                 });
    }

private:
    template <class Function>
    void _ForEach(const RayQuery& query, std::int64_t& counter, Function&& function) {
        const ScopedSeconds seconds(_wavefront._reports.counters.intersectSeconds);
        std::int64_t invalid = 0;
        for (int lane = 0; lane < query.laneCount; ++lane) {
            if (query.pMask[lane] == 0) {
                continue;
            }
            float origin[3];
            float direction[3];
            float maxDistance;
            for (int i = 0; i < 3; ++i) {
                origin[i] = query.pOrigin[i][lane];
                direction[i] = query.pDirection[i][lane];
            }
            if (!IsFinite(origin, 3) || !Normalize(direction) ||
                !ToDistance(query.pMaxDistance[lane], maxDistance)) {
                ++invalid;
                continue;
            }
            if (_hasSurface) {
                _wavefront._LeaveSurface(query.firstLane + lane, direction, origin);
            }
            ++counter;
            function(lane, origin, direction, maxDistance);
        }
        if (invalid != 0) {
            _wavefront._reports.Count(kProblem_InvalidRay, _primitive, invalid);
        }
    }

    Wavefront& _wavefront;
    const PlanPrimitive& _primitive;
    bool _hasSurface;
};

Wavefront::Wavefront(const RenderJob& job, KernelThread& thread)
    : _job(job), _thread(thread), _rows(job.plan), _stack(job.plan.GetRayAttributeWords()),
      _spawned(job.plan.GetRayAttributeWords()), _step(job.plan.GetRayAttributeWords()),
      _samples(job.plan.GetRayAttributeWords()) {}

void Wavefront::RenderTile(const PixelRegion& tile, int firstSample, int samples) {
    _tile = tile;
    for (int sample = firstSample; sample < firstSample + samples; ++sample) {
        // Blocks start at multiples of their side in the picture, so that the packets of camera
        // rays don't depend on how the picture is cut.
        for (int y = tile.y / kBlockSide; y * kBlockSide < tile.y + tile.height; ++y) {
            for (int x = tile.x / kBlockSide; x * kBlockSide < tile.x + tile.width; ++x) {
                while (_stack.GetCount() >= kStepRays) {
                    _Step();
                }
                _RunFrame(x * kBlockSide, y * kBlockSide, sample);
            }
        }
    }
    while (_stack.GetCount() != 0) {
        _Step();
    }
    _job.framebuffer.AddSamples(tile, samples);
}

/// Runs the frame program for one sample of the pixels of a block that lie in the tile.
void Wavefront::_RunFrame(int blockX, int blockY, int sample) {
    const PlanPrimitive& frame = *_job.plan.GetFrame();
    _samples.Truncate(0);
    _order.clear();
    for (int lane = 0; lane < kMaxLanes; ++lane) {
        const int x = blockX + GetLaneX(lane);
        const int y = blockY + GetLaneY(lane);
        if (x < _tile.x || x >= _tile.x + _tile.width || y < _tile.y ||
            y >= _tile.y + _tile.height) {
            continue;
        }
        const auto pixel =
            static_cast<std::uint32_t>(std::int64_t{y} * _job.framebuffer.GetWidth() + x);
        const std::uint32_t seed = HashSeed(pixel);
        const std::array<float, 2> coord = _job.sampler.GetPosition(x, y, seed, sample);
        RayRecord record{};
        record.pixelCoord[0] = coord[0];
        record.pixelCoord[1] = coord[1];
        record.pixelX = static_cast<std::uint16_t>(x - _tile.x);
        record.pixelY = static_cast<std::uint16_t>(y - _tile.y);
        record.sample = sample;
        record.depth = -1;
        _rows.SetSample(static_cast<int>(_order.size()), coord, sample, seed);
        _order.push_back(static_cast<std::uint32_t>(_order.size()));
        _samples.Add(record, nullptr);
    }
    if (_order.empty()) {
        return;
    }
    _rows.ClearAttributes();

    _reports.counters.frameInvocations += static_cast<std::int64_t>(_order.size());
    ++_reports.counters.frameBatches;
    _RunKernel(frame, _order.size(), false);

    const Parents parents{_samples, _order.data(), true};
    _Finish(frame, parents);
    _TraceSpawned(true);
}

/// Takes the newest rays through their programs.
void Wavefront::_Step() {
    const std::size_t count = std::min(kStepRays, _stack.GetCount());
    _step.TakeNewest(_stack, count);
    _order.resize(count);
    std::iota(_order.begin(), _order.end(), 0u);
    if (_job.plan.GetPrefix() != nullptr) {
        _RunPrefix();
    }
    std::erase_if(_order, [&](std::uint32_t index) {
        return _job.plan.GetPrimitive(_step.GetRecord(index).primitive).pProgram == nullptr;
    });
    _RunPrograms();
    _TraceSpawned(false);
}

/// Runs the prefix program for all rays of the step and takes out those that it ends.
void Wavefront::_RunPrefix() {
    const PlanPrimitive& prefix = *_job.plan.GetPrefix();
    const PlanProgram& program = *prefix.pProgram;
    std::size_t kept = 0;
    for (std::size_t first = 0; first < _order.size(); first += kMaxLanes) {
        const std::size_t lanes = std::min<std::size_t>(kMaxLanes, _order.size() - first);
        const std::uint32_t* const indices = _order.data() + first;
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const RayRecord& ray = _step.GetRecord(indices[lane]);
            _rows.SetRay(static_cast<int>(lane), ray, _step.GetAttributes(indices[lane]),
                         _job.plan.GetPrimitive(ray.primitive), program);
        }
        _reports.counters.prefixInvocations += static_cast<std::int64_t>(lanes);
        ++_reports.counters.prefixBatches;
        _RunKernel(prefix, lanes, true);
        _Finish(prefix, {_step, indices, false});

        const BatchOutput& output = _thread.output;
        for (std::size_t word = 0; word < program.attributePlaces.size(); ++word) {
            const auto* const row = static_cast<const std::uint32_t*>(
                output.GetPassedAttribute(static_cast<int>(word)));
            for (std::size_t lane = 0; lane < lanes; ++lane) {
                _step.GetAttributes(indices[lane])[program.attributePlaces[word]] = row[lane];
            }
        }
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            if (!output.hasDiscarded || output.discarded[lane] == 0) {
                _order[kept++] = indices[lane];
            }
        }
    }
    _order.resize(kept);
}

/// Runs the programs of what the rays of the step reached, in batches of one primitive each.
void Wavefront::_RunPrograms() {
    const auto getPrimitive = [&](std::uint32_t index) { return _step.GetRecord(index).primitive; };
    RadixSort(_order, _sortScratch, static_cast<std::uint32_t>(_job.plan.GetPrimitives().size()),
              getPrimitive);
    for (std::size_t first = 0; first < _order.size();) {
        const std::uint32_t primitive = getPrimitive(_order[first]);
        std::size_t end = first + 1;
        while (end < _order.size() && end - first < kMaxLanes &&
               getPrimitive(_order[end]) == primitive) {
            ++end;
        }
        _RunBatch(_job.plan.GetPrimitive(primitive), _order.data() + first, end - first);
        first = end;
    }
}

void Wavefront::_RunBatch(const PlanPrimitive& primitive, const std::uint32_t* indices,
                          std::size_t count) {
    for (std::size_t lane = 0; lane < count; ++lane) {
        const RayRecord& ray = _step.GetRecord(indices[lane]);
        _rows.SetRay(static_cast<int>(lane), ray, _step.GetAttributes(indices[lane]), primitive,
                     *primitive.pProgram);
        _rows.SetVaryings(static_cast<int>(lane), ray, primitive);
    }
    _reports.counters.rayInvocations += static_cast<std::int64_t>(count);
    ++_reports.counters.rayBatches;
    _RunKernel(primitive, count, true);
    _Finish(primitive, {_step, indices, false});
}

/// Runs the program of a primitive for the rows that were filled.
/// @param hasSurface whether the lanes stand on surfaces
void Wavefront::_RunKernel(const PlanPrimitive& primitive, std::size_t lanes, bool hasSurface) {
    Queries queries(*this, primitive, hasSurface);
    BatchInput input = _rows.MakeInput(static_cast<int>(lanes), primitive);
    input.pRayQueries = &queries;
    Statistics& counters = _reports.counters;
    const double intersectSeconds = counters.intersectSeconds;
    {
        const ScopedSeconds seconds(counters.shadeSeconds);
        primitive.pProgram->pKernel->Run(input, _thread.output, _thread.scratch);
    }
    counters.shadeSeconds -= counters.intersectSeconds - intersectSeconds;
}

/// Takes over what a batch gave.
void Wavefront::_Finish(const PlanPrimitive& primitive, const Parents& parents) {
    const BatchOutput& output = _thread.output;
    if (output.stoppedInvocations != 0) {
        _reports.Count(kProblem_LoopSteps, primitive, output.stoppedInvocations, output.stoppedText,
                       output.stoppedLine);
    }
    if (output.droppedRays != 0) {
        _reports.Count(kProblem_RayCount, primitive, static_cast<std::int64_t>(output.droppedRays));
    }
    if (output.surplusAccumulates != 0) {
        _reports.Count(kProblem_Accumulates, primitive,
                       static_cast<std::int64_t>(output.surplusAccumulates));
    }
    if (output.surplusRays != 0) {
        _reports.Count(kProblem_RayMemory, primitive,
                       static_cast<std::int64_t>(output.surplusRays));
    }
    _Accumulate(primitive, parents);
    _Spawn(primitive, parents);
}

void Wavefront::_Accumulate(const PlanPrimitive& primitive, const Parents& parents) {
    std::int64_t replaced = 0;
    for (const AccumulateRecord& record : _thread.output.accumulates) {
        float values[4];
        for (int i = 0; i < record.components; ++i) {
            const bool isNumber = std::isfinite(record.value[i]);
            values[i] = isNumber ? record.value[i] : 0.0f;
            replaced += isNumber ? 0 : 1;
        }
        const RayRecord& parent = parents.GetRecord(record.lane);
        _job.framebuffer.Accumulate(record.attachment, _tile.x + parent.pixelX,
                                    _tile.y + parent.pixelY, record.components, values);
    }
    if (replaced != 0) {
        _reports.Count(kProblem_Value, primitive, replaced);
    }
}

/// Lists the rays that a batch spawned.
void Wavefront::_Spawn(const PlanPrimitive& primitive, const Parents& parents) {
    const BatchOutput& output = _thread.output;
    const std::vector<int>& places = primitive.pProgram->attributePlaces;
    const std::int64_t room =
        _job.options.limits.raysInFlight -
        static_cast<std::int64_t>(_stack.GetCount() + _step.GetCount() + _spawned.GetCount());
    std::int64_t counts[kProblem_Count] = {};
    std::int64_t made = 0;
    for (const SpawnedRay& spawned : output.rays) {
        RayRecord ray;
        const RayRecord& parent = parents.GetRecord(spawned.lane);
        if (parent.depth >= _job.options.limits.depth) {
            ++counts[kProblem_Depth];
        } else if (!_MakeRay(spawned, parent, !parents.areSamples, ray)) {
            ++counts[kProblem_InvalidRay];
        } else if (made >= room) {
            ++counts[kProblem_RayMemory];
        } else {
            ++made;
            _spawned.Add(ray, parents.GetAttributes(spawned.lane));
            std::uint32_t* const attributes = _spawned.GetAttributes(_spawned.GetCount() - 1);
            for (std::size_t word = 0; word < places.size(); ++word) {
                attributes[places[word]] = output.rayAttributes[spawned.attributes + word];
            }
            _missPrimitives.push_back(spawned.missPrimitive);
        }
    }
    for (const Problem problem : {kProblem_Depth, kProblem_InvalidRay, kProblem_RayMemory}) {
        if (counts[problem] != 0) {
            _reports.Count(problem, primitive, counts[problem]);
        }
    }
    (parents.areSamples ? _reports.counters.cameraRays : _reports.counters.secondaryRays) += made;
    if (parents.areSamples && _job.options.differentials) {
        SetCameraCones(_spawned);
    }
}

/// Moves an origin off the surface that the ray of a lane met, if it starts there.
void Wavefront::_LeaveSurface(int lane, const float* direction, float* origin) const {
    float position[3];
    float normal[3];
    if (_rows.GetSurface(lane, position, normal)) {
        LeaveSurface(position, normal, direction, origin);
    }
}

/// @param hasSurface whether the parent stands on a surface that the ray may have to leave
/// @return false for a ray that can't be traced
bool Wavefront::_MakeRay(const SpawnedRay& spawned, const RayRecord& parent, bool hasSurface,
                         RayRecord& ray) const {
    ray = RayRecord{};
    std::copy_n(spawned.origin, 3, ray.origin);
    std::copy_n(spawned.direction, 3, ray.direction);
    if (!IsFinite(ray.origin, 3) || !Normalize(ray.direction) ||
        !ToDistance(spawned.maxDistance, ray.maxDistance)) {
        return false;
    }
    if (hasSurface) {
        _LeaveSurface(static_cast<int>(spawned.lane), ray.direction, ray.origin);
    }
    std::copy_n(parent.pixelCoord, 2, ray.pixelCoord);
    ray.pixelX = parent.pixelX;
    ray.pixelY = parent.pixelY;
    ray.sample = parent.sample;
    ray.randomSeed = spawned.randomSeed;
    ray.depth = parent.depth + 1;
    ray.rayClass = std::clamp(spawned.rayClass, 0, 7);
    ray.coneWidth = parent.coneWidth + parent.coneSpread * parent.distance;
    ray.coneSpread = parent.coneSpread;
    return true;
}

/// Traces what was spawned and stacks the rays that reached something.
void Wavefront::_TraceSpawned(bool isCoherent) {
    {
        const ScopedSeconds seconds(_reports.counters.intersectSeconds);
        if (isCoherent) {
            _job.tracer.TraceCoherent(_spawned);
        } else {
            _job.tracer.Trace(_spawned);
        }
    }
    for (std::size_t i = 0; i < _spawned.GetCount(); ++i) {
        RayRecord& ray = _spawned.GetRecord(i);
        if (ray.primitive != RTC_INVALID_GEOMETRY_ID) {
            ++_reports.counters.hits;
            ray.primitive = _job.plan.GetPrimitiveOfGeometry(ray.primitive);
        } else {
            ++_reports.counters.misses;
            const std::int32_t miss = _missPrimitives[i];
            ray.primitive =
                miss == KL_NO_PRIMITIVE ? _job.plan.GetMiss() : _job.plan.FindMissPrimitive(miss);
            ray.triangle = RayRecord::kMissed;
            ray.u = 0.0f;
            ray.v = 0.0f;
            ray.distance = ray.maxDistance;
        }
        if (ray.primitive != RenderPlan::kNone) {
            _stack.Add(ray, _spawned.GetAttributes(i));
        }
    }
    _spawned.Truncate(0);
    _missPrimitives.clear();
}

} // namespace Tolen::OpenKL

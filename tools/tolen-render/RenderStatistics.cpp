#include "RenderStatistics.h"

#include "FileWrapper.h"

#include "TolenEffects/MgrStats.h"

#include "TolenCore/Format.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Tolen::Render {

namespace {

using OpenKL::Statistics;

template <class T>
struct Number {
    const char* name;
    T Statistics::*member;
};

constexpr Number<std::int64_t> kCounts[] = {
    {"camera rays", &Statistics::cameraRays},
    {"secondary rays", &Statistics::secondaryRays},
    {"occlusion rays", &Statistics::occlusionRays},
    {"distance rays", &Statistics::distanceRays},
    {"hits", &Statistics::hits},
    {"misses", &Statistics::misses},
    {"frame invocations", &Statistics::frameInvocations},
    {"prefix invocations", &Statistics::prefixInvocations},
    {"ray invocations", &Statistics::rayInvocations},
    {"vertex invocations", &Statistics::vertexInvocations},
    {"frame batches", &Statistics::frameBatches},
    {"prefix batches", &Statistics::prefixBatches},
    {"ray batches", &Statistics::rayBatches},
    {"vertex batches", &Statistics::vertexBatches},
    {"uniform writes", &Statistics::uniformWrites},
    {"shaders compiled", &Statistics::shadersCompiled},
    {"programs linked", &Statistics::programsLinked},
};

constexpr Number<double> kTimes[] = {
    {"compile", &Statistics::compileSeconds}, {"link", &Statistics::linkSeconds},
    {"geometry", &Statistics::sceneSeconds},  {"intersect", &Statistics::intersectSeconds},
    {"shade", &Statistics::shadeSeconds},     {"render", &Statistics::renderSeconds},
};

constexpr struct {
    const char* stage;
    std::int64_t Statistics::*invocations;
    std::int64_t Statistics::*batches;
} kStages[] = {
    {"frame", &Statistics::frameInvocations, &Statistics::frameBatches},
    {"prefix", &Statistics::prefixInvocations, &Statistics::prefixBatches},
    {"ray", &Statistics::rayInvocations, &Statistics::rayBatches},
    {"vertex", &Statistics::vertexInvocations, &Statistics::vertexBatches},
};

template <class Numbers>
std::vector<Stat*> _Create(MgrStats& manager, const Numbers& numbers, Stat::Kind kind) {
    std::vector<Stat*> stats;
    for (const auto& number : numbers) {
        stats.push_back(manager.CreateNewStat(number.name, "tolen-render", kind));
    }
    return stats;
}

template <class Numbers>
void _Add(Statistics& sum, const Statistics& other, const Numbers& numbers) {
    for (const auto& number : numbers) {
        sum.*number.member += other.*number.member;
    }
}

} // namespace

RenderStatistics::RenderStatistics()
    : _manager(*MgrStats::GetMgrStats()), _counts(_Create(_manager, kCounts, Stat::kKind_HitCount)),
      _times(_Create(_manager, kTimes, Stat::kKind_Time)) {}

RenderStatistics::~RenderStatistics() {
    _manager.Shutdown();
}

void RenderStatistics::BeginPicture(const OpenKL::IContext& context, int steps) {
    _pictureBegin = context.GetStatistics();
    _Count(_pictureBegin);
    _step = 0;
    _steps = steps;
}

void RenderStatistics::OnProgress(const OpenKL::RenderProgress& progress) {
    Statistics now = _pictureBegin;
    _Add(now, progress.statistics, kCounts);
    _Add(now, progress.statistics, kTimes);
    _Count(now);
    const std::int64_t step = progress.tilesDone * _steps / progress.tiles;
    // The last step ends with the picture, as there is more to count then.
    if (step != _step && progress.tilesDone != progress.tiles) {
        _step = step;
        _EndSlot();
    }
}

void RenderStatistics::EndPicture(const OpenKL::IContext& context) {
    _Count(context.GetStatistics());
    _EndSlot();
    _DumpToFile();
}

/// Adds to the current slot what was not counted yet.
void RenderStatistics::_Count(const Statistics& now) {
    for (std::size_t i = 0; i < _counts.size(); ++i) {
        const auto member = kCounts[i].member;
        const std::int64_t count = now.*member - _counted.*member;
        _counts[i]->TriggerTimes(
            static_cast<int>(std::clamp<std::int64_t>(count, 0, std::numeric_limits<int>::max())));
    }
    for (std::size_t i = 0; i < _times.size(); ++i) {
        const auto member = kTimes[i].member;
        if (now.*member != _counted.*member) {
            _times[i]->Trigger(now.*member - _counted.*member);
        }
    }
    _counted = now;
}

void RenderStatistics::_EndSlot() {
    _lastSlotBegin = _slotBegin;
    _lastSlotEnd = _counted;
    _slotBegin = _counted;
    _manager.AdvanceSlot();
    for (const auto* stats : {&_counts, &_times}) {
        for (Stat* stat : *stats) {
            stat->Clear();
        }
    }
}

void RenderStatistics::_DumpToFile() {
    if (std::FILE* const file = MgrStats::GetDumpFile()) {
        FileWrapper wrapper(file);
        wrapper.Write("[", 1);
        _manager.DumpStats(&wrapper);
        wrapper.Write("]\n", 2);
        std::fflush(file);
    }
}

std::string RenderStatistics::Print() const {
    std::string text = Format("%-24s %16s %16s\n", "statistics", "total", "last slot");
    for (const auto& [name, member] : kCounts) {
        text += Format("%-24s %16lld %16lld\n", name, static_cast<long long>(_counted.*member),
                       static_cast<long long>(_lastSlotEnd.*member - _lastSlotBegin.*member));
    }
    for (const auto& [name, member] : kTimes) {
        text += Format("%-24s %13.3f ms %13.3f ms\n", name, _counted.*member * 1000.0,
                       (_lastSlotEnd.*member - _lastSlotBegin.*member) * 1000.0);
    }
    for (const auto& [stage, invocations, batches] : kStages) {
        const auto fill = [&](std::int64_t count, std::int64_t run) {
            return OpenKL::GetBatchFill(count, run) * 100.0;
        };
        text += Format("%-24s %14.1f %% %14.1f %%\n", Format("lanes filled, %s", stage).c_str(),
                       fill(_counted.*invocations, _counted.*batches),
                       fill(_lastSlotEnd.*invocations - _lastSlotBegin.*invocations,
                            _lastSlotEnd.*batches - _lastSlotBegin.*batches));
    }
    return text;
}

} // namespace Tolen::Render

#include "render/Reports.h"

#include "engine/Batch.h"
#include "render/RenderPlan.h"
#include "scene/Primitive.h"
#include "scene/Program.h"
#include "scene/SceneObject.h"
#include "scene/StatisticsSum.h"

#include "TolenOpenKL/ContextOptions.h"

#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

namespace Tolen::OpenKL {

namespace {

std::string Describe(Problem problem, const Limits& limits, std::int64_t count) {
    const auto number = static_cast<long long>(count);
    switch (problem) {
    case kProblem_Depth:
        return Format("%lld rays dropped at the limit of depth %d", number, limits.depth);
    case kProblem_RayCount:
        return Format("%lld rays dropped that were more than kl_OutputRayCount", number);
    case kProblem_RayMemory:
        return Format("%lld rays dropped at the limit of %lld rays in flight", number,
                      static_cast<long long>(limits.raysInFlight));
    case kProblem_InvalidRay:
        return Format("%lld rays dropped whose origin, direction or distance is no number or whose "
                      "direction has no length",
                      number);
    case kProblem_LoopSteps:
        return Format("%lld invocations stopped at the limit of %lld loop steps", number,
                      static_cast<long long>(limits.loopSteps));
    case kProblem_Value:
        return Format("%lld accumulated components were NaN or infinite and count as 0", number);
    case kProblem_Accumulates:
        return Format("%lld accumulated values dropped at the limit of %zu in one batch", number,
                      kMaxBatchRecords);
    case kProblem_Count:
        break;
    }
    return std::string();
}

std::int64_t& GetCounter(Statistics& statistics, Problem problem) {
    switch (problem) {
    case kProblem_Depth:
        return statistics.raysDroppedByDepth;
    case kProblem_RayCount:
        return statistics.raysDroppedByCount;
    case kProblem_RayMemory:
        return statistics.raysDroppedByMemory;
    case kProblem_InvalidRay:
        return statistics.raysDroppedAsInvalid;
    case kProblem_LoopSteps:
        return statistics.loopsStopped;
    case kProblem_Accumulates:
        return statistics.accumulatesDropped;
    case kProblem_Value:
    case kProblem_Count:
        break;
    }
    return statistics.valuesReplaced;
}

} // namespace

void Reports::Count(Problem problem, const PlanPrimitive& primitive, std::int64_t count, int text,
                    int line) {
    const LinkedCode& code = *primitive.pProgram->code;
    Entry& entry = _entries[{problem, code.serial, text, line}];
    if (entry.count == 0 || primitive.handle < entry.primitive) {
        entry.primitive = primitive.handle;
        entry.primitiveName = primitive.pObject->GetPrimitive().GetName();
        entry.program = code.name;
        const auto shader = static_cast<std::size_t>(text);
        entry.shader = shader < code.texts.size() ? code.texts[shader] : std::string();
    }
    entry.count += count;
    GetCounter(counters, problem) += count;
}

void Reports::Add(const Reports& other) {
    AddStatistics(counters, other.counters);
    for (const auto& [key, entry] : other._entries) {
        Entry& own = _entries[key];
        const std::int64_t count = own.count + entry.count;
        if (own.count == 0 || entry.primitive < own.primitive) {
            own = entry;
        }
        own.count = count;
    }
}

void Reports::Tell(const Limits& limits, std::set<std::string>& told, Result& result) const {
    for (const auto& [key, entry] : _entries) {
        const std::string name =
            Format("%d %llu %d %d", static_cast<int>(key.problem),
                   static_cast<unsigned long long>(key.link), key.text, key.line);
        if (!told.insert(name).second) {
            continue;
        }
        std::string place = Format("program '%s', primitive '%s'", entry.program.c_str(),
                                   entry.primitiveName.c_str());
        if (key.line >= 0) {
            place += Format(", shader '%s', line %d", entry.shader.c_str(), key.line);
        }
        result.Add("%s: %s", place.c_str(), Describe(key.problem, limits, entry.count).c_str());
    }
}

} // namespace Tolen::OpenKL

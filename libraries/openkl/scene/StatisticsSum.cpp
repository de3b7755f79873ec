#include "scene/StatisticsSum.h"

#include "TolenOpenKL/Statistics.h"

#include <cstdint>
#include <iterator>

namespace Tolen::OpenKL {

namespace {

constexpr std::int64_t Statistics::*kCounts[] = {
    &Statistics::shadersCompiled,
    &Statistics::programsLinked,
    &Statistics::uniformWrites,
    &Statistics::frameInvocations,
    &Statistics::prefixInvocations,
    &Statistics::rayInvocations,
    &Statistics::vertexInvocations,
    &Statistics::setupInvocations,
    &Statistics::frameBatches,
    &Statistics::prefixBatches,
    &Statistics::rayBatches,
    &Statistics::vertexBatches,
    &Statistics::cameraRays,
    &Statistics::secondaryRays,
    &Statistics::occlusionRays,
    &Statistics::distanceRays,
    &Statistics::hits,
    &Statistics::misses,
    &Statistics::raysDroppedByDepth,
    &Statistics::raysDroppedByCount,
    &Statistics::raysDroppedByMemory,
    &Statistics::raysDroppedAsInvalid,
    &Statistics::accumulatesDropped,
    &Statistics::loopsStopped,
    &Statistics::valuesReplaced,
};

constexpr double Statistics::*kTimes[] = {
    &Statistics::compileSeconds, &Statistics::linkSeconds,      &Statistics::sceneSeconds,
    &Statistics::renderSeconds,  &Statistics::intersectSeconds, &Statistics::shadeSeconds,
};

static_assert(sizeof(Statistics) ==
                  std::size(kCounts) * sizeof(std::int64_t) + std::size(kTimes) * sizeof(double),
              "every number of the statistics is listed");

} // namespace

void AddStatistics(Statistics& sum, const Statistics& other) {
    for (const auto count : kCounts) {
        sum.*count += other.*count;
    }
    for (const auto time : kTimes) {
        sum.*time += other.*time;
    }
}

} // namespace Tolen::OpenKL

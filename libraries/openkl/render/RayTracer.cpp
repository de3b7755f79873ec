#include "render/RayTracer.h"

#include "scene/Scene.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

constexpr std::size_t kPacket = 16;

RTCIntersectContext MakeContext(RTCIntersectContextFlags flags) {
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    context.flags = flags;
    return context;
}

RTCRay MakeRay(const float* origin, const float* direction, float maxDistance) {
    RTCRay ray{};
    ray.org_x = origin[0];
    ray.org_y = origin[1];
    ray.org_z = origin[2];
    ray.dir_x = direction[0];
    ray.dir_y = direction[1];
    ray.dir_z = direction[2];
    ray.tnear = 0.0f;
    ray.tfar = maxDistance;
    ray.mask = 0xffffffffu;
    return ray;
}

RTCRayHit Intersect(RTCScene scene, const float* origin, const float* direction,
                    float maxDistance) {
    RTCRayHit hit{};
    hit.ray = MakeRay(origin, direction, maxDistance);
    hit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    hit.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context = MakeContext(RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT);
    rtcIntersect1(scene, &context, &hit);
    return hit;
}

} // namespace

RayTracer::RayTracer(const Scene& scene) : _scene(scene.GetHandle()) {}

void RayTracer::Trace(RayList& rays) const {
    for (std::size_t i = 0; i < rays.GetCount(); ++i) {
        RayRecord& ray = rays.GetRecord(i);
        const RTCRayHit hit = Intersect(_scene, ray.origin, ray.direction, ray.maxDistance);
        ray.primitive = hit.hit.geomID;
        ray.triangle = hit.hit.primID;
        ray.u = hit.hit.u;
        ray.v = hit.hit.v;
        ray.distance = hit.ray.tfar;
    }
}

void RayTracer::TraceCoherent(RayList& rays) const {
    for (std::size_t first = 0; first < rays.GetCount(); first += kPacket) {
        const std::size_t count = std::min(kPacket, rays.GetCount() - first);
        alignas(64) int valid[kPacket] = {};
        RTCRayHit16 packet{};
        for (std::size_t i = 0; i < count; ++i) {
            const RayRecord& ray = rays.GetRecord(first + i);
            valid[i] = -1;
            packet.ray.org_x[i] = ray.origin[0];
            packet.ray.org_y[i] = ray.origin[1];
            packet.ray.org_z[i] = ray.origin[2];
            packet.ray.dir_x[i] = ray.direction[0];
            packet.ray.dir_y[i] = ray.direction[1];
            packet.ray.dir_z[i] = ray.direction[2];
            packet.ray.tfar[i] = ray.maxDistance;
            packet.ray.mask[i] = 0xffffffffu;
            packet.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
            packet.hit.instID[0][i] = RTC_INVALID_GEOMETRY_ID;
        }
        RTCIntersectContext context = MakeContext(RTC_INTERSECT_CONTEXT_FLAG_COHERENT);
        rtcIntersect16(valid, _scene, &context, &packet);
        for (std::size_t i = 0; i < count; ++i) {
            RayRecord& ray = rays.GetRecord(first + i);
            ray.primitive = packet.hit.geomID[i];
            ray.triangle = packet.hit.primID[i];
            ray.u = packet.hit.u[i];
            ray.v = packet.hit.v[i];
            ray.distance = packet.ray.tfar[i];
        }
    }
}

bool RayTracer::IsOccluded(const float* origin, const float* direction, float maxDistance) const {
    RTCRay ray = MakeRay(origin, direction, maxDistance);
    RTCIntersectContext context = MakeContext(RTC_INTERSECT_CONTEXT_FLAG_INCOHERENT);
    rtcOccluded1(_scene, &context, &ray);
    // Occlusion is told by a negative end.
    return ray.tfar < 0.0f;
}

float RayTracer::FindDistance(const float* origin, const float* direction,
                              float maxDistance) const {
    const RTCRayHit hit = Intersect(_scene, origin, direction, maxDistance);
    return hit.hit.geomID == RTC_INVALID_GEOMETRY_ID ? -1.0f : hit.ray.tfar;
}

} // namespace Tolen::OpenKL

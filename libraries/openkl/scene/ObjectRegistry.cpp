#include "scene/ObjectRegistry.h"

#include <algorithm>
#include <atomic>
#include <map>
#include <mutex>
#include <vector>

namespace Tolen::OpenKL {

namespace {

struct Programs {
    std::mutex mutex;
    std::map<KLprogram, Program*> byHandle;
    KLprogram last = 0;
};

Programs& GetPrograms() {
    static Programs programs;
    return programs;
}

thread_local std::vector<Primitive*> boundPrimitives;
thread_local std::map<int, Buffer*> boundBuffers;

} // namespace

KLprogram RegisterProgram(Program& program) {
    Programs& programs = GetPrograms();
    const std::lock_guard lock(programs.mutex);
    programs.byHandle.emplace(++programs.last, &program);
    return programs.last;
}

void UnregisterProgram(KLprogram handle) {
    Programs& programs = GetPrograms();
    const std::lock_guard lock(programs.mutex);
    programs.byHandle.erase(handle);
}

Program* FindProgram(KLprogram handle) {
    Programs& programs = GetPrograms();
    const std::lock_guard lock(programs.mutex);
    const auto found = programs.byHandle.find(handle);
    return found == programs.byHandle.end() ? nullptr : found->second;
}

std::uint32_t MakeHandle() {
    // Handles fit a positive int, which is what shading code and KLprimitive hold them in.
    static std::atomic<std::uint32_t> last{0};
    return (last.fetch_add(1, std::memory_order_relaxed) & 0x7fffffffu) + 1;
}

std::uint64_t MakeStamp() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

void PushBoundPrimitive(Primitive& primitive) {
    boundPrimitives.push_back(&primitive);
}

void PopBoundPrimitive(const Primitive& primitive) {
    if (!boundPrimitives.empty() && boundPrimitives.back() == &primitive) {
        boundPrimitives.pop_back();
    }
}

Primitive* GetBoundPrimitive() {
    return boundPrimitives.empty() ? nullptr : boundPrimitives.back();
}

void ForgetBoundPrimitive(const Primitive& primitive) {
    std::erase(boundPrimitives, &primitive);
}

void SetBoundBuffer(int target, Buffer* buffer) {
    if (buffer == nullptr) {
        boundBuffers.erase(target);
    } else {
        boundBuffers[target] = buffer;
    }
}

Buffer* GetBoundBuffer(int target) {
    const auto found = boundBuffers.find(target);
    return found == boundBuffers.end() ? nullptr : found->second;
}

void ForgetBoundBuffer(const Buffer& buffer) {
    std::erase_if(boundBuffers, [&](const auto& entry) { return entry.second == &buffer; });
}

} // namespace Tolen::OpenKL

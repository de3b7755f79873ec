#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>

namespace Tolen::Effects::Tests {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool kHasWideFrames = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
inline constexpr bool kHasWideFrames = true;
#else
inline constexpr bool kHasWideFrames = false;
#endif
#else
inline constexpr bool kHasWideFrames = false;
#endif

/// The smallest stack that the library promises to get by with. Sanitizers make frames several
/// times as large.
inline constexpr std::size_t kSmallStack = std::size_t{kHasWideFrames ? 8 : 1} << 20;

/// Runs @p work on a thread with a small stack and waits for it.
inline void OnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kSmallStack);
    pthread_t thread;
    const auto run = [](void* function) -> void* {
        (*static_cast<std::function<void()>*>(function))();
        return nullptr;
    };
    if (pthread_create(&thread, &attributes, run, &work) == 0) {
        pthread_join(thread, nullptr);
    }
    pthread_attr_destroy(&attributes);
}

} // namespace Tolen::Effects::Tests

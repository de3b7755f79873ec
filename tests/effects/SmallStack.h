#pragma once

#include "support/Sanitizers.h"

#include <pthread.h>

#include <cstddef>
#include <functional>

namespace Tolen::Effects::Tests {

/// The smallest stack that the library promises to get by with. Sanitizers make frames several
/// times as large.
inline constexpr std::size_t kSmallStack =
    std::size_t{Tolen::Tests::kIsThreadSanitized || Tolen::Tests::kIsAddressSanitized ? 8 : 1}
    << 20;

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

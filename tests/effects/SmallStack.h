#pragma once

#include <pthread.h>

#include <cstddef>
#include <functional>

namespace Tolen::Effects::Tests {

/// Runs @p work on a thread with a stack of 1 MiB and waits for it.
inline void OnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 20);
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

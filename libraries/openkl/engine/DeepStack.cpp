#include "engine/DeepStack.h"

#include <pthread.h>

namespace Tolen::OpenKL {

namespace {

void* RunWork(void* pWork) {
    (*static_cast<const std::function<void()>*>(pWork))();
    return nullptr;
}

} // namespace

bool RunWithStack(std::size_t bytes, const std::function<void()>& work) {
    pthread_attr_t attributes;
    if (pthread_attr_init(&attributes) != 0) {
        return false;
    }
    std::function<void()> copy = work;
    pthread_t thread;
    bool isRunning = pthread_attr_setstacksize(&attributes, bytes) == 0 &&
                     pthread_create(&thread, &attributes, RunWork, &copy) == 0;
    pthread_attr_destroy(&attributes);
    return isRunning && pthread_join(thread, nullptr) == 0;
}

} // namespace Tolen::OpenKL

#pragma once

#include "engine/BatchOutput.h"
#include "engine/Kernel.h"

#include <tbb/enumerable_thread_specific.h>
#include <tbb/global_control.h>
#include <tbb/parallel_for.h>
#include <tbb/task_arena.h>

#include <atomic>
#include <cstddef>
#include <optional>
#include <thread>
#include <vector>

#if defined(__SANITIZE_THREAD__)
#define TOLEN_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TOLEN_THREAD_SANITIZER
#endif
#endif

namespace Tolen::OpenKL {

/// What a thread needs to run kernels.
struct KernelThread {
    explicit KernelThread(InstructionSet instructionSet) : scratch(instructionSet) {}

    KernelScratch scratch;
    BatchOutput output;
};

/// The threads that run kernels for a context.
class ThreadTeam {
public:
    /// @param threads 0 stands for one on each core
    ThreadTeam(int threads, InstructionSet instructionSet);

    /// Calls @p work with each index below @p count, on the threads of the team, and returns when
    /// the last call has.
    template <class Work>
    void ForEach(std::size_t count, const Work& work) {
#if defined(TOLEN_THREAD_SANITIZER)
        // TBB synchronises inside a library that the sanitizer can't look into, which would make
        // every task look like a race. Threads of our own show it what the work itself does.
        std::atomic<std::size_t> next{0};
        const auto run = [&] {
            for (std::size_t index = next++; index < count; index = next++) {
                work(index);
            }
        };
        std::vector<std::thread> helpers;
        for (int i = 1; i < _arena.max_concurrency(); ++i) {
            helpers.emplace_back(run);
        }
        run();
        for (std::thread& helper : helpers) {
            helper.join();
        }
#else
        _arena.execute([&] { tbb::parallel_for(std::size_t{0}, count, work); });
#endif
    }

    /// What belongs to the calling thread. A kernel that runs must not be interrupted by another on
    /// the same thread.
    KernelThread& GetKernelThread() { return _kernelThreads.local(); }

private:
    /// More threads than cores have to be asked for.
    std::optional<tbb::global_control> _control;
    tbb::task_arena _arena;
    tbb::enumerable_thread_specific<KernelThread> _kernelThreads;
};

} // namespace Tolen::OpenKL

#pragma once

#include "engine/BatchOutput.h"
#include "engine/Kernel.h"

#include <tbb/enumerable_thread_specific.h>
#include <tbb/global_control.h>
#include <tbb/task_arena.h>

#include <optional>

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

    /// Runs @p function, in which parallel algorithms use the threads of the team.
    template <class Function>
    void Execute(Function&& function) {
        _arena.execute(function);
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

#include "scene/ThreadTeam.h"

namespace Tolen::OpenKL {

ThreadTeam::ThreadTeam(int threads, InstructionSet instructionSet)
    : _arena(threads == 0 ? tbb::task_arena::automatic : threads),
      _kernelThreads([instructionSet] { return KernelThread(instructionSet); }) {
    const auto wanted = static_cast<std::size_t>(threads);
    if (wanted > tbb::global_control::active_value(tbb::global_control::max_allowed_parallelism)) {
        _control.emplace(tbb::global_control::max_allowed_parallelism, wanted);
    }
}

} // namespace Tolen::OpenKL

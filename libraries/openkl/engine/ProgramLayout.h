#pragma once

#include "engine/Kernel.h"

namespace Tolen::OpenKL {

struct LinkedStage;

/// The words of kl_OutputRayCount at the start of the state; a frame uses the first alone.
inline constexpr int kRayCountWords = 8;

/// Lays out the values of a program and of one of its stages.
/// @param globalWords takes for each global of the stage its first word in the state, or -1
KernelLayout MakeLayout(const LinkedProgram& program, const LinkedStage& stage,
                        std::vector<int>& globalWords);

/// Whether the globals of a stage that have a state are those of this storage.
bool IsKeptInState(const LinkedStage& stage, int storage);

} // namespace Tolen::OpenKL

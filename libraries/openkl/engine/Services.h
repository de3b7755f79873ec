#pragma once

#include "engine/executor/Instruction.h"

namespace Tolen::OpenKL {

/// Does the work of a Call instruction.
void CallService(ExecutionState& state, const Instruction& instruction);

} // namespace Tolen::OpenKL

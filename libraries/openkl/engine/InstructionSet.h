#pragma once

namespace Tolen::OpenKL {

/// The instruction sets that the executor is compiled for. All of them give the same bits.
enum class InstructionSet {
    Baseline, ///< what every x86-64 has
    Avx2,     ///< AVX2
    Avx512,   ///< AVX-512 F, BW, DQ and VL
};

/// Whether this machine runs @p instructionSet.
bool IsSupported(InstructionSet instructionSet);

/// The widest instruction set that this machine runs.
InstructionSet GetBestInstructionSet();

/// "baseline", "avx2" or "avx512".
const char* GetName(InstructionSet instructionSet);

} // namespace Tolen::OpenKL

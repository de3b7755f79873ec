#include "engine/InstructionSet.h"

namespace Tolen::OpenKL {

bool IsSupported(InstructionSet instructionSet) {
    switch (instructionSet) {
    case InstructionSet::Baseline:
        return true;
    case InstructionSet::Avx2:
        return __builtin_cpu_supports("avx2") != 0;
    case InstructionSet::Avx512:
        return __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512bw") != 0 &&
               __builtin_cpu_supports("avx512dq") != 0 && __builtin_cpu_supports("avx512vl") != 0;
    }
    return false;
}

InstructionSet GetBestInstructionSet() {
    static const InstructionSet best = IsSupported(InstructionSet::Avx512) ? InstructionSet::Avx512
                                       : IsSupported(InstructionSet::Avx2)
                                           ? InstructionSet::Avx2
                                           : InstructionSet::Baseline;
    return best;
}

const char* GetName(InstructionSet instructionSet) {
    switch (instructionSet) {
    case InstructionSet::Baseline:
        return "baseline";
    case InstructionSet::Avx2:
        return "avx2";
    case InstructionSet::Avx512:
        return "avx512";
    }
    return "";
}

} // namespace Tolen::OpenKL

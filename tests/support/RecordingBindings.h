#pragma once

#include "TolenOpenKLWrapper/kl.h"

#include <map>
#include <string>
#include <vector>

/// A texture is known by the name of its image.
struct KLtextureRecord {
    std::string id;
};

namespace Tolen::Tests {

class RecordingBuffer;
class RecordingPrimitive;
class RecordingProgram;

/// What is bound in the process; objects take themselves out when they die.
struct RecordingBindings {
    std::vector<RecordingPrimitive*> primitives; ///< a stack
    std::map<int, RecordingBuffer*> buffers;     ///< by target
    std::map<KLprogram, RecordingProgram*> programs;

    static RecordingBindings& Get();
};

} // namespace Tolen::Tests

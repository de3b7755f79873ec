#include "support/RecordingBindings.h"

#include "support/RecordingBuffer.h"
#include "support/RecordingContext.h"
#include "support/RecordingPrimitive.h"
#include "support/RecordingProgram.h"

namespace Tolen::Tests {

RecordingBindings& RecordingBindings::Get() {
    static RecordingBindings bindings;
    return bindings;
}

} // namespace Tolen::Tests

using namespace Tolen::Tests;

extern "C" void klUseProgram(KLprogram program) {
    RecordingBindings& bindings = RecordingBindings::Get();
    RecordingPrimitive* primitive =
        bindings.primitives.empty() ? nullptr : bindings.primitives.back();
    if (primitive != nullptr) {
        primitive->SetProgram(program);
    }
    const auto found = bindings.programs.find(program);
    if (found != bindings.programs.end()) {
        const std::string on = primitive == nullptr ? "" : " on " + primitive->GetId();
        RecordingProgram& used = *found->second;
        used.GetContext().GetLog().Record("UseProgram", used.GetId() + on);
    }
}

extern "C" void klBufferSubData(int target, long offset, long bytes, const void* data) {
    RecordingBindings& bindings = RecordingBindings::Get();
    const auto found = bindings.buffers.find(target);
    if (found != bindings.buffers.end()) {
        found->second->Write(offset, bytes, data);
    }
}

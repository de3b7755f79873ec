#include "TolenOpenKLWrapper/kl.h"

#include "scene/Buffer.h"
#include "scene/ObjectRegistry.h"
#include "scene/Primitive.h"

#include "TolenCore/Export.h"

using namespace Tolen::OpenKL;

// The wrapper declares these for any implementation; here they are defined and shown.
extern "C" {

TOLEN_EXPORT void klUseProgram(KLprogram program) {
    Primitive* const primitive = GetBoundPrimitive();
    if (primitive == nullptr) {
        return;
    }
    if (program == 0 || FindProgram(program) != nullptr) {
        primitive->UseProgram(program);
    }
}

TOLEN_EXPORT void klBufferSubData(int target, long offset, long bytes, const void* data) {
    if (Buffer* const buffer = GetBoundBuffer(target)) {
        buffer->Write(offset, bytes, data);
    }
}
}

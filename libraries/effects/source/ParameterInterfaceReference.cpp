#include "ParameterInterfaceArray.h"
#include "ParameterInterfaceSingle.h"

/// Graphs don't take connected shaders yet.

namespace Tolen::Effects {

IReferenceParameter* ParameterInterfaceSingle::CreateReference(IGraph*) {
    return nullptr;
}

bool ParameterInterfaceSingle::DestroyReference(IReferenceParameter*) {
    return false;
}

IReferenceParameter* ParameterInterfaceArray::CreateReference(IGraph*) {
    return nullptr;
}

bool ParameterInterfaceArray::DestroyReference(IReferenceParameter*) {
    return false;
}

} // namespace Tolen::Effects

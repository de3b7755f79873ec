#include "ParameterInterfaceArray.h"
#include "ParameterInterfaceSingle.h"

/// Until graphs know how to use connected shaders.

namespace Tolen::Effects {

bool ParameterInterface::CollectConstructor(CompoundStatement*) {
    return false;
}

IReferenceParameter* ParameterInterfaceSingle::CreateReference(IGraph*) {
    return nullptr;
}

bool ParameterInterfaceSingle::DestroyReference(IReferenceParameter*) {
    return false;
}

bool ParameterInterfaceSingle::CollectShader(Module*) {
    return false;
}

bool ParameterInterfaceSingle::VisitTransformations(FastDelegate2<Class, Visitor*, bool>&) {
    return false;
}

IReferenceParameter* ParameterInterfaceArray::CreateReference(IGraph*) {
    return nullptr;
}

bool ParameterInterfaceArray::DestroyReference(IReferenceParameter*) {
    return false;
}

bool ParameterInterfaceArray::CollectShader(Module*) {
    return false;
}

bool ParameterInterfaceArray::VisitTransformations(FastDelegate2<Class, Visitor*, bool>&) {
    return false;
}

} // namespace Tolen::Effects

#include "ParameterInterfaceArray.h"
#include "ParameterInterfaceSingle.h"

#include "ReferenceParameterInterfaceArray.h"
#include "ReferenceParameterInterfaceSingle.h"

#include <memory>

/// The references of inputs that take shaders: every call makes one, which its holder gives back.

namespace Tolen::Effects {

namespace {

template <class Reference, class Parameter>
IReferenceParameter* _CreateReference(Parameter* parameter, IGraph* graph) {
    if (graph == nullptr) {
        return nullptr;
    }
    auto reference = std::make_unique<Reference>();
    return reference->Init(graph, parameter) ? reference.release() : nullptr;
}

} // namespace

IReferenceParameter* ParameterInterfaceSingle::CreateReference(IGraph* graph) {
    return _CreateReference<ReferenceParameterInterfaceSingle>(this, graph);
}

bool ParameterInterfaceSingle::DestroyReference(IReferenceParameter* reference) {
    delete reference;
    return true;
}

IReferenceParameter* ParameterInterfaceArray::CreateReference(IGraph* graph) {
    return _CreateReference<ReferenceParameterInterfaceArray>(this, graph);
}

bool ParameterInterfaceArray::DestroyReference(IReferenceParameter* reference) {
    delete reference;
    return true;
}

} // namespace Tolen::Effects

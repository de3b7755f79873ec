#pragma once

#include "TolenCore/FastDelegate.h"

namespace Tolen::Effects {

class IGraph;

/// A non-static input of a class in a graph.
class IReferencePrototypeParameter {
public:
    virtual ~IReferencePrototypeParameter() = default;

    virtual bool
    AddListenerChangeStructure(FastDelegate1<IReferencePrototypeParameter*, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeStructure(FastDelegate1<IReferencePrototypeParameter*, bool>& listener) = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

#pragma once

#include "TolenCore/FastDelegate.h"

namespace Tolen::Effects {

class IGraph;

/// A non-static member variable of a class in a graph.
class IReferencePrototypeMember {
public:
    virtual ~IReferencePrototypeMember() = default;

    virtual bool
    AddListenerChangeStructure(FastDelegate1<IReferencePrototypeMember*, bool>& listener) = 0;
    virtual bool
    RemoveListenerChangeStructure(FastDelegate1<IReferencePrototypeMember*, bool>& listener) = 0;
    virtual IGraph* GetGraph() = 0;
};

} // namespace Tolen::Effects

#pragma once

#include "IReferencePrototypeParameter.h"
#include "PrototypeShader.h"
#include "ReferencePrototypeShader.h"

#include "TolenCore/CreationOrder.h"

#include <string>

namespace Tolen::Effects {

class PrototypeParameterInterfaceArray;
class PrototypeParameterInterfaceSingle;

/// A non-static input that takes shaders, of a class in a graph. What is connected is known to the
/// instances alone, so that nothing changes here; questions about code go on to the class.
///
/// @tparam Owner the prototype of the input
template <class Owner>
class ReferencePrototypeParameterInterface : public IReferencePrototypeParameter,
                                             public CreationOrder {
public:
    /// @param owner  borrowed, made this object
    /// @param parent borrowed
    bool Init(Owner* owner, ReferencePrototypeShader* parent) {
        _pOwner = owner;
        _pParent = parent;
        _pGraph = parent->GetGraph();
        return true;
    }

    /// Both answer true.
    bool
    AddListenerChangeStructure(FastDelegate1<IReferencePrototypeParameter*, bool>&) override {
        return true;
    }
    bool
    RemoveListenerChangeStructure(FastDelegate1<IReferencePrototypeParameter*, bool>&) override {
        return true;
    }
    IGraph* GetGraph() override { return _pGraph; }
    Owner* GetOwner() const { return _pOwner; }

    /// Adds the class's own code.
    virtual bool CollectShader(Module* module) {
        return _pParent->GetPrototypeShader()->CollectShader(module);
    }
    /// The name of a static method of the class in generated code.
    virtual std::string GetMethodNameMangled(const std::string& method) const {
        return _pParent->GetPrototypeShader()->GetStaticMethodNameMangled(method);
    }

private:
    Owner* _pOwner = nullptr;                     ///< borrowed
    ReferencePrototypeShader* _pParent = nullptr; ///< borrowed
    IGraph* _pGraph = nullptr;                    ///< borrowed
};

using ReferencePrototypeParameterInterfaceSingle =
    ReferencePrototypeParameterInterface<PrototypeParameterInterfaceSingle>;
using ReferencePrototypeParameterInterfaceArray =
    ReferencePrototypeParameterInterface<PrototypeParameterInterfaceArray>;

} // namespace Tolen::Effects

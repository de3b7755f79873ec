#pragma once

#include "PrototypeParameterInterface.h"

namespace Tolen::Effects {

/// A non-static input that takes one shader.
class PrototypeParameterInterfaceSingle : public PrototypeParameterInterface {
public:
    /// An initializer has to be a constructor call of a class; it is checked for interfaces.
    /// @param declaration, prototype borrowed
    bool Init(const VariableDeclaration* declaration, IPrototypeInterface* prototype,
              const std::string& name);
    bool Init(const VariableDeclaration* declaration, IPrototypeShader* prototype,
              const std::string& name);

    IParameter* CreateParameter(IShader* shader, Result* result) override;
    /// Every call makes a reference of its own.
    IReferencePrototypeParameter* CreateReference(ReferencePrototypeShader* shader) override;
    bool DestroyReference(IReferencePrototypeParameter* reference) override;

private:
    std::string _nameIndices;
};

} // namespace Tolen::Effects

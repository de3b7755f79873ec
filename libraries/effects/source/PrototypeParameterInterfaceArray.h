#pragma once

#include "PrototypeParameterInterface.h"

namespace Tolen::Effects {

/// A non-static input that takes an array of shaders.
class PrototypeParameterInterfaceArray : public PrototypeParameterInterface {
public:
    /// @param declaration, prototype borrowed
    /// @param length the declared length; 0 leaves it to each shader
    bool Init(const VariableDeclaration* declaration, IPrototypeInterface* prototype,
              const std::string& name, int length);
    bool Init(const VariableDeclaration* declaration, IPrototypeShader* prototype,
              const std::string& name, int length);

    bool IsFixedLength() const { return _isFixedLength; }
    int GetLength() const { return _length; }

    IParameter* CreateParameter(IShader* shader, Result* result) override;
    /// Every call makes a reference of its own.
    IReferencePrototypeParameter* CreateReference(ReferencePrototypeShader* shader) override;
    bool DestroyReference(IReferencePrototypeParameter* reference) override;

private:
    void _InitLength(int length);

    bool _isFixedLength = false;
    int _length = 0;
};

} // namespace Tolen::Effects

#include "PrototypeParameterInterface.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IPrototypeInterface.h"
#include "TolenEffects/IPrototypeShader.h"

namespace Tolen::Effects {

PrototypeParameterInterface::~PrototypeParameterInterface() {
    Shutdown();
}

void PrototypeParameterInterface::Shutdown() {
    if (_pMgrEffects != nullptr && _key != Key::Null()) {
        _pMgrEffects->DestroyKey(_key);
    }
    _key = Key::Null();
    _pMgrEffects = nullptr;
    _pDecl = nullptr;
    _pDefinition = static_cast<const InterfaceDefinition*>(nullptr);
}

const InterfaceDefinition* PrototypeParameterInterface::GetInterfaceDefinition() const {
    const auto* definition = std::get_if<const InterfaceDefinition*>(&_pDefinition);
    return definition == nullptr ? nullptr : *definition;
}

const ClassDefinition* PrototypeParameterInterface::GetClassDefinition() const {
    const auto* definition = std::get_if<const ClassDefinition*>(&_pDefinition);
    return definition == nullptr ? nullptr : *definition;
}

void PrototypeParameterInterface::_Init(const VariableDeclaration* declaration,
                                        IPrototypeInterface* prototype, const std::string& name) {
    _pDefinition = prototype->GetDefinition();
    _isInterface = true;
    _pMgrEffects = prototype->GetMgrEffects();
    _InitNames(declaration, name);
}

void PrototypeParameterInterface::_Init(const VariableDeclaration* declaration,
                                        IPrototypeShader* prototype, const std::string& name) {
    _pDefinition = prototype->GetDefinition();
    _isInterface = false;
    _pMgrEffects = prototype->GetMgrEffects();
    _InitNames(declaration, name);
}

void PrototypeParameterInterface::_InitNames(const VariableDeclaration* declaration,
                                             const std::string& name) {
    _pDecl = declaration;
    _key = _pMgrEffects->CreateKey();
    _name = name;
    _nameMangled = name + _key.ToString();
}

} // namespace Tolen::Effects

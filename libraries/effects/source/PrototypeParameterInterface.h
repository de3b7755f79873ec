#pragma once

#include "IPrototypeParameter.h"
#include "TolenEffects/Key.h"

#include <string>
#include <variant>

namespace Tolen::Effects {

class IMgrEffects;
class IPrototypeInterface;
class IPrototypeShader;
class VariableDeclaration;

/// What the prototypes of inputs that take shaders have in common. Such an input names either an
/// interface or a class.
class PrototypeParameterInterface : public IPrototypeParameter {
public:
    PrototypeParameterInterface(const PrototypeParameterInterface&) = delete;
    PrototypeParameterInterface& operator=(const PrototypeParameterInterface&) = delete;
    ~PrototypeParameterInterface() override;

    /// Gives the key back. Safe to repeat.
    void Shutdown();

    TypeSpecifier GetType() override { return kType_Void; }
    std::string GetName() const override { return _name; }
    const std::string& GetNameMangled() const override { return _nameMangled; }

    /// Whether the input names an interface; otherwise it names a class.
    bool IsInterface() const { return _isInterface; }
    /// The interface, null for a class.
    IPrototypeInterface* GetPrototypeInterface() const;
    /// The class, null for an interface.
    IPrototypeShader* GetPrototypeShader() const;

protected:
    PrototypeParameterInterface() = default;

    bool _Init(const VariableDeclaration* declaration, IPrototypeInterface* prototype,
               const std::string& name);
    bool _Init(const VariableDeclaration* declaration, IPrototypeShader* prototype,
               const std::string& name);

    IMgrEffects* _pMgrEffects = nullptr;         ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed from the library's module
    std::variant<IPrototypeInterface*, IPrototypeShader*> _pPrototype; ///< borrowed
    bool _isInterface = false;
    Key _key;
    std::string _name;
    std::string _nameMangled;

private:
    void _InitNames(const VariableDeclaration* declaration, const std::string& name);
};

} // namespace Tolen::Effects

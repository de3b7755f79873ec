#pragma once

#include "ReferencePrototypeShader.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/Key.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"

#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace Tolen::Effects {

class IGraph;

/// What the prototypes of value inputs and of members have in common: the declaration, the key
/// that makes the name unique, and one reference for each graph.
///
/// @tparam Derived   the class that ends the tree; has `kClassName`
/// @tparam Interface IPrototypeParameter or IPrototypeMember
/// @tparam Owner     IPrototypeShader or IMgrEffects
/// @tparam Ref       the class of the references
template <class Derived, class Interface, class Owner, class Ref>
class PrototypeValue : public Interface {
public:
    PrototypeValue(const PrototypeValue&) = delete;
    PrototypeValue& operator=(const PrototypeValue&) = delete;
    ~PrototypeValue() override { Shutdown(); }

    /// Destroys references that are left and gives the key back. Safe to repeat.
    void Shutdown() {
        _references.clear();
        if (IMgrEffects* manager = _GetManager(); manager != nullptr && _key != Key::Null()) {
            manager->DestroyKey(_key);
        }
        _key = Key::Null();
        _pOwner = nullptr;
        _pDecl = nullptr;
    }

    TypeSpecifier GetType() override {
        return _pDecl == nullptr ? kType_Void : _pDecl->GetType()->GetTypeSpecifier();
    }
    std::string GetName() const override {
        return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
    }
    const std::string& GetNameMangled() const override { return _nameMangled; }

    typename Interface::Reference* CreateReference(ReferencePrototypeShader* shader) override {
        IGraph* graph = shader->GetGraph();
        if (const auto found = _references.find(graph); found != _references.end()) {
            return found->second.get();
        }
        auto reference = std::make_unique<Ref>();
        if (!reference->Init(static_cast<Derived*>(this), shader)) {
            return nullptr;
        }
        return _references.emplace(graph, std::move(reference)).first->second.get();
    }

    bool DestroyReference(typename Interface::Reference* reference) override {
        const auto found =
            reference == nullptr ? _references.end() : _references.find(reference->GetGraph());
        if (found == _references.end() || found->second.get() != reference) {
            ConsolePrint("%s::DestroyReference Reference Not Found\n", Derived::kClassName);
            return false;
        }
        const std::unique_ptr<Ref> dying = std::move(found->second);
        _references.erase(found);
        return true;
    }

protected:
    /// @param name what GetNameMangled answers before initialisation
    explicit PrototypeValue(const char* name) : _nameMangled(name) {}

    /// @param owner, declaration borrowed
    /// @param stem what the key's text is put behind
    void _Init(Owner* owner, const VariableDeclaration* declaration, const std::string& stem) {
        _pOwner = owner;
        _pDecl = declaration;
        _key = _GetManager()->CreateKey();
        _nameMangled = stem + _key.ToString();
    }

    IMgrEffects* _GetManager() const {
        if constexpr (std::is_same_v<Owner, IMgrEffects>) {
            return _pOwner;
        } else {
            return _pOwner == nullptr ? nullptr : _pOwner->GetMgrEffects();
        }
    }

    Owner* _pOwner = nullptr;                    ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed from the library's module
    Key _key;
    std::string _nameMangled;
    std::map<IGraph*, std::unique_ptr<Ref>> _references;
};

} // namespace Tolen::Effects

#pragma once

#include "IStorage.h"
#include "ParameterValueSingle.h"

#include "TolenEffects/Key.h"

#include "TolenCore/ListenerSet.h"

#include <memory>
#include <string>

namespace Tolen::Effects {

class IMgrEffects;
class VariableDeclaration;

/// A single value input with a storage of its own, declared in generated code as a plain uniform.
/// The operations that reach the typed value come with FacadeParameterValueSingle.
class ParameterValueSingleStorageSeparate : public ParameterValueSingle {
public:
    ~ParameterValueSingleStorageSeparate() override;

    /// Makes the storage and evaluates the declared initializer into it.
    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param prefix      of the mangled name, before the key's text
    /// @return false for a type that can't be a value, or an initializer that is no constant; the
    ///         reasons are in @p result, if not null
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const std::string& prefix, Result* result);
    /// Gives back what Init took. Safe to repeat.
    void Shutdown();

    bool AddListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeValue(FastDelegate1<IParameter*, bool>& listener) override;
    /// A single value has no structure; both answer true.
    bool AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;
    bool RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) override;

    IReferenceParameter* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceParameter* reference) override;

    bool CollectConstructor(CompoundStatement* body) override;
    bool CollectShader(Module* module) override;

    bool IsComplete(Result* result) const override;
    ParameterClass GetClass() override;
    TypeSpecifier GetTypeSpecifier() override;
    std::string GetType() override;
    std::string GetName() override;
    int GetLength() const override;
    bool GetAsString(std::string& out, int index) const override;
    bool GetAsString(std::string& out) const override;

    std::string GetNameMangled() override;

protected:
    std::unique_ptr<IStorage> _pStorage;

    const VariableDeclaration* _GetDeclaration() const { return _pDecl; }

private:
    bool _InitStorageLocalApplyValue(TypeSpecifier specifier);
    bool _OnChangeValue();

    IMgrEffects* _pMgrEffects = nullptr;         ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed
    Key _key;
    std::string _nameMangled;
    ListenerSet<FastDelegate1<IParameter*, bool>> _listenersChangeValue;
};

} // namespace Tolen::Effects

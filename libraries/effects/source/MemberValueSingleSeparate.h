#pragma once

#include "AccessVariableSeparate.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/Key.h"

#include <memory>
#include <string>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IMgrEffects;
class VariableDeclaration;

/// A member variable that is one value. The generated constructor computes its initial value, so
/// any expression may stand in the declaration.
class MemberValueSingleSeparate : public IMember {
public:
    ~MemberValueSingleSeparate() override;

    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param prefix      of the mangled name, before the key's text
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const std::string& prefix, Result* result);
    /// Gives back what Init took. Safe to repeat.
    void Shutdown();

    /// The length never changes; both answer true.
    bool AddListenerChangeLength(FastDelegate1<IMember*, bool>& listener) override;
    bool RemoveListenerChangeLength(FastDelegate1<IMember*, bool>& listener) override;
    IReferenceMember* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceMember* reference) override;
    bool CollectConstructor(CompoundStatement* body) override;
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;
    std::string GetType() override;
    std::string GetName() override;
    bool IsArray() const override { return false; }
    int GetLength() const override { return 1; }
    bool SetLength(int length) override;
    bool IsResizable() const override { return false; }

private:
    IMgrEffects* _pMgrEffects = nullptr;         ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed
    Key _key;
    std::string _nameMangled = "Constructed";
    std::unique_ptr<AccessVariableSeparate> _pAccess;
};

} // namespace Tolen::Effects

#pragma once

#include "AccessLength.h"
#include "AccessSubscriptSeparate.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/Key.h"

#include "TolenCore/ListenerSet.h"

#include <memory>
#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class IMgrEffects;
class VariableDeclaration;

/// A member variable that is an array. Its size stands in the generated code, where the length is a
/// uniform beside it. The generated constructor computes the initial values one by one.
class MemberValueArraySeparate : public IMember {
public:
    ~MemberValueArraySeparate() override;

    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree. Only one with neither a length nor an
    ///                    initializer makes an array that can be resized; it starts empty
    /// @param prefix      of the mangled name, before the key's text
    /// @return false for a length that is no constant, or without a length for an initializer that
    ///         is no array constructor
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const std::string& prefix, Result* result);
    /// Gives back what Init took. Safe to repeat.
    void Shutdown();

    bool AddListenerChangeLength(FastDelegate1<IMember*, bool>& listener) override;
    bool RemoveListenerChangeLength(FastDelegate1<IMember*, bool>& listener) override;
    IReferenceMember* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceMember* reference) override;
    /// Fails when the initializer has not as many elements as the array.
    bool CollectConstructor(CompoundStatement* body) override;
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;
    std::string GetType() override;
    std::string GetName() override;
    bool IsArray() const override { return true; }
    int GetLength() const override { return _length; }
    bool SetLength(int length) override;
    bool IsResizable() const override { return _isResizable; }

    virtual TypeSpecifier GetTypeSpecifier();
    virtual std::string GetNameMangled();
    /// The name of the length's uniform in generated code.
    std::string GetNameLengthMangled() const { return _accessLength.GetName(); }
    /// Writes the length to @p primitive at @p location.
    bool ApplyLength(IKLPrimitive* primitive, IKLProgram* program, int location);

private:
    bool _InitLength();
    bool _InitAccess();

    IMgrEffects* _pMgrEffects = nullptr;         ///< borrowed
    const VariableDeclaration* _pDecl = nullptr; ///< borrowed
    Key _key;
    std::string _nameMangled = "Constructor";
    AccessLength _accessLength{"Constructor"};
    int _length = 0;
    bool _isResizable = false;
    std::unique_ptr<AccessSubscriptSeparate> _pAccess;
    ListenerSet<FastDelegate1<IMember*, bool>> _listenersChangeLength;
};

} // namespace Tolen::Effects

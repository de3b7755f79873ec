#pragma once

#include "AccessLength.h"
#include "IAccess.h"
#include "IStorage.h"
#include "ParameterValueArray.h"

#include "TolenEffects/Key.h"

#include "TolenCore/LifeToken.h"

#include <memory>
#include <string>

namespace Tolen {
class IKLPrimitive;
class IKLProgram;
} // namespace Tolen

namespace Tolen::Effects {

class VariableDeclaration;

/// An array input with a storage of its own. In generated code the values are a uniform block, and
/// the length is a uniform beside it, so that neither of them compiles anything again.
class ParameterValueArraySeparate : public ParameterValueArray {
public:
    ~ParameterValueArraySeparate() override;

    /// Makes the storage and evaluates the declared initializer into it. Without a declared length
    /// the array can be resized; it starts with the elements of an array constructor, or with none.
    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param prefix      of the mangled name, before the key's text
    /// @return false for a type that can't be a value, a length that is no constant, or an
    ///         initializer that is none; the reasons are in @p result, if not null
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const std::string& prefix, Result* result);
    /// Gives back what Init took. Safe to repeat.
    void Shutdown();

    IReferenceParameter* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceParameter* reference) override;
    bool CollectConstructor(CompoundStatement* body) override;
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    bool IsComplete(Result* result) const override;
    ParameterClass GetClass() override;
    TypeSpecifier GetTypeSpecifier() override;
    std::string GetType() override;
    std::string GetName() override;
    bool IsArray() const override;
    int GetLength() const override;
    bool SetLength(int length) override;
    bool IsResizable() const override;
    bool GetAsString(std::string& out, int index) const override;
    bool GetAsString(std::string& out) const override;

    using ParameterValueArray::Get;
    using ParameterValueArray::Set;

    /// The forms without an index are not those of an array and answer false.
#define TOLEN_DECLARE_ACCESS(specifier, T, name, bytes)                                            \
    bool Set(const T* values, int count) override;                                                 \
    bool Set(ArgumentOf<T> value, int index) override;                                             \
    bool Get(T& value, int index) override;
    TOLEN_ELEMENT_TYPES(TOLEN_DECLARE_ACCESS)
#undef TOLEN_DECLARE_ACCESS

    std::string GetNameMangled() override;
    /// The name of the length's uniform in generated code.
    std::string GetNameLengthMangled() const;

    /// Writes the length, or the values, to @p primitive at @p location.
    bool ApplyLength(IKLPrimitive* primitive, IKLProgram* program, int location);
    bool ApplyStorage(IKLPrimitive* primitive, IKLProgram* program, int location);

private:
    bool _HasStorage() const;
    bool _InitLength();
    bool _InitStorage(TypeSpecifier specifier, int length, Result* result);
    bool _InitStorageLocal(TypeSpecifier specifier, int length);
    bool _InitStorageBuffer(TypeSpecifier specifier, int length);
    bool _InitStorageTexture(TypeSpecifier specifier, int length);
    bool _InitAccessSubscriptSeparate(TypeSpecifier specifier, int length);
    bool _InitAccessBuffer(TypeSpecifier specifier, int length);
    bool _InitAccessTexture(TypeSpecifier specifier, int length);
    void _ShutdownStorage();
    /// Makes storage and access anew; on failure the ones before stay.
    bool _ReplaceStorage(int length);
    bool _ResizeStorage(int length);
    /// Fills the elements from @p first to @p end that a resize has added, unless the initializer
    /// was an array constructor, which is used once only.
    void _InitializeValueArrayPartial(TypeSpecifier specifier, int first, int end);

    bool _OnChangeValue();
    bool _FireChangeLength(bool isReplaced);

    const VariableDeclaration* _pDecl = nullptr; ///< borrowed
    Key _key;
    std::string _nameMangled;
    AccessLength _accessLength;
    int _length = 0;
    bool _isResizable = false;
    bool _isBuffered = false; ///< whether the values are a block and not a plain uniform
    std::unique_ptr<IStorage> _pStorage;
    std::unique_ptr<IAccess> _pAccess;
    LifeToken _life;
};

} // namespace Tolen::Effects

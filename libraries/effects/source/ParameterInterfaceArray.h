#pragma once

#include "ParameterInterface.h"

#include <set>
#include <string>

namespace Tolen::Effects {

class ClassDefinition;
class CompoundStatement;
class Expression;
class FieldSelection;
class ForStatement;
class FunctionCall;
class FunctionPrototype;
class FunctionSelection;
class InterfaceDefinition;
class Statement;
template <class T>
class TIParentSyntax;

/// An input that takes an array of shaders. In generated code a loop over the whole array unrolls
/// into calls of the connected shaders' own methods; other calls go through a function for each
/// method that dispatches by the index. `inputs.length` is a uniform.
class ParameterInterfaceArray : public ParameterInterface {
public:
    /// Makes the shaders that the declaration gives as defaults. Without a declared length the
    /// array can be resized and starts with one cell.
    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param definition  what the declared type names, borrowed, in a library's tree
    /// @param owner       the shader or class that has the input; borrowed
    /// @param length      the declared length, 0 for none
    /// @return false, shut down again, when a default can't be made; the reasons are in @p result,
    ///         if not null
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const ClassDefinition* definition, StructureNode* owner, int length, Result* result);
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration,
              const InterfaceDefinition* definition, StructureNode* owner, int length,
              Result* result);

    IReferenceParameter* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceParameter* reference) override;
    /// Declares the count and defines a dispatch function for each method.
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    bool IsArray() const override { return true; }
    bool SetLength(int length) override;
    bool IsResizable() const override;

    using ParameterInterface::Get;
    using ParameterInterface::Set;
    bool Set(IShader** values, int count) override;
    bool Set(IShader* value, int index) override;

    /// @return false for an index that is out of bounds; @p shader may come back null
    bool GetShader(IShader*& shader, int index) const;
    /// The stem of the names in generated code.
    const std::string& GetInterfaceNameMangled() const { return GetNameMangled(); }
    /// The declared name.
    const std::string& GetNameDeclared() const;

private:
    bool _InitArray(IMgrEffects* manager, const VariableDeclaration* declaration,
                    StructureNode* owner, int length, Result* result);
    bool _InitInitializer(Result* result);
    const FunctionCall* _GetInitializerFunction(bool& isArray) const;
    bool _InitInitializer_Single(Result* result, int first, int end, const FunctionCall* call);
    bool _InitInitializer_Multi(Result* result, const FunctionCall* call);

    // Code: ParameterInterfaceArrayCode.cpp
    bool _ReplaceReference(ForStatement* loop, TIParentSyntax<Statement>* slot);
    /// @param methods the names that may be called
    bool _ReplaceReference(FunctionSelection* selection, TIParentSyntax<Expression>* slot,
                           const std::set<std::string>& methods);
    bool _ReplaceReference(FieldSelection* selection, TIParentSyntax<Expression>* slot);
    std::string _MangleMethodName(const std::string& method) const;
    void _CreateUniformCount(Module* module) const;
    bool _CreateFunctionsSwitch(Module* module) const;
    bool _CreateFunctionSwitch(Module* module, const FunctionPrototype* method) const;
    CompoundStatement* _CreateFunctionSwitchBody(Module* module, const std::string& method,
                                                 const FunctionPrototype* prototype) const;

    const InterfaceDefinition* _pInterface = nullptr; ///< borrowed, null when the type is a class
    const ClassDefinition* _pClass = nullptr; ///< borrowed, null when the type is an interface
    std::string _nameCount;
};

} // namespace Tolen::Effects

#pragma once

#include "ParameterInterface.h"

namespace Tolen::Effects {

class Expression;
class FunctionSelection;
template <class T>
class TIParentSyntax;

/// An input that takes one shader. In generated code `input.Method(x)` becomes a call of the
/// connected shader's own method.
class ParameterInterfaceSingle : public ParameterInterface {
public:
    /// Makes the shader that the declaration gives as the default, if it gives one.
    /// @param manager     borrowed; gives the key
    /// @param declaration borrowed, in the library's tree
    /// @param owner       the shader or class that has the input; borrowed
    /// @return false, shut down again, when the default can't be made; the reasons are in
    ///         @p result, if not null
    bool Init(IMgrEffects* manager, const VariableDeclaration* declaration, StructureNode* owner,
              Result* result);

    IReferenceParameter* CreateReference(IGraph* graph) override;
    bool DestroyReference(IReferenceParameter* reference) override;
    /// Declares nothing.
    bool CollectShader(Module* module) override;
    bool VisitTransformations(FastDelegate2<Class, Visitor*, bool>& visit) override;

    using ParameterInterface::Get;
    using ParameterInterface::Set;
    /// There is one cell: @p index is not looked at.
    bool Set(IShader* value, int index) override;
    bool Set(IShader* value) override;

private:
    bool _InitInitializer(Result* result);
    bool _ReplaceReference(FunctionSelection* selection, TIParentSyntax<Expression>* slot);
};

} // namespace Tolen::Effects

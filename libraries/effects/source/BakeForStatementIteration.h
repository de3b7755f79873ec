#pragma once

#include <string>

namespace Tolen::Effects {

class Expression;
class FunctionSelection;
class ParameterInterfaceArray;
class Statement;
template <class T>
class TIParentSyntax;

/// Turns a copy of a loop's body into the code of one pass: the calls of the array's element become
/// calls of the shader's own methods.
///
///     inputs[i].Shade(x)   ->   Lamp_Shade_k3(x)
class BakeForStatementIteration {
public:
    /// @param parameter    the array, borrowed
    /// @param loopVariable the name of the index
    BakeForStatementIteration(const ParameterInterfaceArray* parameter,
                              const std::string& loopVariable);

    /// Rewrites @p statement for the pass @p index. A call of a method that the shader doesn't have
    /// stays as it is.
    /// @return false for an index that is out of bounds or leads to an empty cell
    bool Bake(Statement* statement, int index);

private:
    bool _VisitFunctionSelection(FunctionSelection* selection, TIParentSyntax<Expression>* slot);

    const ParameterInterfaceArray* _pParameter; ///< borrowed
    std::string _nameVariable;
    int _index = 0;
};

} // namespace Tolen::Effects

#pragma once

#include <string>

namespace Tolen::Effects {

class Expression;
class ForStatement;
class FunctionSelection;
class Variable;
template <class T>
class TParentSyntaxConst;

/// Whether a loop goes once over a whole array input, so that it can be unrolled:
///
///     for (int i = 0; i < inputs.length; ++i) ...
///
/// The body must call methods of the array's elements by the index `i` alone, and may do nothing
/// else with `i` but hand it to functions. It must not leave the loop by `break` or `continue`, nor
/// declare another `i`.
class PredicateUnrollForStatementInterfaceArray {
public:
    /// @param arrayName as declared
    /// @param loop      read during the call
    PredicateUnrollForStatementInterfaceArray(const std::string& arrayName,
                                              const ForStatement* loop);

    explicit operator bool() const { return _isValid; }

private:
    bool _IsHead(const ForStatement* loop);
    bool _IsInitialization(const ForStatement* loop);
    bool _IsCondition(const ForStatement* loop) const;
    bool _IsIteration(const ForStatement* loop) const;
    void _CheckBody(const ForStatement* loop);
    bool _VisitFunctionSelection(const FunctionSelection* selection,
                                 TParentSyntaxConst<Expression>* slot);
    bool _VisitVariable(const Variable* variable, TParentSyntaxConst<Expression>* slot);

    bool _isValid = false;
    std::string _nameArray;
    std::string _nameVariable;
};

} // namespace Tolen::Effects

#pragma once

namespace Tolen::Effects {

class ForStatement;
class ParameterInterfaceArray;
class Statement;

/// Unrolls a loop over a whole array input for the shaders that the array holds. What remains of
/// the loop is its variable, which is counted on between the passes, as they may hand it on:
///
///     for (int i = 0; i < inputs.length; ++i) { inputs[i].Shade(x); }
///  -> { int i = 0; { Lamp_Shade_k3(x); } ++i; { Sky_Shade_k5(x); } }
class UnrollForStatementInterfaceArray {
public:
    /// @param parameter the array, borrowed
    explicit UnrollForStatementInterfaceArray(const ParameterInterfaceArray* parameter);

    /// Whether the unrolled loop stays within kLimitUnrolledLoop.
    bool IsWithinLimit(const ForStatement* loop) const;

    /// @param loop of the form that PredicateUnrollForStatementInterfaceArray accepts; it is read
    /// @return a block, owned by the caller; it ends before the first empty cell. Null for a loop
    ///         that declares no variable
    Statement* Unroll(const ForStatement* loop) const;

private:
    const ParameterInterfaceArray* _pParameter; ///< borrowed
};

} // namespace Tolen::Effects

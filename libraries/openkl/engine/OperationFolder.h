#pragma once

#include "engine/Ir.h"

#include <functional>

namespace Tolen::OpenKL {

/// Rewrites single operations by the rules of arithmetic, to the bit.
class OperationFolder {
public:
    using MakeConstant = std::function<ValueId(std::uint32_t word)>;
    using MakeOperation = std::function<ValueId(Operation operation, ValueId a, ValueId b)>;

    /// @param makeOperation adds an operation in place of the one that is folded
    OperationFolder(const IrUnit& unit, MakeConstant makeConstant, MakeOperation makeOperation);

    /// @param op its arguments are final; they may change places or the operation may become
    ///           another one
    /// @return a value that is the same as the operation, or kNone
    ValueId Fold(IrOp& op);

private:
    bool _IsConstant(ValueId value) const;
    bool _IsWord(ValueId value, std::uint32_t word) const;
    std::uint32_t _GetWord(ValueId value) const { return _unit.ops[value].word; }
    bool _IsOperation(ValueId value, Operation operation) const;
    void _Order(IrOp& op) const;
    ValueId _FoldUnary(IrOp& op);
    ValueId _FoldBinary(IrOp& op);
    ValueId _FoldFloat(IrOp& op);
    ValueId _FoldPower(const IrOp& op);
    ValueId _FoldSelect(IrOp& op);
    bool _IsMask(ValueId value) const;

    const IrUnit& _unit;
    MakeConstant _makeConstant;
    MakeOperation _makeOperation;
};

} // namespace Tolen::OpenKL

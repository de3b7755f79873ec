#include "engine/OperationFolder.h"

#include "engine/executor/Instruction.h"

#include <bit>
#include <utility>

namespace Tolen::OpenKL {

namespace {

constexpr std::uint32_t kTrue = 0xffffffffu;
constexpr std::uint32_t kFloatOne = 0x3f800000u;

/// Whether the reciprocal of a float is exact, which holds for powers of two.
bool HasExactReciprocal(std::uint32_t word) {
    std::uint32_t exponent = (word >> 23) & 0xffu;
    return (word & 0x007fffffu) == 0 && exponent > 1 && exponent < 253;
}

} // namespace

OperationFolder::OperationFolder(const IrUnit& unit, MakeConstant makeConstant,
                                 MakeOperation makeOperation)
    : _unit(unit), _makeConstant(std::move(makeConstant)),
      _makeOperation(std::move(makeOperation)) {}

bool OperationFolder::_IsConstant(ValueId value) const {
    return _unit.ops[value].kind == IrKind::Constant;
}

bool OperationFolder::_IsWord(ValueId value, std::uint32_t word) const {
    return _IsConstant(value) && _GetWord(value) == word;
}

bool OperationFolder::_IsOperation(ValueId value, Operation operation) const {
    const IrOp& op = _unit.ops[value];
    return op.kind == IrKind::Operation && op.operation == operation;
}

/// Whether a value is certainly all ones or 0.
bool OperationFolder::_IsMask(ValueId value) const {
    if (_IsConstant(value)) {
        return _GetWord(value) == 0 || _GetWord(value) == kTrue;
    }
    const IrOp& op = _unit.ops[value];
    if (op.kind != IrKind::Operation) {
        return false;
    }
    switch (op.operation) {
    case Operation::FEqual:
    case Operation::FNotEqual:
    case Operation::FLess:
    case Operation::FLessEqual:
    case Operation::IEqual:
    case Operation::INotEqual:
    case Operation::ILess:
    case Operation::ILessEqual:
    case Operation::FIsNan:
    case Operation::FIsInf:
        return true;
    default:
        return false;
    }
}

/// Constants go second and the older value first, so that equal operations look equal.
void OperationFolder::_Order(IrOp& op) const {
    if (!GetInfo(op.operation).commutes) {
        return;
    }
    ValueId& a = op.arguments[0];
    ValueId& b = op.arguments[1];
    bool swap = _IsConstant(a) != _IsConstant(b) ? _IsConstant(a) : a > b;
    if (swap) {
        std::swap(a, b);
    }
}

ValueId OperationFolder::Fold(IrOp& op) {
    int arity = GetInfo(op.operation).arity;
    bool isConstant = true;
    std::uint32_t words[3] = {};
    for (int i = 0; i < arity; ++i) {
        ValueId argument = op.arguments[static_cast<std::size_t>(i)];
        isConstant &= _IsConstant(argument);
        words[i] = _unit.ops[argument].word;
    }
    if (isConstant) {
        return _makeConstant(EvaluateBaseline(op.operation, words[0], words[1], words[2]));
    }
    _Order(op);
    if (op.operation == Operation::Select) {
        return _FoldSelect(op);
    }
    return arity == 1 ? _FoldUnary(op) : arity == 2 ? _FoldBinary(op) : kNone;
}

ValueId OperationFolder::_FoldUnary(IrOp& op) {
    ValueId a = op.arguments[0];
    const IrOp& inner = _unit.ops[a];
    switch (op.operation) {
    case Operation::Move:
        return a;
    case Operation::FNeg:
    case Operation::INeg:
        return _IsOperation(a, op.operation) ? inner.arguments[0] : kNone;
    case Operation::FAbs:
        return _IsOperation(a, Operation::FAbs) ? a : kNone;
    case Operation::INot:
        if (inner.kind != IrKind::Operation) {
            return kNone;
        }
        switch (inner.operation) {
        case Operation::INot:
            return inner.arguments[0];
        case Operation::FEqual:
            return _makeOperation(Operation::FNotEqual, inner.arguments[0], inner.arguments[1]);
        case Operation::FNotEqual:
            return _makeOperation(Operation::FEqual, inner.arguments[0], inner.arguments[1]);
        case Operation::IEqual:
            return _makeOperation(Operation::INotEqual, inner.arguments[0], inner.arguments[1]);
        case Operation::INotEqual:
            return _makeOperation(Operation::IEqual, inner.arguments[0], inner.arguments[1]);
        case Operation::ILess:
            return _makeOperation(Operation::ILessEqual, inner.arguments[1], inner.arguments[0]);
        case Operation::ILessEqual:
            return _makeOperation(Operation::ILess, inner.arguments[1], inner.arguments[0]);
        default:
            return kNone;
        }
    default:
        return kNone;
    }
}

ValueId OperationFolder::_FoldBinary(IrOp& op) {
    ValueId a = op.arguments[0];
    ValueId b = op.arguments[1];
    switch (op.operation) {
    case Operation::IAdd:
    case Operation::ISub:
    case Operation::IShiftLeft:
    case Operation::IShiftRight:
    case Operation::IXor:
        return _IsWord(b, 0) ? a : kNone;
    case Operation::IMul:
        return _IsWord(b, 1) ? a : _IsWord(b, 0) ? b : kNone;
    case Operation::IDiv:
        return _IsWord(b, 1) ? a : kNone;
    case Operation::IMin:
    case Operation::IMax:
        return a == b ? a : kNone;
    case Operation::IAnd:
        return a == b || _IsWord(b, kTrue) ? a : _IsWord(b, 0) ? b : kNone;
    case Operation::IOr:
        return a == b || _IsWord(b, 0) ? a : _IsWord(b, kTrue) ? b : kNone;
    case Operation::IAndNot:
        return _IsWord(b, 0) ? a : kNone;
    case Operation::IEqual:
        return a == b ? _makeConstant(kTrue) : kNone;
    case Operation::INotEqual:
        // A bool that was made an int for storage.
        if (_IsWord(b, 0) && _IsOperation(a, Operation::MaskToI)) {
            return _unit.ops[a].arguments[0];
        }
        return a == b ? _makeConstant(0) : kNone;
    case Operation::FPow:
        return _FoldPower(op);
    default:
        return _FoldFloat(op);
    }
}

ValueId OperationFolder::_FoldFloat(IrOp& op) {
    ValueId a = op.arguments[0];
    ValueId b = op.arguments[1];
    switch (op.operation) {
    case Operation::FMul:
        return _IsWord(b, kFloatOne) ? a : kNone;
    case Operation::FSub:
        if (_IsOperation(b, Operation::FNeg)) {
            return _makeOperation(Operation::FAdd, a, _unit.ops[b].arguments[0]);
        }
        return _IsWord(b, 0) ? a : kNone;
    case Operation::FAdd:
        if (_IsOperation(b, Operation::FNeg)) {
            return _makeOperation(Operation::FSub, a, _unit.ops[b].arguments[0]);
        }
        if (_IsOperation(a, Operation::FNeg)) {
            return _makeOperation(Operation::FSub, b, _unit.ops[a].arguments[0]);
        }
        return kNone;
    case Operation::FDiv:
        if (_IsWord(b, kFloatOne)) {
            return a;
        }
        if (_IsConstant(b) && HasExactReciprocal(_GetWord(b))) {
            float reciprocal = 1.0f / std::bit_cast<float>(_GetWord(b));
            return _makeOperation(Operation::FMul, a,
                                  _makeConstant(std::bit_cast<std::uint32_t>(reciprocal)));
        }
        return kNone;
    case Operation::FNotEqual:
        if (_IsWord(b, 0) && _IsOperation(a, Operation::MaskToF)) {
            return _unit.ops[a].arguments[0];
        }
        return kNone;
    case Operation::FMin:
    case Operation::FMax:
        return a == b ? a : kNone;
    default:
        return kNone;
    }
}

/// Small whole exponents are products.
ValueId OperationFolder::_FoldPower(const IrOp& op) {
    ValueId x = op.arguments[0];
    if (!_IsConstant(op.arguments[1])) {
        return kNone;
    }
    float exponent = std::bit_cast<float>(_GetWord(op.arguments[1]));
    if (exponent == 1.0f) {
        return x;
    }
    if (exponent != 2.0f && exponent != 3.0f && exponent != 4.0f && exponent != 5.0f) {
        return kNone;
    }
    ValueId square = _makeOperation(Operation::FMul, x, x);
    if (exponent == 2.0f) {
        return square;
    }
    if (exponent == 3.0f) {
        return _makeOperation(Operation::FMul, x, square);
    }
    ValueId fourth = _makeOperation(Operation::FMul, square, square);
    return exponent == 4.0f ? fourth : _makeOperation(Operation::FMul, x, fourth);
}

ValueId OperationFolder::_FoldSelect(IrOp& op) {
    ValueId condition = op.arguments[0];
    ValueId a = op.arguments[1];
    ValueId b = op.arguments[2];
    if (a == b) {
        return a;
    }
    if (_IsWord(condition, kTrue)) {
        return a;
    }
    if (_IsWord(condition, 0)) {
        return b;
    }
    if (_IsWord(a, kTrue) && _IsWord(b, 0)) {
        return condition;
    }
    if (_IsWord(a, 0) && _IsWord(b, kTrue)) {
        return _makeOperation(Operation::INot, condition, kNone);
    }
    if (_IsWord(b, 0) && _IsMask(a)) {
        return _makeOperation(Operation::IAnd, condition, a);
    }
    if (_IsWord(a, kTrue) && _IsMask(b)) {
        return _makeOperation(Operation::IOr, condition, b);
    }
    if (_IsOperation(condition, Operation::INot)) {
        op.arguments = {_unit.ops[condition].arguments[0], b, a};
    }
    return kNone;
}

} // namespace Tolen::OpenKL

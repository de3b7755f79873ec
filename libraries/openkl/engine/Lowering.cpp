#include "engine/Lowering.h"

#include "engine/Uniformity.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace Tolen::OpenKL {

namespace {

class Lowerer {
public:
    Lowerer(const IrUnit& unit, const Uniformity& uniformity)
        : _unit(unit), _uniformity(uniformity), _values(unit.ops.size(), kNoRegister),
          _variables(unit.variables.size(), kNoRegister),
          _masks(unit.regions.size() + 1, kNoRegister), _scopeEnds(unit.regions.size() + 1, 0),
          _loops(unit.loops.size()), _blockEnds(unit.blocks.size()) {}

    LinearUnit Run() {
        _out.rows.push_back({kNone, false});
        _masks[0] = kLanesRow;
        _scopeEnds[0] = _AddLabel();
        for (std::uint32_t i = 0; i < _unit.loops.size(); ++i) {
            _out.loopOuter.push_back(_unit.loops[i].outer);
        }
        _out.loopStarts.resize(_unit.loops.size());
        _out.loopEnds.resize(_unit.loops.size());
        for (std::size_t i = 0; i < _unit.arrays.size(); ++i) {
            _out.arrays.push_back({_unit.arrays[i].count, !_uniformity.varyingArrays[i]});
        }
        _LowerRegion(0);
        _PlaceLabel(_scopeEnds[0]);
        _Emit(LinearCode::End);
        return std::move(_out);
    }

private:
    static constexpr int kNoExit = 1 << 30;

    struct LoopLabels {
        std::uint32_t next = 0; ///< where the step starts
        std::uint32_t end = 0;
    };

    // Registers.

    Register _AddRow(std::uint32_t loop, bool isTemporary) {
        _out.rows.push_back({loop, isTemporary});
        return static_cast<Register>(_out.rows.size() - 1);
    }

    Register _AddScalar(std::uint32_t loop, bool isTemporary) {
        _out.scalars.push_back({loop, isTemporary});
        return static_cast<Register>(_out.scalars.size() - 1) | kScalarBit;
    }

    Register _AddRegister(bool isVarying, std::uint32_t loop, bool isTemporary) {
        return isVarying ? _AddRow(loop, isTemporary) : _AddScalar(loop, isTemporary);
    }

    /// Constants come first among the scalars once registers are allocated.
    Register _GetConstant(std::uint32_t word) {
        auto [entry, isNew] = _constants.try_emplace(word, kNoRegister);
        if (isNew) {
            entry->second = _AddScalar(kNone, false);
            _out.constants.push_back(word);
            _out.constantRegisters.push_back(entry->second);
        }
        return entry->second;
    }

    Register _GetValue(ValueId id) {
        if (_values[id] == kNoRegister) {
            _values[id] = _GetConstant(_unit.ops[id].word);
        }
        return _values[id];
    }

    Register _GetVariable(std::uint32_t index) {
        Register& r = _variables[index];
        if (r == kNoRegister) {
            std::uint32_t loop = _unit.regions[_unit.Resolve(_unit.variables[index].region)].loop;
            r = _AddRegister(_uniformity.varyingVariables[index], loop, false);
        }
        return r;
    }

    // Code.

    LinearOp& _Emit(LinearCode code) {
        _out.ops.emplace_back();
        _out.ops.back().code = code;
        return _out.ops.back();
    }

    void _EmitOperation(Operation operation, Register dst, Register a, Register b = kNoRegister,
                        Register c = kNoRegister) {
        LinearOp& op = _Emit(LinearCode::Operate);
        op.operation = operation;
        op.dst = dst;
        op.a = a;
        op.b = b;
        op.c = c;
    }

    std::uint32_t _AddLabel() { return _out.labelCount++; }

    void _PlaceLabel(std::uint32_t label) {
        _Emit(LinearCode::Label).imm = static_cast<std::int32_t>(label);
    }

    void _EmitJump(LinearCode code, std::uint32_t label, Register condition = kNoRegister) {
        LinearOp& op = _Emit(code);
        op.imm = static_cast<std::int32_t>(label);
        op.a = condition;
    }

    std::uint32_t _GetScope(RegionId region) const { return _uniformity.regionScopes[region]; }
    Register _GetMask(RegionId region) const { return _masks[_GetScope(region)]; }

    /// Goes to the end of the scope of @p region when none of its lanes is left.
    void _LeaveIfNone(RegionId region) {
        std::uint32_t scope = _GetScope(region);
        _EmitJump(LinearCode::JumpIfNone, _scopeEnds[scope], _masks[scope]);
    }

    /// Takes the lanes of @p lanes out of the masks from scope @p from out to @p to. A mask that
    /// tells those lanes itself stays as it is, unless it is the last.
    void _ClearMasks(Register lanes, std::uint32_t from, std::uint32_t to) {
        std::uint32_t scope = from;
        while (true) {
            if (_masks[scope] != lanes || scope == to) {
                _EmitOperation(Operation::IAndNot, _masks[scope], _masks[scope], lanes);
            }
            if (scope == to) {
                break;
            }
            scope = _uniformity.scopeParents[scope];
        }
        _outermostExit = std::min(_outermostExit, _GetDepth(to));
    }

    int _GetDepth(std::uint32_t scope) const {
        int depth = 0;
        for (; scope != 0; scope = _uniformity.scopeParents[scope]) {
            ++depth;
        }
        return depth;
    }

    void _LowerRegion(RegionId region) {
        for (const IrNode& node : _unit.regions[region].nodes) {
            switch (node.kind) {
            case NodeKind::Op:
                _LowerOp(node.target, region);
                break;
            case NodeKind::If:
                _LowerIf(_unit.ifs[node.target], region);
                break;
            case NodeKind::Loop:
                _LowerLoop(node.target, region);
                break;
            case NodeKind::Block:
                _LowerBlock(node.target, region);
                break;
            case NodeKind::Break:
                _LowerExit(region, _unit.loops[node.target].test, _loops[node.target].end);
                break;
            case NodeKind::Continue:
                _LowerExit(region, _unit.loops[node.target].body, _loops[node.target].next);
                break;
            case NodeKind::Leave:
                _LowerExit(region, _unit.blocks[node.target].region, _blockEnds[node.target]);
                break;
            case NodeKind::Kill:
                _ClearMasks(_GetMask(region), _GetScope(region), 0);
                _EmitJump(LinearCode::Jump, _scopeEnds[_GetScope(region)]);
                break;
            }
        }
    }

    /// An exit to where the code of the scope of @p inside ends.
    void _LowerExit(RegionId region, RegionId inside, std::uint32_t label) {
        std::uint32_t from = _GetScope(region);
        std::uint32_t to = _GetScope(inside);
        if (from != to) {
            _ClearMasks(_masks[from], from, to);
            _EmitJump(LinearCode::Jump, _scopeEnds[from]);
        } else {
            _EmitJump(LinearCode::Jump, label);
        }
    }

    /// Goes to the end of the scope of @p region when what was lowered since @p before has taken
    /// the last of its lanes.
    void _LeaveAfterExits(RegionId region, int before) {
        if (_outermostExit <= _GetDepth(_GetScope(region))) {
            _LeaveIfNone(region);
        }
        _outermostExit = std::min(_outermostExit, before);
    }

    void _LowerIf(const IrIf& choice, RegionId region) {
        bool hasTrue = !_unit.regions[choice.whenTrue].nodes.empty();
        bool hasFalse = !_unit.regions[choice.whenFalse].nodes.empty();
        if (!hasTrue && !hasFalse) {
            return;
        }
        Register condition = _GetValue(choice.condition);
        if (IsScalar(condition)) {
            _LowerUniformIf(choice, condition, hasTrue, hasFalse);
            return;
        }
        std::uint32_t loop = _unit.regions[region].loop;
        Register outer = _GetMask(region);
        int before = std::exchange(_outermostExit, kNoExit);
        Register otherwise = kNoRegister;
        if (hasFalse) {
            otherwise = _AddRow(loop, false);
            _EmitOperation(Operation::IAndNot, otherwise, outer, condition);
        }
        if (hasTrue) {
            Register mask = _AddRow(loop, false);
            _EmitOperation(Operation::IAnd, mask, outer, condition);
            _LowerMasked(choice.whenTrue, mask);
        }
        if (hasFalse) {
            _LowerMasked(choice.whenFalse, otherwise);
        }
        _LeaveAfterExits(region, before);
    }

    void _LowerMasked(RegionId region, Register mask) {
        std::uint32_t scope = _GetScope(region);
        _masks[scope] = mask;
        _scopeEnds[scope] = _AddLabel();
        _LeaveIfNone(region);
        _LowerRegion(region);
        _PlaceLabel(_scopeEnds[scope]);
    }

    void _LowerUniformIf(const IrIf& choice, Register condition, bool hasTrue, bool hasFalse) {
        std::uint32_t end = _AddLabel();
        if (!hasTrue) {
            _EmitJump(LinearCode::JumpIfTrue, end, condition);
            _LowerRegion(choice.whenFalse);
        } else if (!hasFalse) {
            _EmitJump(LinearCode::JumpIfFalse, end, condition);
            _LowerRegion(choice.whenTrue);
        } else {
            std::uint32_t otherwise = _AddLabel();
            _EmitJump(LinearCode::JumpIfFalse, otherwise, condition);
            _LowerRegion(choice.whenTrue);
            _EmitJump(LinearCode::Jump, end);
            _PlaceLabel(otherwise);
            _LowerRegion(choice.whenFalse);
        }
        _PlaceLabel(end);
    }

    void _LowerLoop(std::uint32_t index, RegionId region) {
        const IrLoop& loop = _unit.loops[index];
        LoopLabels& labels = _loops[index];
        std::uint32_t start = _AddLabel();
        labels.next = _AddLabel();
        labels.end = _AddLabel();
        std::uint32_t scope = _GetScope(loop.test);
        int before = std::exchange(_outermostExit, kNoExit);
        if (_uniformity.divergentLoops[index]) {
            Register mask = _AddRow(loop.outer, false);
            _EmitOperation(Operation::Move, mask, _GetMask(region));
            _masks[scope] = mask;
            _scopeEnds[scope] = labels.end;
        }
        _PlaceLabel(start);
        _out.loopStarts[index] = static_cast<std::uint32_t>(_out.ops.size()) - 1;
        if (loop.testsFirst) {
            _LowerTest(loop, labels.end);
        }
        _LowerBody(index);
        _LowerRegion(loop.step);
        if (!loop.testsFirst) {
            _LowerTest(loop, labels.end);
        }
        _LowerStep(index, start);
        _out.loopEnds[index] = static_cast<std::uint32_t>(_out.ops.size());
        _PlaceLabel(labels.end);
        // Lanes may have left further out than this loop.
        _LeaveAfterExits(region, before);
    }

    void _LowerTest(const IrLoop& loop, std::uint32_t end) {
        _LowerRegion(loop.test);
        if (loop.condition == kNone) {
            return;
        }
        Register condition = _GetValue(loop.condition);
        if (IsScalar(condition)) {
            _EmitJump(LinearCode::JumpIfFalse, end, condition);
        } else {
            Register mask = _GetMask(loop.test);
            _EmitOperation(Operation::IAnd, mask, mask, condition);
            _EmitJump(LinearCode::JumpIfNone, end, mask);
        }
    }

    void _LowerBody(std::uint32_t index) {
        const IrLoop& loop = _unit.loops[index];
        if (_uniformity.divergentContinues[index]) {
            std::uint32_t scope = _GetScope(loop.body);
            _masks[scope] = _AddRow(index, false);
            _scopeEnds[scope] = _loops[index].next;
            _EmitOperation(Operation::Move, _masks[scope], _GetMask(loop.test));
        }
        _LowerRegion(loop.body);
        _PlaceLabel(_loops[index].next);
        if (_outermostExit <= _GetDepth(_GetScope(loop.test))) {
            _LeaveIfNone(loop.test);
        }
    }

    /// Counts the step and goes back. Invocations at their limit end for good.
    void _LowerStep(std::uint32_t index, std::uint32_t start) {
        const IrLoop& loop = _unit.loops[index];
        std::uint32_t scope = _GetScope(loop.test);
        Register stopped = _AddRow(index, false);
        std::uint32_t step = static_cast<std::uint32_t>(_out.stepLines.size());
        _out.stepTexts.push_back(loop.text);
        _out.stepLines.push_back(loop.line);
        LinearOp& op = _Emit(LinearCode::LoopStep);
        op.dst = stopped;
        op.a = _masks[scope];
        op.imm = static_cast<std::int32_t>(start);
        op.extra = step;
        _ClearMasks(stopped, scope, 0);
        _LeaveIfNone(loop.test);
        _EmitJump(LinearCode::Jump, start);
    }

    void _LowerBlock(std::uint32_t index, RegionId region) {
        RegionId inner = _unit.blocks[index].region;
        std::uint32_t end = _AddLabel();
        _blockEnds[index] = end;
        int before = std::exchange(_outermostExit, kNoExit);
        if (_uniformity.divergentBlocks[index]) {
            std::uint32_t scope = _GetScope(inner);
            _masks[scope] = _AddRow(_unit.regions[region].loop, false);
            _scopeEnds[scope] = end;
            _EmitOperation(Operation::Move, _masks[scope], _GetMask(region));
        }
        _LowerRegion(inner);
        _PlaceLabel(end);
        _LeaveAfterExits(region, before);
    }

    // Ops.

    void _LowerOp(std::uint32_t id, RegionId region) {
        const IrOp& op = _unit.ops[id];
        std::uint32_t loop = _unit.regions[region].loop;
        auto result = [&]() {
            _values[id] = _AddRegister(_uniformity.varyingValues[id], loop, true);
            return _values[id];
        };
        auto simple = [&](LinearCode code) {
            Register dst = result();
            LinearOp& linear = _Emit(code);
            linear.dst = dst;
            linear.imm = static_cast<std::int32_t>(op.word);
        };
        switch (op.kind) {
        case IrKind::Constant:
            break;
        case IrKind::Operation:
            _LowerOperation(op, result());
            break;
        case IrKind::LoadTable: {
            Register index = _GetValue(op.arguments[0]);
            Register dst = result();
            LinearOp& linear = _Emit(LinearCode::LoadTable);
            linear.dst = dst;
            linear.b = index;
            linear.imm = static_cast<std::int32_t>(op.index);
            linear.extra = op.word;
            break;
        }
        case IrKind::LoadBlock: {
            Register index = _GetValue(op.arguments[0]);
            Register dst = result();
            LinearOp& linear = _Emit(LinearCode::LoadBlock);
            linear.dst = dst;
            linear.b = index;
            linear.imm = static_cast<std::int32_t>(op.index);
            linear.extra = static_cast<std::uint32_t>(_out.extra.size());
            _out.extra.push_back(op.extra);
            _out.extra.push_back(op.word);
            break;
        }
        case IrKind::LoadConstant:
            simple(LinearCode::LoadConstant);
            break;
        case IrKind::LoadLane:
            simple(LinearCode::LoadLane);
            break;
        case IrKind::LoadInterpolated:
            simple(LinearCode::LoadInterpolated);
            break;
        case IrKind::LoadRayAttribute:
            simple(LinearCode::LoadRayAttribute);
            break;
        case IrKind::LoadVariable:
            _EmitOperation(Operation::Move, result(), _GetVariable(op.index));
            break;
        case IrKind::StoreVariable:
            _LowerStoreVariable(op, region);
            break;
        case IrKind::LoadArray: {
            Register index = _GetValue(op.arguments[0]);
            bool isScalar = _out.arrays[op.index].isScalar;
            Register dst = result();
            LinearOp& linear =
                _Emit(isScalar ? LinearCode::LoadScalarArray : LinearCode::LoadArray);
            linear.dst = dst;
            linear.b = index;
            linear.extra = op.index;
            break;
        }
        case IrKind::StoreArray: {
            Register index = _GetValue(op.arguments[0]);
            Register value = _GetValue(op.arguments[1]);
            bool isScalar = _out.arrays[op.index].isScalar;
            LinearOp& linear =
                _Emit(isScalar ? LinearCode::StoreScalarArray : LinearCode::StoreArray);
            linear.a = index;
            linear.b = value;
            linear.c = isScalar ? kNoRegister : _GetMask(region);
            linear.extra = op.index;
            break;
        }
        case IrKind::FillArray:
            _LowerFillArray(op, region);
            break;
        case IrKind::Service:
            _LowerService(id, region);
            break;
        case IrKind::ServiceResult: {
            Register dst = _AddRow(loop, true);
            _values[id] = dst;
            std::vector<Register>& results = _out.calls[_callOf.at(op.arguments[0])].results;
            if (results.size() <= op.word) {
                results.resize(op.word + 1, kNoRegister);
            }
            results[op.word] = dst;
            break;
        }
        case IrKind::StoreState: {
            Register value = _GetValue(op.arguments[0]);
            LinearOp& linear = _Emit(LinearCode::StoreState);
            linear.a = value;
            linear.imm = static_cast<std::int32_t>(op.word);
            break;
        }
        case IrKind::StoreOutput: {
            Register value = _GetValue(op.arguments[0]);
            LinearOp& linear = _Emit(LinearCode::StoreOutput);
            linear.a = value;
            linear.imm = static_cast<std::int32_t>(op.word);
            break;
        }
        }
    }

    void _LowerOperation(const IrOp& op, Register dst) {
        Register arguments[3] = {kNoRegister, kNoRegister, kNoRegister};
        int count = GetInfo(op.operation).arity;
        for (int i = 0; i < count; ++i) {
            arguments[i] = _GetValue(op.arguments[static_cast<std::size_t>(i)]);
        }
        _EmitOperation(op.operation, dst, arguments[0], arguments[1], arguments[2]);
    }

    void _LowerStoreVariable(const IrOp& op, RegionId region) {
        Register value = _GetValue(op.arguments[0]);
        Register variable = _GetVariable(op.index);
        bool isWhole =
            _uniformity.IsWithin(_GetScope(region), _uniformity.variableScopes[op.index]);
        if (isWhole) {
            _EmitOperation(Operation::Move, variable, value);
            return;
        }
        LinearOp& linear = _Emit(LinearCode::MaskedMove);
        linear.dst = variable;
        linear.a = value;
        linear.b = _GetMask(region);
    }

    void _LowerFillArray(const IrOp& op, RegionId region) {
        Register value = _GetValue(op.arguments[0]);
        bool isScalar = _out.arrays[op.index].isScalar;
        bool isWhole = _uniformity.IsWithin(_GetScope(region), _uniformity.arrayScopes[op.index]);
        if (isScalar || isWhole) {
            LinearOp& linear =
                _Emit(isScalar ? LinearCode::FillScalarArray : LinearCode::FillArray);
            linear.a = value;
            linear.extra = op.index;
            return;
        }
        for (std::uint32_t i = 0; i < _unit.arrays[op.index].count; ++i) {
            Register index = _GetConstant(i);
            LinearOp& linear = _Emit(LinearCode::StoreArray);
            linear.a = index;
            linear.b = value;
            linear.c = _GetMask(region);
            linear.extra = op.index;
        }
    }

    void _LowerService(std::uint32_t id, RegionId region) {
        const IrOp& op = _unit.ops[id];
        LinearCall call;
        call.service = static_cast<Service>(op.word);
        for (std::uint32_t i = 0; i < op.extra; ++i) {
            call.operands.push_back(_GetValue(_unit.serviceArguments[op.index + i]));
        }
        call.mask = _GetMask(region);
        auto index = static_cast<std::uint32_t>(_out.calls.size());
        _callOf[id] = index;
        _out.calls.push_back(std::move(call));
        _Emit(LinearCode::Call).imm = static_cast<std::int32_t>(index);
    }

    const IrUnit& _unit;
    const Uniformity& _uniformity;
    LinearUnit _out;
    std::vector<Register> _values;
    std::vector<Register> _variables;
    std::unordered_map<std::uint32_t, Register> _constants;
    std::unordered_map<std::uint32_t, std::uint32_t> _callOf;
    std::vector<Register> _masks;          ///< by scope
    std::vector<std::uint32_t> _scopeEnds; ///< labels by scope
    std::vector<LoopLabels> _loops;
    std::vector<std::uint32_t> _blockEnds;
    /// The least depth of a scope that lanes were taken from.
    int _outermostExit = kNoExit;
};

} // namespace

LinearUnit Lower(const IrUnit& unit, const Uniformity& uniformity) {
    return Lowerer(unit, uniformity).Run();
}

} // namespace Tolen::OpenKL

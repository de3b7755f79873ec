#include "engine/Assembler.h"

#include "engine/RegisterAllocation.h"

#include <array>

namespace Tolen::OpenKL {

namespace {

/// Rows beyond which a batch runs in halves, so that the rows still fit into the nearest cache.
constexpr std::uint32_t kMaxWideRows = 48;

constexpr int kForms[] = {
#define TOLEN_FORMS(name, forms) forms,
    TOLEN_OPENKL_INSTRUCTIONS(TOLEN_FORMS)
#undef TOLEN_FORMS
};

/// Where the handlers of each operation and then of each instruction start.
struct HandlerTable {
    std::array<HandlerIndex, static_cast<std::size_t>(Operation::Count)> operations;
    std::array<HandlerIndex, std::size(kForms)> instructions;

    HandlerTable() {
        int next = 0;
        for (std::size_t i = 0; i < operations.size(); ++i) {
            operations[i] = static_cast<HandlerIndex>(next);
            next += 1 << GetInfo(static_cast<Operation>(i)).arity;
        }
        for (std::size_t i = 0; i < instructions.size(); ++i) {
            instructions[i] = static_cast<HandlerIndex>(next);
            next += kForms[i];
        }
    }
};

const HandlerTable& GetHandlers() {
    static const HandlerTable table;
    return table;
}

class Assembler {
public:
    explicit Assembler(LinearUnit unit) : _unit(std::move(unit)) {}

    KernelUnit Run() {
        RegisterCounts counts = AllocateRegisters(_unit);
        _out.rowCount = counts.rows;
        _out.scalarCount = counts.scalars;
        _out.strideWords = counts.rows > kMaxWideRows ? kMaxLanes / 2 : kMaxLanes;
        _out.constants = _unit.constants;
        _out.extra = _unit.extra;
        _out.stepTexts = _unit.stepTexts;
        _out.stepLines = _unit.stepLines;
        _PlaceLabels();
        for (const LinearOp& op : _unit.ops) {
            if (op.code != LinearCode::Label) {
                _out.code.push_back(_Encode(op));
            }
        }
        for (const LinearCall& call : _unit.calls) {
            _EncodeCall(call);
        }
        return std::move(_out);
    }

private:
    void _PlaceLabels() {
        _labels.resize(_unit.labelCount);
        std::int32_t next = 0;
        for (const LinearOp& op : _unit.ops) {
            if (op.code == LinearCode::Label) {
                _labels[static_cast<std::size_t>(op.imm)] = next;
            } else {
                ++next;
            }
        }
    }

    std::uint32_t _Place(Register r) const {
        return IsScalar(r) ? GetIndex(r) : GetIndex(r) * _out.strideWords * 4u;
    }

    Instruction _Encode(const LinearOp& op) const {
        Instruction instruction;
        auto place = [&](Register r) { return r == kNoRegister ? 0 : _Place(r); };
        instruction.dst = place(op.dst);
        instruction.a = place(op.a);
        instruction.b = place(op.b);
        instruction.c = place(op.c);
        instruction.imm = op.imm;
        unsigned form = 0;
        auto scalarForm = [](Register first, Register second = kNoRegister) {
            unsigned bits = first != kNoRegister && IsScalar(first) ? 1u : 0u;
            return bits | (second != kNoRegister && IsScalar(second) ? 2u : 0u);
        };
        auto label = [&]() { return _labels[static_cast<std::size_t>(op.imm)]; };
        switch (op.code) {
        case LinearCode::Operate:
            return _EncodeOperation(op, instruction);
        case LinearCode::LoadTable:
        case LinearCode::LoadBlock:
            instruction.a = op.extra;
            form = scalarForm(op.b);
            break;
        case LinearCode::LoadArray:
        case LinearCode::LoadScalarArray:
            instruction.a = _PlaceArray(op.extra);
            form = scalarForm(op.b);
            break;
        case LinearCode::StoreArray:
            instruction.dst = _PlaceArray(op.extra);
            form = scalarForm(op.a, op.b);
            break;
        case LinearCode::StoreScalarArray:
            instruction.dst = _PlaceArray(op.extra);
            break;
        case LinearCode::FillArray:
        case LinearCode::FillScalarArray:
            instruction.dst = _PlaceArray(op.extra);
            instruction.imm = static_cast<std::int32_t>(_unit.arrays[op.extra].count);
            form = op.code == LinearCode::FillArray ? scalarForm(op.a) : 0;
            break;
        case LinearCode::MaskedMove:
        case LinearCode::StoreState:
        case LinearCode::StoreOutput:
            form = scalarForm(op.a);
            break;
        case LinearCode::LoopStep:
            instruction.b = op.extra;
            instruction.imm = label();
            break;
        case LinearCode::Jump:
        case LinearCode::JumpIfNone:
        case LinearCode::JumpIfFalse:
        case LinearCode::JumpIfTrue:
            instruction.imm = label();
            break;
        default:
            break;
        }
        instruction.handler = _GetHandler(op.code, form);
        return instruction;
    }

    static HandlerIndex _GetHandler(LinearCode code, unsigned form) {
        return static_cast<HandlerIndex>(
            GetHandlers().instructions[static_cast<std::size_t>(code)] + form);
    }

    static Instruction _EncodeOperation(const LinearOp& op, Instruction instruction) {
        unsigned form = 0;
        unsigned bit = 1;
        for (Register r : {op.a, op.b, op.c}) {
            form |= r != kNoRegister && IsScalar(r) ? bit : 0u;
            bit <<= 1;
        }
        if (op.operation == Operation::Move && !IsScalar(op.dst) && IsScalar(op.a)) {
            instruction.imm = 1;
            instruction.handler = _GetHandler(LinearCode::FillArray, 1);
            return instruction;
        }
        HandlerIndex first = GetHandlers().operations[static_cast<std::size_t>(op.operation)];
        instruction.handler = static_cast<HandlerIndex>(first + form);
        return instruction;
    }

    std::uint32_t _PlaceArray(std::uint32_t index) const {
        const LinearArray& array = _unit.arrays[index];
        return array.isScalar ? array.first : array.first * _out.strideWords * 4u;
    }

    void _EncodeCall(const LinearCall& call) {
        ServiceCall encoded;
        encoded.service = call.service;
        encoded.firstOperand = static_cast<std::uint32_t>(_out.callOperands.size());
        encoded.operandCount = static_cast<std::uint32_t>(call.operands.size());
        for (Register r : call.operands) {
            _out.callOperands.push_back({_Place(r), IsScalar(r)});
        }
        encoded.firstResult = static_cast<std::uint32_t>(_out.callOperands.size());
        encoded.resultCount = static_cast<std::uint32_t>(call.results.size());
        for (Register r : call.results) {
            _out.callOperands.push_back({r == kNoRegister ? kNoOperand : _Place(r), false});
        }
        encoded.mask = _Place(call.mask);
        _out.calls.push_back(encoded);
    }

    LinearUnit _unit;
    KernelUnit _out;
    std::vector<std::int32_t> _labels;
};

} // namespace

KernelUnit Assemble(LinearUnit unit) {
    return Assembler(std::move(unit)).Run();
}

} // namespace Tolen::OpenKL

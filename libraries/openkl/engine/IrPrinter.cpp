#include "engine/IrPrinter.h"

#include <cstdio>

namespace Tolen::OpenKL {

namespace {

constexpr const char* kKindNames[] = {
    "constant",  "",          "table",  "block",      "batch",       "lane",
    "varying",   "attribute", "load",   "store",      "loadArray",   "storeArray",
    "fillArray", "service",   "result", "storeState", "storeOutput",
};

constexpr const char* kCodeNames[] = {
#define TOLEN_NAME(name, forms) #name,
    TOLEN_OPENKL_INSTRUCTIONS(TOLEN_NAME)
#undef TOLEN_NAME
        "",
    "Label",
};

std::string ToHex(std::uint32_t word) {
    char text[16];
    std::snprintf(text, sizeof text, "#%x", word);
    return text;
}

class IrPrinter {
public:
    explicit IrPrinter(const IrUnit& unit) : _unit(unit) {}

    std::string Run() {
        _PrintRegion(0, 0);
        return std::move(_text);
    }

private:
    void _Line(int depth, const std::string& line) {
        _text.append(static_cast<std::size_t>(depth) * 2, ' ');
        _text += line + "\n";
    }

    std::string _Value(ValueId id) const {
        const IrOp& op = _unit.ops[id];
        return op.kind == IrKind::Constant ? ToHex(op.word) : "%" + std::to_string(id);
    }

    std::string _Op(ValueId id) const {
        const IrOp& op = _unit.ops[id];
        bool isOperation = op.kind == IrKind::Operation;
        std::string line = "%" + std::to_string(id) + " = ";
        line += isOperation ? GetInfo(op.operation).pName
                            : kKindNames[static_cast<std::size_t>(op.kind)];
        if (!isOperation) {
            line += " [" + std::to_string(op.index) + ", " + std::to_string(op.word) + "]";
        }
        ForEachArgument(_unit, op, [&](ValueId argument) { line += " " + _Value(argument); });
        return line;
    }

    void _PrintRegion(RegionId region, int depth) {
        for (const IrNode& node : _unit.regions[region].nodes) {
            std::string target = std::to_string(node.target);
            switch (node.kind) {
            case NodeKind::Op:
                _Line(depth, _Op(node.target));
                break;
            case NodeKind::If:
                _Line(depth, "if " + _Value(_unit.ifs[node.target].condition));
                _PrintRegion(_unit.ifs[node.target].whenTrue, depth + 1);
                _Line(depth, "else");
                _PrintRegion(_unit.ifs[node.target].whenFalse, depth + 1);
                break;
            case NodeKind::Loop: {
                const IrLoop& loop = _unit.loops[node.target];
                _Line(depth, (loop.testsFirst ? "while loop " : "do loop ") + target);
                _PrintRegion(loop.test, depth + 1);
                _Line(depth, loop.condition == kNone ? "always" : "test " + _Value(loop.condition));
                _PrintRegion(loop.body, depth + 1);
                _Line(depth, "step");
                _PrintRegion(loop.step, depth + 1);
                break;
            }
            case NodeKind::Block:
                _Line(depth, "block " + target);
                _PrintRegion(_unit.blocks[node.target].region, depth + 1);
                break;
            case NodeKind::Break:
                _Line(depth, "break " + target);
                break;
            case NodeKind::Continue:
                _Line(depth, "continue " + target);
                break;
            case NodeKind::Leave:
                _Line(depth, "leave " + target);
                break;
            case NodeKind::Kill:
                _Line(depth, "kill");
                break;
            }
        }
    }

    const IrUnit& _unit;
    std::string _text;
};

std::string PrintRegister(Register r) {
    return (IsScalar(r) ? " s" : " r") + std::to_string(GetIndex(r));
}

} // namespace

std::string Print(const IrUnit& unit) {
    return IrPrinter(unit).Run();
}

std::string Print(const LinearUnit& unit) {
    std::string text;
    for (const LinearOp& op : unit.ops) {
        if (op.code == LinearCode::Label) {
            text += "L" + std::to_string(op.imm) + ":\n";
            continue;
        }
        text += "    ";
        text += op.code == LinearCode::Operate ? GetInfo(op.operation).pName
                                               : kCodeNames[static_cast<std::size_t>(op.code)];
        if (op.dst != kNoRegister) {
            text += PrintRegister(op.dst) + " =";
        }
        for (Register r : {op.a, op.b, op.c}) {
            if (r != kNoRegister) {
                text += PrintRegister(r);
            }
        }
        if (op.code == LinearCode::Call) {
            const LinearCall& call = unit.calls[static_cast<std::size_t>(op.imm)];
            text += " service " + std::to_string(static_cast<int>(call.service));
            for (Register r : call.operands) {
                text += PrintRegister(r);
            }
        } else if (op.code != LinearCode::Operate) {
            text += " [" + std::to_string(op.imm) + ", " + std::to_string(op.extra) + "]";
        }
        text += "\n";
    }
    for (std::size_t i = 0; i < unit.constants.size(); ++i) {
        text += PrintRegister(unit.constantRegisters[i]) + " " + ToHex(unit.constants[i]) + "\n";
    }
    return text;
}

} // namespace Tolen::OpenKL

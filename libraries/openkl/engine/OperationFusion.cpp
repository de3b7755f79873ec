#include "engine/OperationFusion.h"

namespace Tolen::OpenKL {

void FuseOperations(IrUnit& unit) {
    std::vector<std::uint32_t> uses(unit.ops.size());
    auto use = [&](ValueId value) {
        if (value != kNone) {
            ++uses[value];
        }
    };
    for (const IrRegion& region : unit.regions) {
        for (const IrNode& node : region.nodes) {
            if (node.kind == NodeKind::Op) {
                ForEachArgument(unit, unit.ops[node.target], use);
            } else if (node.kind == NodeKind::If) {
                use(unit.ifs[node.target].condition);
            } else if (node.kind == NodeKind::Loop) {
                use(unit.loops[node.target].condition);
            }
        }
    }
    // A product from ahead of a loop is better made once.
    std::vector<RegionId> places(unit.ops.size(), kNone);
    for (RegionId region = 0; region < unit.regions.size(); ++region) {
        for (const IrNode& node : unit.regions[region].nodes) {
            if (node.kind == NodeKind::Op) {
                places[node.target] = region;
            }
        }
    }
    auto isProductIn = [&](RegionId region, ValueId value) {
        const IrOp& op = unit.ops[value];
        return op.kind == IrKind::Operation && op.operation == Operation::FMul &&
               uses[value] == 1 && places[value] == region;
    };
    auto fuse = [&](IrOp& op, Operation operation, ValueId product, ValueId other) {
        op.operation = operation;
        op.arguments = {unit.ops[product].arguments[0], unit.ops[product].arguments[1], other};
    };
    for (RegionId region = 0; region < unit.regions.size(); ++region) {
        for (const IrNode& node : unit.regions[region].nodes) {
            if (node.kind != NodeKind::Op || unit.ops[node.target].kind != IrKind::Operation) {
                continue;
            }
            IrOp& op = unit.ops[node.target];
            ValueId a = op.arguments[0];
            ValueId b = op.arguments[1];
            if (op.operation == Operation::FAdd) {
                if (isProductIn(region, a)) {
                    fuse(op, Operation::FMulAdd, a, b);
                } else if (isProductIn(region, b)) {
                    fuse(op, Operation::FMulAdd, b, a);
                }
            } else if (op.operation == Operation::FSub) {
                if (isProductIn(region, a)) {
                    fuse(op, Operation::FMulSub, a, b);
                } else if (isProductIn(region, b)) {
                    fuse(op, Operation::FNegMulAdd, b, a);
                }
            }
        }
    }
}

} // namespace Tolen::OpenKL

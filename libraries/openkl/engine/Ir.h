#pragma once

#include "engine/Operation.h"

#include <array>
#include <cstdint>
#include <vector>

/// The structured form of a kernel: scalar words, single-assignment values, mutable variables and
/// regions of nodes. Every call is inlined and every vector taken apart.
///
/// It says what one invocation does. Values are in reach of the region that defines them and of
/// the regions inside it, behind their definition.
namespace Tolen::OpenKL {

using ValueId = std::uint32_t;
using RegionId = std::uint32_t;
inline constexpr std::uint32_t kNone = 0xffffffffu;

/// The scalars of a value in memory order.
using Values = std::vector<ValueId>;

enum class IrKind : std::uint8_t {
    Constant,         ///< word
    Operation,        ///< operation of the arguments
    LoadTable,        ///< table index, word + argument 0
    LoadBlock,        ///< block index, word of element argument 0; extra is the element's words
    LoadConstant,     ///< word of BatchConstants
    LoadLane,         ///< lane input word
    LoadInterpolated, ///< word
    LoadRayAttribute, ///< word
    LoadVariable,     ///< of variable index
    StoreVariable,    ///< argument 0 to variable index
    LoadArray,        ///< of array index at argument 0
    StoreArray,       ///< argument 1 to array index at argument 0
    FillArray,        ///< argument 0 to every element of array index
    Service,          ///< service word; the arguments stand in IrUnit::serviceArguments
    ServiceResult,    ///< result word of service value argument 0
    StoreState,       ///< argument 0 to word
    StoreOutput,      ///< argument 0 to word
};

/// How many values an IrOp has in `arguments`.
int CountArguments(IrKind kind, Operation operation);

struct IrOp {
    IrKind kind = IrKind::Constant;
    Operation operation = Operation::Move;
    std::array<ValueId, 3> arguments = {kNone, kNone, kNone};
    std::uint32_t index = 0; ///< see IrKind; of a service its first argument
    std::uint32_t word = 0;  ///< see IrKind
    std::uint32_t extra = 0; ///< see IrKind; of a service the number of arguments
};

enum class NodeKind : std::uint8_t {
    Op,       ///< target is the IrOp
    If,       ///< target is the IrIf
    Loop,     ///< target is the IrLoop
    Block,    ///< target is the IrBlock
    Break,    ///< out of loop target
    Continue, ///< to the step of loop target
    Leave,    ///< out of block target
    Kill,     ///< ends the invocation
};

struct IrNode {
    NodeKind kind;
    std::uint32_t target;
};

struct IrRegion {
    std::vector<IrNode> nodes;
    RegionId parent = kNone;
    std::uint32_t loop = kNone;  ///< the innermost loop around it
    RegionId mergedInto = kNone; ///< the region that has its nodes now
    int depth = 0;               ///< regions around it
};

struct IrIf {
    ValueId condition; ///< a mask
    RegionId whenTrue;
    RegionId whenFalse;
};

/// test, body, step, test, ...; or with testsFirst false: body, step, test, body, ...
struct IrLoop {
    RegionId test;
    ValueId condition = kNone; ///< a mask that test computes; kNone is always true
    RegionId body;
    RegionId step;
    bool testsFirst;
    std::uint32_t outer; ///< the innermost loop around it
    std::int32_t text;
    std::int32_t line;
};

/// Nodes that run once and that Leave gets out of.
struct IrBlock {
    RegionId region;
    std::uint32_t leaveCount = 0; ///< nodes that leave it
};

/// Words that change. It comes to life in a region, with a store ahead of any load.
struct IrVariable {
    RegionId region;
};

/// Words under indices, each from 0 to count - 1.
struct IrArray {
    RegionId region;
    std::uint32_t count;
};

struct IrUnit {
    std::vector<IrOp> ops;
    std::vector<ValueId> serviceArguments;
    std::vector<IrVariable> variables;
    std::vector<IrArray> arrays;
    std::vector<IrRegion> regions; ///< the first is where execution starts
    std::vector<IrIf> ifs;
    std::vector<IrLoop> loops;
    std::vector<IrBlock> blocks;

    /// The region that has the nodes of @p region.
    RegionId Resolve(RegionId region) const {
        while (regions[region].mergedInto != kNone) {
            region = regions[region].mergedInto;
        }
        return region;
    }

    /// Whether an op does something beyond giving a value.
    bool HasEffect(const IrOp& op) const;
};

/// Calls @p visit for every argument of @p op, in place.
template <class Unit, class Op, class Visit>
void ForEachArgument(Unit& unit, Op& op, Visit&& visit) {
    if (op.kind == IrKind::Service) {
        for (std::uint32_t i = 0; i < op.extra; ++i) {
            visit(unit.serviceArguments[op.index + i]);
        }
        return;
    }
    int count = CountArguments(op.kind, op.operation);
    for (int i = 0; i < count; ++i) {
        visit(op.arguments[static_cast<std::size_t>(i)]);
    }
}

} // namespace Tolen::OpenKL

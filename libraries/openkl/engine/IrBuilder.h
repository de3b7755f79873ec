#pragma once

#include "engine/Ir.h"
#include "engine/OpKey.h"
#include "engine/OperationFolder.h"
#include "engine/executor/Instruction.h"

#include <bit>
#include <initializer_list>
#include <unordered_map>

namespace Tolen::OpenKL {

class CallMemory;

/// Adds ops and regions to a unit, at the end of the region that is open.
class IrBuilder {
public:
    /// @param sharesValues whether an op that another one has computed already, and a load of what
    ///                     is known, give that value
    IrBuilder(IrUnit& unit, bool sharesValues);

    /// Tells @p pMemory, which may be null, what happens to variables and arrays: to all of them
    /// until EndShared, from then on to those that were there by then.
    void SetMemory(CallMemory* pMemory) { _pMemory = pMemory; }
    void EndShared();

    IrUnit& GetUnit() { return _unit; }
    RegionId GetRegion() const { return _region; }
    int GetDepth() const { return _unit.regions[_region].depth; }
    /// The innermost loop around the open region, or kNone.
    std::uint32_t GetLoop() const { return _unit.regions[_region].loop; }
    /// Whether @p region is the open one or around it.
    bool IsOpen(RegionId region);
    bool IsConstant(ValueId value) const { return _unit.ops[value].kind == IrKind::Constant; }

    /// False behind a node that leaves the region; what is added there is dropped.
    bool IsReachable() const { return _isReachable; }

    // Values.

    ValueId Constant(std::uint32_t word);
    ValueId Float(float value) { return Constant(std::bit_cast<std::uint32_t>(value)); }
    ValueId Int(std::int32_t value) { return Constant(static_cast<std::uint32_t>(value)); }
    ValueId Mask(bool value) { return Constant(value ? 0xffffffffu : 0u); }
    ValueId Do(Operation operation, ValueId a, ValueId b = kNone, ValueId c = kNone);
    ValueId Load(IrKind kind, std::uint32_t word);
    ValueId LoadTable(TableKind table, std::uint32_t word, ValueId index);
    ValueId LoadBlock(std::uint32_t block, std::uint32_t elementWords, std::uint32_t word,
                      ValueId index);
    ValueId LoadVariable(std::uint32_t variable);
    ValueId LoadArray(std::uint32_t array, ValueId index);
    ValueId CallService(Service service, const std::vector<ValueId>& arguments);
    ValueId GetResult(ValueId service, std::uint32_t result);

    // Effects.

    void StoreVariable(std::uint32_t variable, ValueId value);
    void StoreArray(std::uint32_t array, ValueId index, ValueId value);
    void FillArray(std::uint32_t array, ValueId value);
    void Store(IrKind kind, std::uint32_t word, ValueId value);

    /// Makes @p count variables in a row and answers the first. They need a store before a load.
    std::uint32_t AddVariables(std::uint32_t count);
    std::uint32_t AddArray(std::uint32_t count);

    // Control. A region that is entered must be left to where the caller was.

    struct Position {
        RegionId region;
        bool isReachable;
    };

    RegionId AddRegion(std::uint32_t loop);
    Position Enter(RegionId region);
    void Return(const Position& position);
    /// Goes on at the end of @p region, a branch of the If that was added last.
    void ContinueIn(RegionId region);
    void SetReachable(bool isReachable) { _isReachable = isReachable; }

    std::uint32_t AddIf(ValueId condition);
    /// Adds a loop node; its regions are filled by the caller.
    std::uint32_t AddLoop(bool testsFirst, std::int32_t text, std::int32_t line);
    std::uint32_t AddBlock();
    void AddExit(NodeKind kind, std::uint32_t target);

    /// Takes the exits off the end of @p region that lead where its end leads anyhow.
    void DropTailExits(RegionId region, NodeKind kind, std::uint32_t target);
    /// Puts the nodes of block @p block, which nothing leaves, in place of the block, the last node
    /// of the open region.
    void DissolveBlock(std::uint32_t block);

private:
    /// What is known of a variable: its value, since a store or load in a region.
    struct Known {
        ValueId value = kNone;
        RegionId region = kNone;
        std::uint32_t loop = kNone;
        std::uint32_t storedAt = kNone; ///< time of the store; kNone for a load
    };

    ValueId _Add(const IrOp& op);
    /// Adds an op that gives the same value at any time.
    ValueId _AddPure(const IrOp& op);
    RegionId _Resolve(RegionId region);
    const Known* _FindKnown(std::uint32_t variable);
    void _SetKnown(std::uint32_t variable, ValueId value, std::uint32_t storedAt);
    void _NoteRead(std::uint32_t cell, std::uint32_t storedAt);
    std::uint32_t _NoteWrite(std::uint32_t cell);

    IrUnit& _unit;
    const bool _sharesValues;
    RegionId _region = 0;
    bool _isReachable = true;
    std::unordered_map<std::uint32_t, ValueId> _constants;
    std::unordered_map<OpKey, ValueId, OpKeyHash> _same;
    std::vector<RegionId> _regionOf; ///< by op, where values are shared
    std::vector<Known> _known;       ///< by variable
    std::vector<bool> _isOpen;       ///< by region
    OperationFolder _folder;
    CallMemory* _pMemory = nullptr;
    std::uint32_t _sharedCells = kNone; ///< cells from here on belong to functions
};

} // namespace Tolen::OpenKL

#pragma once

#include "engine/Ir.h"
#include "engine/executor/Instruction.h"

#include <bit>
#include <initializer_list>
#include <unordered_map>

namespace Tolen::OpenKL {

/// Adds ops and regions to a unit, at the end of the region that is open.
class IrBuilder {
public:
    explicit IrBuilder(IrUnit& unit);

    IrUnit& GetUnit() { return _unit; }
    RegionId GetRegion() const { return _region; }
    int GetDepth() const { return _unit.regions[_region].depth; }

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
    void ContinueIn(RegionId region) { _region = region; }
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
    ValueId _Add(const IrOp& op);

    IrUnit& _unit;
    RegionId _region = 0;
    bool _isReachable = true;
    std::unordered_map<std::uint32_t, ValueId> _constants;
};

} // namespace Tolen::OpenKL

#include "engine/IrBuilder.h"

#include "engine/CallMemory.h"

#include <algorithm>
#include <utility>

namespace Tolen::OpenKL {

namespace {

/// Variables and arrays as one sequence of cells.
std::uint32_t VariableCell(std::uint32_t variable) {
    return 2 * variable;
}
std::uint32_t ArrayCell(std::uint32_t array) {
    return 2 * array + 1;
}

} // namespace

IrBuilder::IrBuilder(IrUnit& unit, bool sharesValues)
    : _unit(unit), _sharesValues(sharesValues),
      _folder(
          unit, [this](std::uint32_t word) { return Constant(word); },
          [this](Operation operation, ValueId a, ValueId b) { return Do(operation, a, b); }) {
    if (_unit.regions.empty()) {
        _unit.regions.emplace_back();
    }
    _isOpen.resize(_unit.regions.size());
    _isOpen[_region] = true;
}

void IrBuilder::EndShared() {
    _sharedCells =
        2 * static_cast<std::uint32_t>(std::max(_unit.variables.size(), _unit.arrays.size()));
}

/// Nothing computes a value where nothing runs; whoever asks for one is not run either.
ValueId IrBuilder::_Add(const IrOp& op) {
    if (!_isReachable) {
        return Constant(0);
    }
    ValueId id = static_cast<ValueId>(_unit.ops.size());
    _unit.ops.push_back(op);
    _unit.regions[_region].nodes.push_back({NodeKind::Op, id});
    return id;
}

ValueId IrBuilder::_AddPure(const IrOp& op) {
    if (!_sharesValues || !_isReachable) {
        return _Add(op);
    }
    auto [entry, isNew] = _same.try_emplace(OpKey(op), kNone);
    if (!isNew && IsOpen(_regionOf[entry->second])) {
        return entry->second;
    }
    entry->second = _Add(op);
    _regionOf.resize(_unit.ops.size(), kNone);
    _regionOf[entry->second] = _region;
    return entry->second;
}

/// Keeps the way to the region that has the nodes short.
RegionId IrBuilder::_Resolve(RegionId region) {
    RegionId resolved = _unit.Resolve(region);
    while (region != resolved) {
        region = std::exchange(_unit.regions[region].mergedInto, resolved);
    }
    return resolved;
}

bool IrBuilder::IsOpen(RegionId region) {
    return _isOpen[_Resolve(region)];
}

/// Later rounds of a loop may find what the end of a round has stored, so that only what became
/// known in the same loop counts.
const IrBuilder::Known* IrBuilder::_FindKnown(std::uint32_t variable) {
    if (!_sharesValues || variable >= _known.size()) {
        return nullptr;
    }
    const Known& known = _known[variable];
    bool isKnown = known.value != kNone && known.loop == GetLoop() && IsOpen(known.region);
    return isKnown ? &known : nullptr;
}

void IrBuilder::_NoteRead(std::uint32_t cell, std::uint32_t storedAt) {
    if (_pMemory != nullptr && cell < _sharedCells) {
        _pMemory->NoteRead(cell, storedAt);
    }
}

std::uint32_t IrBuilder::_NoteWrite(std::uint32_t cell) {
    return _pMemory != nullptr && cell < _sharedCells ? _pMemory->NoteWrite(cell) : kNone;
}

/// Constants stand in no region, since they need no work.
ValueId IrBuilder::Constant(std::uint32_t word) {
    auto [entry, isNew] = _constants.try_emplace(word, static_cast<ValueId>(_unit.ops.size()));
    if (isNew) {
        IrOp op;
        op.kind = IrKind::Constant;
        op.word = word;
        _unit.ops.push_back(op);
    }
    return entry->second;
}

ValueId IrBuilder::Do(Operation operation, ValueId a, ValueId b, ValueId c) {
    IrOp op;
    op.kind = IrKind::Operation;
    op.operation = operation;
    op.arguments = {a, b, c};
    if (_sharesValues) {
        ValueId folded = _folder.Fold(op);
        if (folded != kNone) {
            return folded;
        }
    }
    return _AddPure(op);
}

ValueId IrBuilder::Load(IrKind kind, std::uint32_t word) {
    IrOp op;
    op.kind = kind;
    op.word = word;
    return _AddPure(op);
}

ValueId IrBuilder::LoadTable(TableKind table, std::uint32_t word, ValueId index) {
    IrOp op;
    op.kind = IrKind::LoadTable;
    op.index = static_cast<std::uint32_t>(table);
    op.word = word;
    op.arguments[0] = index;
    return _AddPure(op);
}

ValueId IrBuilder::LoadBlock(std::uint32_t block, std::uint32_t elementWords, std::uint32_t word,
                             ValueId index) {
    IrOp op;
    op.kind = IrKind::LoadBlock;
    op.index = block;
    op.word = word;
    op.extra = elementWords;
    op.arguments[0] = index;
    return _AddPure(op);
}

ValueId IrBuilder::LoadVariable(std::uint32_t variable) {
    if (const Known* pKnown = _FindKnown(variable)) {
        _NoteRead(VariableCell(variable), pKnown->storedAt);
        return pKnown->value;
    }
    _NoteRead(VariableCell(variable), kNone);
    IrOp op;
    op.kind = IrKind::LoadVariable;
    op.index = variable;
    ValueId value = _Add(op);
    _SetKnown(variable, value, kNone);
    return value;
}

void IrBuilder::_SetKnown(std::uint32_t variable, ValueId value, std::uint32_t storedAt) {
    if (!_sharesValues || !_isReachable) {
        return;
    }
    if (variable >= _known.size()) {
        _known.resize(_unit.variables.size());
    }
    _known[variable] = {value, _region, GetLoop(), storedAt};
}

ValueId IrBuilder::LoadArray(std::uint32_t array, ValueId index) {
    _NoteRead(ArrayCell(array), kNone);
    IrOp op;
    op.kind = IrKind::LoadArray;
    op.index = array;
    op.arguments[0] = index;
    return _Add(op);
}

ValueId IrBuilder::CallService(Service service, const std::vector<ValueId>& arguments) {
    IrOp op;
    op.kind = IrKind::Service;
    op.word = static_cast<std::uint32_t>(service);
    op.index = static_cast<std::uint32_t>(_unit.serviceArguments.size());
    op.extra = static_cast<std::uint32_t>(arguments.size());
    _unit.serviceArguments.insert(_unit.serviceArguments.end(), arguments.begin(), arguments.end());
    if (_pMemory != nullptr && _unit.HasEffect(op)) {
        _pMemory->NoteEffect();
    }
    return _Add(op);
}

ValueId IrBuilder::GetResult(ValueId service, std::uint32_t result) {
    IrOp op;
    op.kind = IrKind::ServiceResult;
    op.word = result;
    op.arguments[0] = service;
    return _Add(op);
}

void IrBuilder::StoreVariable(std::uint32_t variable, ValueId value) {
    IrOp op;
    op.kind = IrKind::StoreVariable;
    op.index = variable;
    op.arguments[0] = value;
    _Add(op);
    _SetKnown(variable, value, _NoteWrite(VariableCell(variable)));
}

void IrBuilder::StoreArray(std::uint32_t array, ValueId index, ValueId value) {
    _NoteWrite(ArrayCell(array));
    IrOp op;
    op.kind = IrKind::StoreArray;
    op.index = array;
    op.arguments[0] = index;
    op.arguments[1] = value;
    _Add(op);
}

void IrBuilder::FillArray(std::uint32_t array, ValueId value) {
    _NoteWrite(ArrayCell(array));
    IrOp op;
    op.kind = IrKind::FillArray;
    op.index = array;
    op.arguments[0] = value;
    _Add(op);
}

void IrBuilder::Store(IrKind kind, std::uint32_t word, ValueId value) {
    IrOp op;
    op.kind = kind;
    op.word = word;
    op.arguments[0] = value;
    _Add(op);
}

std::uint32_t IrBuilder::AddVariables(std::uint32_t count) {
    std::uint32_t first = static_cast<std::uint32_t>(_unit.variables.size());
    _unit.variables.resize(first + count, IrVariable{_region});
    return first;
}

std::uint32_t IrBuilder::AddArray(std::uint32_t count) {
    _unit.arrays.push_back({_region, count});
    return static_cast<std::uint32_t>(_unit.arrays.size() - 1);
}

RegionId IrBuilder::AddRegion(std::uint32_t loop) {
    IrRegion region;
    region.parent = _region;
    region.depth = _unit.regions[_region].depth + 1;
    region.loop = loop;
    _unit.regions.push_back(region);
    _isOpen.push_back(false);
    return static_cast<RegionId>(_unit.regions.size() - 1);
}

IrBuilder::Position IrBuilder::Enter(RegionId region) {
    Position position{_region, _isReachable};
    ContinueIn(region);
    return position;
}

void IrBuilder::ContinueIn(RegionId region) {
    _region = region;
    _isOpen[region] = true;
}

void IrBuilder::Return(const Position& position) {
    for (RegionId region = _region; region != position.region;
         region = _unit.regions[region].parent) {
        _isOpen[region] = false;
    }
    _region = position.region;
    _isReachable = position.isReachable;
}

std::uint32_t IrBuilder::AddIf(ValueId condition) {
    std::uint32_t index = static_cast<std::uint32_t>(_unit.ifs.size());
    std::uint32_t loop = _unit.regions[_region].loop;
    RegionId whenTrue = AddRegion(loop);
    RegionId whenFalse = AddRegion(loop);
    _unit.ifs.push_back({condition, whenTrue, whenFalse});
    if (_isReachable) {
        _unit.regions[_region].nodes.push_back({NodeKind::If, index});
    }
    return index;
}

std::uint32_t IrBuilder::AddLoop(bool testsFirst, std::int32_t text, std::int32_t line) {
    std::uint32_t index = static_cast<std::uint32_t>(_unit.loops.size());
    IrLoop loop;
    loop.outer = _unit.regions[_region].loop;
    loop.test = AddRegion(index);
    loop.body = AddRegion(index);
    loop.step = AddRegion(index);
    loop.testsFirst = testsFirst;
    loop.text = text;
    loop.line = line;
    _unit.loops.push_back(loop);
    if (_isReachable) {
        _unit.regions[_region].nodes.push_back({NodeKind::Loop, index});
    }
    return index;
}

std::uint32_t IrBuilder::AddBlock() {
    std::uint32_t index = static_cast<std::uint32_t>(_unit.blocks.size());
    _unit.blocks.push_back({AddRegion(_unit.regions[_region].loop), 0});
    if (_isReachable) {
        _unit.regions[_region].nodes.push_back({NodeKind::Block, index});
    }
    return index;
}

void IrBuilder::AddExit(NodeKind kind, std::uint32_t target) {
    if (_isReachable) {
        _unit.regions[_region].nodes.push_back({kind, target});
        if (kind == NodeKind::Leave) {
            ++_unit.blocks[target].leaveCount;
        }
        _isReachable = false;
    }
}

void IrBuilder::DropTailExits(RegionId region, NodeKind kind, std::uint32_t target) {
    std::vector<IrNode>& nodes = _unit.regions[region].nodes;
    if (nodes.empty() || (kind == NodeKind::Leave && _unit.blocks[target].leaveCount == 0)) {
        return;
    }
    IrNode last = nodes.back();
    if (last.kind == kind && last.target == target) {
        nodes.pop_back();
        if (kind == NodeKind::Leave) {
            --_unit.blocks[target].leaveCount;
        }
    } else if (last.kind == NodeKind::If) {
        DropTailExits(_unit.ifs[last.target].whenTrue, kind, target);
        DropTailExits(_unit.ifs[last.target].whenFalse, kind, target);
    } else if (last.kind == NodeKind::Block) {
        DropTailExits(_unit.blocks[last.target].region, kind, target);
    }
}

void IrBuilder::DissolveBlock(std::uint32_t block) {
    RegionId inner = _unit.blocks[block].region;
    std::vector<IrNode> nodes = std::move(_unit.regions[inner].nodes);
    _unit.regions[inner].nodes.clear();
    _unit.regions[inner].mergedInto = _region;
    std::vector<IrNode>& outer = _unit.regions[_region].nodes;
    outer.pop_back();
    outer.insert(outer.end(), nodes.begin(), nodes.end());
}

} // namespace Tolen::OpenKL

#include "engine/IrBuilder.h"

namespace Tolen::OpenKL {

IrBuilder::IrBuilder(IrUnit& unit) : _unit(unit) {
    if (_unit.regions.empty()) {
        _unit.regions.emplace_back();
    }
}

ValueId IrBuilder::_Add(const IrOp& op) {
    ValueId id = static_cast<ValueId>(_unit.ops.size());
    _unit.ops.push_back(op);
    if (_isReachable) {
        _unit.regions[_region].nodes.push_back({NodeKind::Op, id});
    }
    return id;
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
    return _Add(op);
}

ValueId IrBuilder::Load(IrKind kind, std::uint32_t word) {
    IrOp op;
    op.kind = kind;
    op.word = word;
    return _Add(op);
}

ValueId IrBuilder::LoadTable(TableKind table, std::uint32_t word, ValueId index) {
    IrOp op;
    op.kind = IrKind::LoadTable;
    op.index = static_cast<std::uint32_t>(table);
    op.word = word;
    op.arguments[0] = index;
    return _Add(op);
}

ValueId IrBuilder::LoadBlock(std::uint32_t block, std::uint32_t elementWords, std::uint32_t word,
                             ValueId index) {
    IrOp op;
    op.kind = IrKind::LoadBlock;
    op.index = block;
    op.word = word;
    op.extra = elementWords;
    op.arguments[0] = index;
    return _Add(op);
}

ValueId IrBuilder::LoadVariable(std::uint32_t variable) {
    IrOp op;
    op.kind = IrKind::LoadVariable;
    op.index = variable;
    return _Add(op);
}

ValueId IrBuilder::LoadArray(std::uint32_t array, ValueId index) {
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
}

void IrBuilder::StoreArray(std::uint32_t array, ValueId index, ValueId value) {
    IrOp op;
    op.kind = IrKind::StoreArray;
    op.index = array;
    op.arguments[0] = index;
    op.arguments[1] = value;
    _Add(op);
}

void IrBuilder::FillArray(std::uint32_t array, ValueId value) {
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
    return static_cast<RegionId>(_unit.regions.size() - 1);
}

IrBuilder::Position IrBuilder::Enter(RegionId region) {
    Position position{_region, _isReachable};
    _region = region;
    return position;
}

void IrBuilder::Return(const Position& position) {
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
    if (nodes.empty()) {
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

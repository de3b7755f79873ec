#include "engine/DeadCode.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// Copies of the set of live variables that are worth making, in words.
constexpr std::size_t kMaxLivenessWork = std::size_t{1} << 26;

/// Finds by following uses which ops matter, wherever they stand.
class Marker {
public:
    explicit Marker(const IrUnit& unit)
        : needed(unit.ops.size()), _unit(unit), _variableStores(unit.variables.size()),
          _arrayStores(unit.arrays.size()), _isVariableNeeded(unit.variables.size()),
          _isArrayNeeded(unit.arrays.size()) {}

    void Run() {
        for (const IrRegion& region : _unit.regions) {
            for (const IrNode& node : region.nodes) {
                _VisitNode(node);
            }
        }
        while (!_open.empty()) {
            ValueId id = _open.back();
            _open.pop_back();
            _Follow(id);
        }
    }

    std::vector<bool> needed;

private:
    void _Need(ValueId id) {
        if (id != kNone && !needed[id]) {
            needed[id] = true;
            _open.push_back(id);
        }
    }

    void _VisitNode(const IrNode& node) {
        if (node.kind == NodeKind::If) {
            _Need(_unit.ifs[node.target].condition);
        } else if (node.kind == NodeKind::Loop) {
            _Need(_unit.loops[node.target].condition);
        } else if (node.kind == NodeKind::Op) {
            const IrOp& op = _unit.ops[node.target];
            if (op.kind == IrKind::StoreVariable) {
                _variableStores[op.index].push_back(node.target);
            } else if (op.kind == IrKind::StoreArray || op.kind == IrKind::FillArray) {
                _arrayStores[op.index].push_back(node.target);
            } else if (_unit.HasEffect(op)) {
                _Need(node.target);
            }
        }
    }

    /// A load needs all stores that it could see.
    void _Follow(ValueId id) {
        const IrOp& op = _unit.ops[id];
        ForEachArgument(_unit, op, [&](ValueId argument) { _Need(argument); });
        if (op.kind == IrKind::LoadVariable && !_isVariableNeeded[op.index]) {
            _isVariableNeeded[op.index] = true;
            std::for_each(_variableStores[op.index].begin(), _variableStores[op.index].end(),
                          [&](ValueId store) { _Need(store); });
        } else if (op.kind == IrKind::LoadArray && !_isArrayNeeded[op.index]) {
            _isArrayNeeded[op.index] = true;
            std::for_each(_arrayStores[op.index].begin(), _arrayStores[op.index].end(),
                          [&](ValueId store) { _Need(store); });
        }
    }

    const IrUnit& _unit;
    std::vector<std::vector<ValueId>> _variableStores;
    std::vector<std::vector<ValueId>> _arrayStores;
    std::vector<bool> _isVariableNeeded;
    std::vector<bool> _isArrayNeeded;
    std::vector<ValueId> _open;
};

/// Removes stores that are overwritten or forgotten ahead of any load, from the end to the start.
class StoreRemover {
public:
    explicit StoreRemover(IrUnit& unit)
        : _unit(unit), _loads(unit.loops.size()), _afterLoops(unit.loops.size()),
          _atSteps(unit.loops.size()), _afterBlocks(unit.blocks.size()) {}

    void Run() {
        std::size_t nodes = 1;
        for (const IrRegion& region : _unit.regions) {
            for (const IrNode& node : region.nodes) {
                nodes += node.kind == NodeKind::Op ? 0 : 1;
            }
        }
        if (nodes * (_unit.variables.size() / 64 + 1) > kMaxLivenessWork) {
            return;
        }
        _CollectLoads(0, kNone);
        Live live(_unit.variables.size());
        _Visit(0, live);
    }

private:
    /// A set of variables.
    class Live {
    public:
        explicit Live(std::size_t count = 0) : _words((count + 63) / 64) {}

        bool Has(std::uint32_t variable) const {
            return (_words[variable / 64] >> variable % 64 & 1) != 0;
        }
        void Insert(std::uint32_t variable) {
            _words[variable / 64] |= std::uint64_t{1} << variable % 64;
        }
        void Remove(std::uint32_t variable) {
            _words[variable / 64] &= ~(std::uint64_t{1} << variable % 64);
        }
        void Clear() { std::fill(_words.begin(), _words.end(), std::uint64_t{0}); }
        void Join(const Live& other) {
            for (std::size_t i = 0; i < _words.size(); ++i) {
                _words[i] |= other._words[i];
            }
        }

    private:
        std::vector<std::uint64_t> _words;
    };

    void _CollectLoads(RegionId region, std::uint32_t loop) {
        for (const IrNode& node : _unit.regions[region].nodes) {
            if (node.kind == NodeKind::Op) {
                const IrOp& op = _unit.ops[node.target];
                for (std::uint32_t l = loop; op.kind == IrKind::LoadVariable && l != kNone;
                     l = _unit.loops[l].outer) {
                    _loads[l].push_back(op.index);
                }
            } else if (node.kind == NodeKind::If) {
                _CollectLoads(_unit.ifs[node.target].whenTrue, loop);
                _CollectLoads(_unit.ifs[node.target].whenFalse, loop);
            } else if (node.kind == NodeKind::Loop) {
                _CollectLoads(_unit.loops[node.target].test, node.target);
                _CollectLoads(_unit.loops[node.target].body, node.target);
                _CollectLoads(_unit.loops[node.target].step, node.target);
            } else if (node.kind == NodeKind::Block) {
                _CollectLoads(_unit.blocks[node.target].region, loop);
            }
        }
    }

    /// @param live what is live behind the region; becomes what is live ahead of it
    void _Visit(RegionId region, Live& live) {
        std::vector<IrNode> nodes = std::move(_unit.regions[region].nodes);
        std::vector<IrNode> kept;
        for (auto node = nodes.rbegin(); node != nodes.rend(); ++node) {
            if (_VisitNode(*node, live)) {
                kept.push_back(*node);
            }
        }
        std::reverse(kept.begin(), kept.end());
        _unit.regions[region].nodes = std::move(kept);
    }

    /// @return whether the node stays
    bool _VisitNode(const IrNode& node, Live& live) {
        switch (node.kind) {
        case NodeKind::Op: {
            const IrOp& op = _unit.ops[node.target];
            if (op.kind == IrKind::LoadVariable) {
                live.Insert(op.index);
            } else if (op.kind == IrKind::StoreVariable) {
                if (!live.Has(op.index)) {
                    return false;
                }
                live.Remove(op.index);
            }
            break;
        }
        case NodeKind::If: {
            const IrIf& choice = _unit.ifs[node.target];
            Live otherwise = live;
            _Visit(choice.whenTrue, live);
            _Visit(choice.whenFalse, otherwise);
            live.Join(otherwise);
            break;
        }
        case NodeKind::Loop:
            _VisitLoop(node.target, live);
            break;
        case NodeKind::Block:
            _afterBlocks[node.target] = live;
            _Visit(_unit.blocks[node.target].region, live);
            break;
        case NodeKind::Break:
            live = _afterLoops[node.target];
            break;
        case NodeKind::Continue:
            live = _atSteps[node.target];
            break;
        case NodeKind::Leave:
            live = _afterBlocks[node.target];
            break;
        case NodeKind::Kill:
            live.Clear();
            break;
        }
        return true;
    }

    /// Behind a round everything is live that any round loads.
    void _VisitLoop(std::uint32_t index, Live& live) {
        const IrLoop& loop = _unit.loops[index];
        _afterLoops[index] = live;
        Live round = live;
        for (std::uint32_t variable : _loads[index]) {
            round.Insert(variable);
        }
        live = round;
        if (loop.testsFirst) {
            _Visit(loop.step, live);
            _atSteps[index] = live;
            _Visit(loop.body, live);
            live.Join(_afterLoops[index]);
            _Visit(loop.test, live);
        } else {
            _Visit(loop.test, live);
            _Visit(loop.step, live);
            _atSteps[index] = live;
            _Visit(loop.body, live);
        }
    }

    IrUnit& _unit;
    std::vector<std::vector<std::uint32_t>> _loads; ///< variables loaded in each loop
    std::vector<Live> _afterLoops;
    std::vector<Live> _atSteps;
    std::vector<Live> _afterBlocks;
};

/// Drops the ops that are not marked and what is empty without them.
class Sweeper {
public:
    Sweeper(IrUnit& unit, const std::vector<bool>& needed) : _unit(unit), _needed(needed) {}

    void Visit(RegionId region) {
        std::vector<IrNode> nodes = std::move(_unit.regions[region].nodes);
        std::vector<IrNode> kept;
        for (const IrNode& node : nodes) {
            if (_VisitNode(node)) {
                kept.push_back(node);
            }
        }
        _unit.regions[region].nodes = std::move(kept);
    }

private:
    bool _VisitNode(const IrNode& node) {
        switch (node.kind) {
        case NodeKind::Op:
            return _needed[node.target];
        case NodeKind::If: {
            const IrIf& choice = _unit.ifs[node.target];
            Visit(choice.whenTrue);
            Visit(choice.whenFalse);
            return !_IsEmpty(choice.whenTrue) || !_IsEmpty(choice.whenFalse);
        }
        case NodeKind::Loop: {
            // Loops stay, since they may run into the limit of steps.
            Visit(_unit.loops[node.target].test);
            Visit(_unit.loops[node.target].body);
            Visit(_unit.loops[node.target].step);
            return true;
        }
        case NodeKind::Block:
            Visit(_unit.blocks[node.target].region);
            return !_IsEmpty(_unit.blocks[node.target].region);
        default:
            return true;
        }
    }

    bool _IsEmpty(RegionId region) const { return _unit.regions[region].nodes.empty(); }

    IrUnit& _unit;
    const std::vector<bool>& _needed;
};

void Sweep(IrUnit& unit) {
    Marker marker(unit);
    marker.Run();
    Sweeper(unit, marker.needed).Visit(0);
}

} // namespace

void RemoveDeadCode(IrUnit& unit) {
    Sweep(unit);
    StoreRemover(unit).Run();
    Sweep(unit);
}

} // namespace Tolen::OpenKL

#include "engine/Simplifier.h"

#include "engine/OpKey.h"
#include "engine/OperationFolder.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace Tolen::OpenKL {

namespace {

/// Work in the branches of an If, in simple operations, up to which doing both and choosing is
/// cheaper than masks and jumps.
constexpr int kMaxBranchCost = 12;

/// The most work of an operation that is moved out of a branch to ahead of a loop.
constexpr int kMaxEarlyCost = 3;

int GetCost(Operation operation) {
    switch (operation) {
    case Operation::FDiv:
    case Operation::FSqrt:
    case Operation::FInverseSqrt:
    case Operation::FMod:
        return 3;
    case Operation::IDiv:
    case Operation::IMod:
    case Operation::FPow:
    case Operation::Random:
    case Operation::RandomPairX:
    case Operation::RandomPairY:
        return kMaxBranchCost + 1;
    default:
        break;
    }
    bool isTranscendental = operation >= Operation::FSin && operation <= Operation::FLog2;
    return isTranscendental || operation == Operation::FAtan2 ? kMaxBranchCost + 1 : 1;
}

class Simplifier {
public:
    explicit Simplifier(IrUnit& unit)
        : _unit(unit), _replacements(unit.ops.size(), kNone), _depths(unit.ops.size(), 0),
          _known(unit.variables.size(), kNone), _arrayVersions(unit.arrays.size(), 0),
          _stored(unit.loops.size()),
          _folder(
              unit, [this](std::uint32_t word) { return _MakeConstant(word); },
              [this](Operation operation, ValueId a, ValueId b) {
                  return _MakeOperation(operation, a, b);
              }) {}

    void Run() {
        for (ValueId id = 0; id < _unit.ops.size(); ++id) {
            if (_unit.ops[id].kind == IrKind::Constant) {
                _constants.emplace(_unit.ops[id].word, id);
            }
        }
        for (IrBlock& block : _unit.blocks) {
            block.leaveCount = 0;
        }
        _CollectStores(0, kNone);
        _VisitRegion(0);
    }

private:
    /// What the code of a loop stores to.
    struct Stores {
        std::vector<std::uint32_t> variables;
        std::vector<std::uint32_t> arrays;
    };

    /// A loop that is being visited, and the nodes that it will stand behind.
    struct OpenLoop {
        std::vector<IrNode>* pOuterNodes;
    };

    /// Where undoing goes back to.
    struct Mark {
        std::size_t known;
        std::size_t keys;
    };

    /// Also counts who leaves blocks.
    void _CollectStores(RegionId region, std::uint32_t loop) {
        for (const IrNode& node : _unit.regions[region].nodes) {
            switch (node.kind) {
            case NodeKind::Op: {
                const IrOp& op = _unit.ops[node.target];
                for (std::uint32_t l = loop; l != kNone; l = _unit.loops[l].outer) {
                    if (op.kind == IrKind::StoreVariable) {
                        _stored[l].variables.push_back(op.index);
                    } else if (op.kind == IrKind::StoreArray || op.kind == IrKind::FillArray) {
                        _stored[l].arrays.push_back(op.index);
                    } else {
                        break;
                    }
                }
                break;
            }
            case NodeKind::If:
                _CollectStores(_unit.ifs[node.target].whenTrue, loop);
                _CollectStores(_unit.ifs[node.target].whenFalse, loop);
                break;
            case NodeKind::Loop:
                _CollectStores(_unit.loops[node.target].test, node.target);
                _CollectStores(_unit.loops[node.target].body, node.target);
                _CollectStores(_unit.loops[node.target].step, node.target);
                break;
            case NodeKind::Block:
                _CollectStores(_unit.blocks[node.target].region, loop);
                break;
            case NodeKind::Leave:
                ++_unit.blocks[node.target].leaveCount;
                break;
            default:
                break;
            }
        }
    }

    // Values.

    ValueId _MakeConstant(std::uint32_t word) {
        auto [entry, isNew] = _constants.try_emplace(word, static_cast<ValueId>(_unit.ops.size()));
        if (isNew) {
            IrOp op;
            op.kind = IrKind::Constant;
            op.word = word;
            _AddOp(op);
        }
        return entry->second;
    }

    ValueId _MakeOperation(Operation operation, ValueId a, ValueId b) {
        IrOp op;
        op.kind = IrKind::Operation;
        op.operation = operation;
        op.arguments = {a, b, kNone};
        return _Place(_AddOp(op));
    }

    ValueId _MakeSelect(ValueId condition, ValueId a, ValueId b) {
        IrOp op;
        op.kind = IrKind::Operation;
        op.operation = Operation::Select;
        op.arguments = {condition, a, b};
        return _Place(_AddOp(op));
    }

    ValueId _AddOp(const IrOp& op) {
        _unit.ops.push_back(op);
        _replacements.push_back(kNone);
        _depths.push_back(
            op.kind == IrKind::Constant ? 0 : static_cast<std::uint32_t>(_openLoops.size()));
        return static_cast<ValueId>(_unit.ops.size() - 1);
    }

    ValueId _Resolve(ValueId id) const {
        return _replacements[id] == kNone ? id : _replacements[id];
    }

    /// Folds an op whose arguments are final, or finds the one that is the same, or else puts it at
    /// the end of the open nodes.
    ValueId _Place(ValueId id) {
        IrOp op = _unit.ops[id];
        if (op.kind == IrKind::Operation) {
            ValueId folded = _folder.Fold(op);
            if (folded != kNone) {
                return folded;
            }
            _unit.ops[id] = op;
        }
        OpKey key(op);
        if (op.kind == IrKind::LoadArray) {
            key.extra = _arrayVersions[op.index];
        }
        auto [entry, isNew] = _same.try_emplace(key, id);
        if (!isNew) {
            return entry->second;
        }
        _keys.push_back(key);
        std::size_t depth = _FindDepth(op);
        std::vector<IrNode>& nodes =
            depth < _openLoops.size() ? *_openLoops[depth].pOuterNodes : *_pNodes;
        nodes.push_back({NodeKind::Op, id});
        _depths[id] = static_cast<std::uint32_t>(depth);
        return id;
    }

    /// How many of the open loops an op must stand in. What is the same in every round goes ahead
    /// of the loop, unless it is much work that not every round does.
    std::size_t _FindDepth(const IrOp& op) const {
        std::size_t depth = _openLoops.size();
        bool isMovable = op.kind != IrKind::LoadArray &&
                         (op.kind != IrKind::Operation || GetCost(op.operation) <= kMaxEarlyCost ||
                          _branchDepth == 0);
        if (!isMovable) {
            return depth;
        }
        std::size_t needed = 0;
        ForEachArgument(_unit, op, [&](ValueId argument) {
            needed = std::max<std::size_t>(needed, _depths[argument]);
        });
        return std::min(needed, depth);
    }

    // What variables hold.

    void _SetKnown(std::uint32_t variable, ValueId value) {
        _changes.emplace_back(variable, _known[variable]);
        _known[variable] = value;
    }

    Mark _GetMark() const { return {_changes.size(), _keys.size()}; }

    void _Undo(const Mark& mark) {
        while (_changes.size() > mark.known) {
            _known[_changes.back().first] = _changes.back().second;
            _changes.pop_back();
        }
        while (_keys.size() > mark.keys) {
            _same.erase(_keys.back());
            _keys.pop_back();
        }
    }

    /// Undoes and answers the variables that changed.
    std::vector<std::uint32_t> _UndoStores(const Mark& mark) {
        std::vector<std::uint32_t> variables;
        for (std::size_t i = mark.known; i < _changes.size(); ++i) {
            variables.push_back(_changes[i].first);
        }
        _Undo(mark);
        return variables;
    }

    void _Forget(const std::vector<std::uint32_t>& variables) {
        for (std::uint32_t variable : variables) {
            if (_known[variable] != kNone) {
                _SetKnown(variable, kNone);
            }
        }
    }

    // Nodes.

    void _VisitNodes(RegionId region, std::vector<IrNode>& nodes) {
        std::vector<IrNode>* pOuter = _pNodes;
        _pNodes = &nodes;
        // Nodes move to where they are placed, also out of regions that dissolve.
        std::vector<IrNode> old = std::move(_unit.regions[region].nodes);
        _unit.regions[region].nodes.clear();
        for (const IrNode& node : old) {
            _VisitNode(node);
            if (_EndsWithExit(nodes)) {
                break;
            }
        }
        _pNodes = pOuter;
    }

    static bool _EndsWithExit(const std::vector<IrNode>& nodes) {
        return !nodes.empty() && nodes.back().kind >= NodeKind::Break;
    }

    void _VisitNode(const IrNode& node) {
        switch (node.kind) {
        case NodeKind::Op:
            _VisitOp(node.target);
            break;
        case NodeKind::If:
            _VisitIf(node.target);
            break;
        case NodeKind::Loop:
            _VisitLoop(node.target);
            break;
        case NodeKind::Block:
            _VisitBlock(node.target);
            break;
        default:
            _pNodes->push_back(node);
            break;
        }
    }

    void _VisitOp(ValueId id) {
        ForEachArgument(_unit, _unit.ops[id],
                        [&](ValueId& argument) { argument = _Resolve(argument); });
        const IrOp op = _unit.ops[id];
        _depths[id] = static_cast<std::uint32_t>(_openLoops.size());
        switch (op.kind) {
        case IrKind::LoadVariable:
            if (_known[op.index] != kNone) {
                _replacements[id] = _known[op.index];
            } else {
                _pNodes->push_back({NodeKind::Op, id});
                _SetKnown(op.index, id);
            }
            break;
        case IrKind::StoreVariable:
            if (_known[op.index] != op.arguments[0]) {
                _SetKnown(op.index, op.arguments[0]);
                _pNodes->push_back({NodeKind::Op, id});
            }
            break;
        case IrKind::StoreArray:
        case IrKind::FillArray:
            _arrayVersions[op.index] = ++_lastVersion;
            _pNodes->push_back({NodeKind::Op, id});
            break;
        case IrKind::Service:
        case IrKind::ServiceResult:
        case IrKind::StoreState:
        case IrKind::StoreOutput:
            _pNodes->push_back({NodeKind::Op, id});
            break;
        default: {
            ValueId placed = _Place(id);
            if (placed != id) {
                _replacements[id] = placed;
            }
            break;
        }
        }
    }

    /// Arrays that a region may have changed look different from now on, also where the change was
    /// undone for variables.
    struct VersionScope {
        explicit VersionScope(Simplifier& simplifier)
            : _simplifier(simplifier), _before(simplifier._lastVersion) {}
        ~VersionScope() {
            if (_simplifier._lastVersion != _before) {
                for (std::uint32_t& version : _simplifier._arrayVersions) {
                    if (version > _before) {
                        version = _simplifier._lastVersion + 1;
                    }
                }
                ++_simplifier._lastVersion;
            }
        }
        VersionScope(const VersionScope&) = delete;
        VersionScope& operator=(const VersionScope&) = delete;

    private:
        Simplifier& _simplifier;
        std::uint32_t _before;
    };

    void _VisitIf(std::uint32_t index) {
        ValueId condition = _Resolve(_unit.ifs[index].condition);
        _unit.ifs[index].condition = condition;
        RegionId branches[2] = {_unit.ifs[index].whenTrue, _unit.ifs[index].whenFalse};
        if (_unit.ops[condition].kind == IrKind::Constant) {
            _Splice(branches[_unit.ops[condition].word != 0 ? 0 : 1]);
            return;
        }
        std::vector<std::uint32_t> changed;
        {
            VersionScope versions(*this);
            for (RegionId branch : branches) {
                Mark mark = _GetMark();
                ++_branchDepth;
                _VisitRegion(branch);
                --_branchDepth;
                bool endsWithExit = _EndsWithExit(_unit.regions[branch].nodes);
                std::vector<std::uint32_t> stored = _UndoStores(mark);
                // Who comes through here has not been in a branch that leaves.
                std::vector<std::uint32_t>& news = endsWithExit ? _escaped : changed;
                news.insert(news.end(), stored.begin(), stored.end());
            }
        }
        if (_CanChoose(branches[0]) && _CanChoose(branches[1]) &&
            _GetBranchCost(branches[0]) + _GetBranchCost(branches[1]) <= kMaxBranchCost) {
            _Choose(condition, branches);
            return;
        }
        if (!_unit.regions[branches[0]].nodes.empty() ||
            !_unit.regions[branches[1]].nodes.empty()) {
            _pNodes->push_back({NodeKind::If, index});
        }
        _Forget(changed);
    }

    /// Puts the nodes of a region, visited in place, behind those of the open one.
    void _Splice(RegionId region) {
        std::vector<IrNode> old = std::move(_unit.regions[region].nodes);
        _unit.regions[region].nodes.clear();
        _unit.regions[region].mergedInto = _openRegion;
        for (const IrNode& node : old) {
            _VisitNode(node);
            if (_EndsWithExit(*_pNodes)) {
                break;
            }
        }
    }

    /// Whether a region has nothing but values and stores to variables.
    bool _CanChoose(RegionId region) const {
        for (const IrNode& node : _unit.regions[region].nodes) {
            if (node.kind != NodeKind::Op) {
                return false;
            }
            const IrOp& op = _unit.ops[node.target];
            if (op.kind != IrKind::StoreVariable && op.kind != IrKind::LoadVariable &&
                op.kind != IrKind::Operation && op.kind != IrKind::LoadTable) {
                return false;
            }
        }
        return true;
    }

    int _GetBranchCost(RegionId region) const {
        int cost = 0;
        for (const IrNode& node : _unit.regions[region].nodes) {
            const IrOp& op = _unit.ops[node.target];
            cost += op.kind == IrKind::Operation ? GetCost(op.operation) : 1;
            if (cost > kMaxBranchCost) {
                break;
            }
        }
        return cost;
    }

    /// Does what both branches do and chooses among what they store.
    void _Choose(ValueId condition, const RegionId (&branches)[2]) {
        std::vector<std::uint32_t> variables; // in order of their first store
        std::unordered_map<std::uint32_t, std::array<ValueId, 2>> values;
        for (std::size_t side = 0; side < 2; ++side) {
            std::vector<IrNode> nodes = std::move(_unit.regions[branches[side]].nodes);
            _unit.regions[branches[side]].nodes.clear();
            _unit.regions[branches[side]].mergedInto = _openRegion;
            for (const IrNode& node : nodes) {
                const IrOp& op = _unit.ops[node.target];
                if (op.kind != IrKind::StoreVariable) {
                    _VisitOp(node.target);
                    continue;
                }
                auto [entry, isNew] = values.try_emplace(op.index);
                if (isNew) {
                    entry->second = {kNone, kNone};
                    variables.push_back(op.index);
                }
                entry->second[side] = _Resolve(op.arguments[0]);
            }
        }
        for (std::uint32_t variable : variables) {
            std::array<ValueId, 2> sides = values[variable];
            for (ValueId& side : sides) {
                side = side == kNone ? _GetCurrent(variable) : _Resolve(side);
            }
            ValueId chosen = _MakeSelect(condition, sides[0], sides[1]);
            IrOp store;
            store.kind = IrKind::StoreVariable;
            store.index = variable;
            store.arguments[0] = chosen;
            _VisitOp(_AddOp(store));
        }
    }

    ValueId _GetCurrent(std::uint32_t variable) {
        if (_known[variable] != kNone) {
            return _known[variable];
        }
        IrOp load;
        load.kind = IrKind::LoadVariable;
        load.index = variable;
        ValueId id = _AddOp(load);
        _VisitOp(id);
        return id;
    }

    void _VisitLoop(std::uint32_t index) {
        VersionScope versions(*this);
        _Forget(_stored[index].variables);
        for (std::uint32_t array : _stored[index].arrays) {
            _arrayVersions[array] = ++_lastVersion;
        }
        Mark mark = _GetMark();
        _openLoops.push_back({_pNodes});
        int branchDepth = std::exchange(_branchDepth, 0);
        RegionId regions[3] = {_unit.loops[index].test, _unit.loops[index].body,
                               _unit.loops[index].step};
        if (_unit.loops[index].testsFirst) {
            // The test is ahead of the body and of the step each time.
            _VisitRegion(regions[0]);
            _VisitAndUndo(regions[1]);
            _VisitAndUndo(regions[2]);
        } else {
            _VisitAndUndo(regions[1]);
            _VisitAndUndo(regions[2]);
            _VisitRegion(regions[0]);
        }
        IrLoop& loop = _unit.loops[index];
        if (loop.condition != kNone) {
            loop.condition = _Resolve(loop.condition);
        }
        _Undo(mark);
        _branchDepth = branchDepth;
        _openLoops.pop_back();
        _pNodes->push_back({NodeKind::Loop, index});
    }

    void _VisitRegion(RegionId region) {
        RegionId outer = _openRegion;
        _openRegion = region;
        std::vector<IrNode> nodes;
        _VisitNodes(region, nodes);
        _unit.regions[region].nodes = std::move(nodes);
        _openRegion = outer;
    }

    /// What the region stores is not known behind it, since lanes may have left halfway.
    void _VisitAndUndo(RegionId region) {
        Mark mark = _GetMark();
        std::size_t escaped = _escaped.size();
        _VisitRegion(region);
        _Forget(_UndoStores(mark));
        for (std::size_t i = escaped; i < _escaped.size(); ++i) {
            if (_known[_escaped[i]] != kNone) {
                _SetKnown(_escaped[i], kNone);
            }
        }
    }

    void _VisitBlock(std::uint32_t index) {
        RegionId region = _unit.blocks[index].region;
        if (_unit.blocks[index].leaveCount == 0) {
            _Splice(region);
            return;
        }
        VersionScope versions(*this);
        _VisitAndUndo(region);
        _pNodes->push_back({NodeKind::Block, index});
    }

    IrUnit& _unit;
    std::vector<ValueId> _replacements;
    /// How many loops each value is inside of; those of constants are 0.
    std::vector<std::uint32_t> _depths;
    std::vector<OpenLoop> _openLoops;
    int _branchDepth = 0;        ///< branches around the open nodes, inside of the innermost loop
    std::vector<ValueId> _known; ///< the value of each variable, or kNone
    std::vector<std::pair<std::uint32_t, ValueId>> _changes; ///< of _known, to be undone
    std::vector<std::uint32_t> _escaped; ///< variables stored by branches that leave, so far
    std::unordered_map<OpKey, ValueId, OpKeyHash> _same;
    std::vector<OpKey> _keys; ///< of _same, to be undone
    std::unordered_map<std::uint32_t, ValueId> _constants;
    std::vector<std::uint32_t> _arrayVersions;
    std::uint32_t _lastVersion = 0;
    std::vector<Stores> _stored; ///< by loop
    RegionId _openRegion = 0;
    std::vector<IrNode>* _pNodes = nullptr;
    OperationFolder _folder;
};

} // namespace

void Simplify(IrUnit& unit) {
    Simplifier(unit).Run();
}

} // namespace Tolen::OpenKL

#include "engine/Uniformity.h"

#include <utility>

namespace Tolen::OpenKL {

namespace {

/// Starts from everything being uniform and walks the code until nothing changes any more.
class Analysis {
public:
    explicit Analysis(const IrUnit& unit) : _unit(unit) {
        _out.varyingValues.resize(unit.ops.size());
        _out.varyingVariables.resize(unit.variables.size());
        _out.varyingArrays.resize(unit.arrays.size());
        _out.divergentLoops.resize(unit.loops.size());
        _out.divergentContinues.resize(unit.loops.size());
        _out.divergentBlocks.resize(unit.blocks.size());
        _out.regionScopes.resize(unit.regions.size());
        _out.variableScopes.resize(unit.variables.size());
        _out.arrayScopes.resize(unit.arrays.size());
        // Every region can have a scope of its own, numbered one above it.
        _out.scopeParents.resize(unit.regions.size() + 1);
        _out.scopeDepths.resize(unit.regions.size() + 1);
        _FindHomes();
    }

    Uniformity Run() {
        int rounds = 0;
        do {
            if (++rounds == kMaxRounds) {
                _GiveUp();
            }
            _hasChanged = false;
            _AssignScopes(0, 0);
            _PlaceVariables();
            _Visit(0);
        } while (_hasChanged);
        return std::move(_out);
    }

private:
    /// Takes everything to vary that may, which is never wrong; two more rounds settle the rest.
    void _GiveUp() {
        _out.varyingVariables.assign(_out.varyingVariables.size(), true);
        _out.varyingArrays.assign(_out.varyingArrays.size(), true);
        _out.divergentLoops.assign(_out.divergentLoops.size(), true);
        _out.divergentContinues.assign(_out.divergentContinues.size(), true);
        _out.divergentBlocks.assign(_out.divergentBlocks.size(), true);
    }

    /// A variable that is loaded inside of one loop alone belongs to that loop: what lanes that
    /// have left it would see in it does not matter. This holds where the loop is entered behind
    /// the variable's first store each time, hence with no loop between.
    void _FindHomes() {
        _loadLoops.assign(_unit.variables.size(), kUnseen);
        _homeLoops.assign(_unit.variables.size(), kNone);
        _VisitLoads(0);
        for (std::size_t i = 0; i < _unit.variables.size(); ++i) {
            std::uint32_t loop = _loadLoops[i];
            std::uint32_t declared = _unit.regions[_unit.variables[i].region].loop;
            if (loop == kUnseen || loop == kNone || loop == declared) {
                continue;
            }
            // Up to the outermost loop that lies inside of the one of the declaration.
            while (loop != kNone && _unit.loops[loop].outer != declared) {
                loop = _unit.loops[loop].outer;
            }
            _homeLoops[i] = loop;
        }
    }

    void _VisitLoads(RegionId region) {
        for (const IrNode& node : _unit.regions[region].nodes) {
            switch (node.kind) {
            case NodeKind::Op:
                if (_unit.ops[node.target].kind == IrKind::LoadVariable) {
                    _NoteLoad(_unit.ops[node.target].index, _unit.regions[region].loop);
                }
                break;
            case NodeKind::If:
                _VisitLoads(_unit.ifs[node.target].whenTrue);
                _VisitLoads(_unit.ifs[node.target].whenFalse);
                break;
            case NodeKind::Loop:
                _VisitLoads(_unit.loops[node.target].test);
                _VisitLoads(_unit.loops[node.target].body);
                _VisitLoads(_unit.loops[node.target].step);
                break;
            case NodeKind::Block:
                _VisitLoads(_unit.blocks[node.target].region);
                break;
            default:
                break;
            }
        }
    }

    /// Keeps the innermost loop that has all loads inside.
    void _NoteLoad(std::uint32_t variable, std::uint32_t loop) {
        std::uint32_t& common = _loadLoops[variable];
        if (common == kUnseen) {
            common = loop;
            return;
        }
        while (common != kNone && !_IsInLoop(loop, common)) {
            common = _unit.loops[common].outer;
        }
    }

    bool _IsInLoop(std::uint32_t inner, std::uint32_t outer) const {
        while (inner != kNone && inner != outer) {
            inner = _unit.loops[inner].outer;
        }
        return inner == outer;
    }

    /// Marks and notes whether that is news.
    void _Mark(std::vector<bool>& marks, std::size_t index) {
        if (!marks[index]) {
            marks[index] = true;
            _hasChanged = true;
        }
    }

    std::uint32_t _OpenScope(RegionId region, std::uint32_t parent) {
        std::uint32_t scope = region + 1;
        _out.scopeParents[scope] = parent;
        _out.scopeDepths[scope] = _out.scopeDepths[parent] + 1;
        return scope;
    }

    /// Gives every region the scope that follows from what is known to diverge.
    void _AssignScopes(RegionId region, std::uint32_t scope) {
        _out.regionScopes[region] = scope;
        auto assign = [&](RegionId inner, bool isOwn, std::uint32_t parent) {
            _AssignScopes(inner, isOwn ? _OpenScope(inner, parent) : parent);
        };
        for (const IrNode& node : _unit.regions[region].nodes) {
            if (node.kind == NodeKind::If) {
                const IrIf& choice = _unit.ifs[node.target];
                bool isVarying = _out.varyingValues[choice.condition];
                assign(choice.whenTrue, isVarying, scope);
                assign(choice.whenFalse, isVarying, scope);
            } else if (node.kind == NodeKind::Loop) {
                const IrLoop& loop = _unit.loops[node.target];
                assign(loop.test, _out.divergentLoops[node.target], scope);
                std::uint32_t inner = _out.regionScopes[loop.test];
                assign(loop.body, _out.divergentContinues[node.target], inner);
                assign(loop.step, false, inner);
            } else if (node.kind == NodeKind::Block) {
                assign(_unit.blocks[node.target].region, _out.divergentBlocks[node.target], scope);
            }
        }
    }

    void _PlaceVariables() {
        for (std::size_t i = 0; i < _unit.variables.size(); ++i) {
            RegionId home = _homeLoops[i] != kNone ? _unit.loops[_homeLoops[i]].test
                                                   : _unit.Resolve(_unit.variables[i].region);
            _out.variableScopes[i] = _out.regionScopes[home];
        }
        for (std::size_t i = 0; i < _unit.arrays.size(); ++i) {
            _out.arrayScopes[i] = _out.regionScopes[_unit.Resolve(_unit.arrays[i].region)];
        }
    }

    /// Finds what varies and what diverges under the scopes as they are.
    void _Visit(RegionId region) {
        std::uint32_t scope = _out.regionScopes[region];
        for (const IrNode& node : _unit.regions[region].nodes) {
            switch (node.kind) {
            case NodeKind::Op:
                _VisitOp(node.target, scope);
                break;
            case NodeKind::If:
                _Visit(_unit.ifs[node.target].whenTrue);
                _Visit(_unit.ifs[node.target].whenFalse);
                break;
            case NodeKind::Loop: {
                const IrLoop& loop = _unit.loops[node.target];
                _Visit(loop.test);
                if (loop.condition != kNone && _out.varyingValues[loop.condition]) {
                    _Mark(_out.divergentLoops, node.target);
                }
                _Visit(loop.body);
                _Visit(loop.step);
                break;
            }
            case NodeKind::Block:
                _Visit(_unit.blocks[node.target].region);
                break;
            case NodeKind::Break:
                _MarkExit(_out.divergentLoops, node.target, scope, _unit.loops[node.target].test);
                break;
            case NodeKind::Continue:
                _MarkExit(_out.divergentContinues, node.target, scope,
                          _unit.loops[node.target].body);
                break;
            case NodeKind::Leave:
                _MarkExit(_out.divergentBlocks, node.target, scope,
                          _unit.blocks[node.target].region);
                break;
            case NodeKind::Kill:
                break; // lanes that are gone need no care
            }
        }
    }

    /// An exit from below a mask takes some of the lanes and leaves others.
    void _MarkExit(std::vector<bool>& marks, std::uint32_t target, std::uint32_t scope,
                   RegionId inside) {
        if (scope != _out.regionScopes[inside]) {
            _Mark(marks, target);
        }
    }

    void _VisitOp(std::uint32_t id, std::uint32_t scope) {
        const IrOp& op = _unit.ops[id];
        bool isVarying = false;
        ForEachArgument(_unit, op,
                        [&](ValueId argument) { isVarying |= _out.varyingValues[argument]; });
        switch (op.kind) {
        case IrKind::LoadLane:
        case IrKind::LoadInterpolated:
        case IrKind::LoadRayAttribute:
        case IrKind::Service:
            isVarying = true;
            break;
        case IrKind::LoadVariable:
            isVarying = _out.varyingVariables[op.index];
            break;
        case IrKind::LoadArray:
            isVarying |= _out.varyingArrays[op.index];
            break;
        case IrKind::StoreVariable:
            if (isVarying || !_out.IsWithin(scope, _out.variableScopes[op.index])) {
                _Mark(_out.varyingVariables, op.index);
            }
            break;
        case IrKind::StoreArray:
        case IrKind::FillArray:
            if (isVarying || !_out.IsWithin(scope, _out.arrayScopes[op.index])) {
                _Mark(_out.varyingArrays, op.index);
            }
            break;
        default:
            break;
        }
        if (isVarying) {
            _Mark(_out.varyingValues, id);
        }
    }

    static constexpr std::uint32_t kUnseen = 0xfffffffeu;

    /// Code takes a handful of rounds, unless it is made to take as many as it has variables.
    static constexpr int kMaxRounds = 50;

    const IrUnit& _unit;
    Uniformity _out;
    std::vector<std::uint32_t> _loadLoops;
    std::vector<std::uint32_t> _homeLoops;
    bool _hasChanged = false;
};

} // namespace

bool Uniformity::IsWithin(std::uint32_t outer, std::uint32_t inner) const {
    while (scopeDepths[inner] > scopeDepths[outer]) {
        inner = scopeParents[inner];
    }
    return inner == outer;
}

Uniformity AnalyzeUniformity(const IrUnit& unit) {
    return Analysis(unit).Run();
}

} // namespace Tolen::OpenKL

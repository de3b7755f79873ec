#include "engine/CopyRemoval.h"

#include "engine/RegisterAllocation.h"

#include <algorithm>

namespace Tolen::OpenKL {

namespace {

/// Where a register is read and written, in order.
struct Accesses {
    std::vector<std::uint32_t> reads; ///< ops
    std::vector<std::uint32_t> writes;
};

class CopyRemover {
public:
    explicit CopyRemover(LinearUnit& unit) : _unit(unit), _isRemoved(unit.ops.size()) {}

    void Run() {
        _CollectAccesses();
        _RemoveLoads();
        _ReplaceRegisters();
        _CollectAccesses();
        _RemoveStores();
        _Compact();
    }

private:
    void _CollectAccesses() {
        _rows.assign(_unit.rows.size(), {});
        _scalars.assign(_unit.scalars.size(), {});
        for (std::uint32_t i = 0; i < _unit.ops.size(); ++i) {
            if (_isRemoved[i]) {
                continue;
            }
            ForEachRegister(_unit, _unit.ops[i], [&](Register r, bool isWritten) {
                Accesses& accesses = _Get(r);
                (isWritten ? accesses.writes : accesses.reads).push_back(i);
            });
        }
    }

    Accesses& _Get(Register r) { return IsScalar(r) ? _scalars[GetIndex(r)] : _rows[GetIndex(r)]; }

    const RegisterInfo& _GetInfo(Register r) const {
        return IsScalar(r) ? _unit.scalars[GetIndex(r)] : _unit.rows[GetIndex(r)];
    }

    static bool _IsMove(const LinearOp& op) {
        return op.code == LinearCode::Operate && op.operation == Operation::Move &&
               IsScalar(op.dst) == IsScalar(op.a);
    }

    /// Whether a list has an op from @p first to @p last.
    static bool _HasBetween(const std::vector<std::uint32_t>& ops, std::uint32_t first,
                            std::uint32_t last) {
        auto at = std::lower_bound(ops.begin(), ops.end(), first);
        return at != ops.end() && *at <= last;
    }

    /// `t = x`, where x is not written for as long as t lives.
    void _RemoveLoads() {
        Lifetimes lifetimes = FindLifetimes(_unit);
        _rowNames.assign(_unit.rows.size(), kNoRegister);
        _scalarNames.assign(_unit.scalars.size(), kNoRegister);
        for (std::uint32_t i = 0; i < _unit.ops.size(); ++i) {
            const LinearOp& op = _unit.ops[i];
            if (!_IsMove(op) || !_GetInfo(op.dst).isTemporary) {
                continue;
            }
            const Lifetime& life = IsScalar(op.dst) ? lifetimes.scalars[GetIndex(op.dst)]
                                                    : lifetimes.rows[GetIndex(op.dst)];
            // The last reader itself may write x.
            std::uint32_t last = life.end / 2;
            bool readsAtEnd = life.end % 2 == 0;
            Register source = _GetName(op.a);
            if (_HasBetween(_Get(source).writes, i + 1, readsAtEnd && last > 0 ? last - 1 : last)) {
                continue;
            }
            Register& name =
                IsScalar(op.dst) ? _scalarNames[GetIndex(op.dst)] : _rowNames[GetIndex(op.dst)];
            name = source;
            _isRemoved[i] = true;
        }
    }

    Register _GetName(Register r) const {
        while (true) {
            Register name = IsScalar(r) ? _scalarNames[GetIndex(r)] : _rowNames[GetIndex(r)];
            if (name == kNoRegister) {
                return r;
            }
            r = name;
        }
    }

    void _ReplaceRegisters() {
        for (std::uint32_t i = 0; i < _unit.ops.size(); ++i) {
            if (!_isRemoved[i]) {
                ForEachRegister(_unit, _unit.ops[i], [&](Register& r, bool) { r = _GetName(r); });
            }
        }
    }

    /// `t = ...; x = t` in one run of ops, where nobody else reads t and nobody between them
    /// touches x.
    void _RemoveStores() {
        std::uint32_t runStart = 0;
        for (std::uint32_t i = 0; i < _unit.ops.size(); ++i) {
            const LinearOp& op = _unit.ops[i];
            if (op.code == LinearCode::Label || _IsJump(op.code)) {
                runStart = i + 1;
                continue;
            }
            if (_isRemoved[i] || !_IsMove(op) || !_GetInfo(op.a).isTemporary) {
                continue;
            }
            const Accesses& value = _Get(op.a);
            if (value.reads.size() != 1 || value.writes.size() != 1 || value.writes[0] < runStart) {
                continue;
            }
            std::uint32_t maker = value.writes[0];
            Accesses& target = _Get(op.dst);
            bool isTouched = _HasBetween(target.reads, maker + 1, i - 1) ||
                             _HasBetween(target.writes, maker, i - 1);
            if (isTouched || _unit.ops[maker].code == LinearCode::Call || maker + 1 > i) {
                continue;
            }
            _unit.ops[maker].dst = op.dst;
            // The move's write is the maker's now.
            *std::lower_bound(target.writes.begin(), target.writes.end(), i) = maker;
            _isRemoved[i] = true;
        }
    }

    static bool _IsJump(LinearCode code) {
        return code == LinearCode::Jump || code == LinearCode::JumpIfNone ||
               code == LinearCode::JumpIfFalse || code == LinearCode::JumpIfTrue ||
               code == LinearCode::LoopStep;
    }

    void _Compact() {
        std::vector<LinearOp> kept;
        std::vector<std::uint32_t> places(_unit.ops.size() + 1);
        for (std::uint32_t i = 0; i < _unit.ops.size(); ++i) {
            places[i] = static_cast<std::uint32_t>(kept.size());
            if (!_isRemoved[i]) {
                kept.push_back(_unit.ops[i]);
            }
        }
        places[_unit.ops.size()] = static_cast<std::uint32_t>(kept.size());
        for (std::size_t loop = 0; loop < _unit.loopStarts.size(); ++loop) {
            _unit.loopStarts[loop] = places[_unit.loopStarts[loop]];
            _unit.loopEnds[loop] = places[_unit.loopEnds[loop]];
        }
        _unit.ops = std::move(kept);
    }

    LinearUnit& _unit;
    std::vector<bool> _isRemoved;
    std::vector<Accesses> _rows;
    std::vector<Accesses> _scalars;
    std::vector<Register> _rowNames; ///< what rows are replaced by
    std::vector<Register> _scalarNames;
};

} // namespace

void RemoveCopies(LinearUnit& unit) {
    CopyRemover(unit).Run();
}

} // namespace Tolen::OpenKL

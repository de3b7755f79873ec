#include "engine/RegisterAllocation.h"

#include <algorithm>
#include <functional>
#include <queue>

namespace Tolen::OpenKL {

namespace {

/// Places that are free again, lowest first.
using FreePlaces = std::priority_queue<std::uint32_t, std::vector<std::uint32_t>, std::greater<>>;

/// Gives each lifetime a place that no other one has at the same time.
std::uint32_t Scan(const std::vector<Lifetime>& lifetimes, std::uint32_t firstPlace,
                   std::vector<std::uint32_t>& places) {
    std::vector<std::uint32_t> order;
    for (std::uint32_t i = 0; i < lifetimes.size(); ++i) {
        if (places[i] == kNone && !lifetimes[i].IsEmpty()) {
            order.push_back(i);
        }
    }
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return lifetimes[a].start < lifetimes[b].start;
    });
    using Active = std::pair<std::uint32_t, std::uint32_t>; // end, place
    std::priority_queue<Active, std::vector<Active>, std::greater<>> active;
    FreePlaces free;
    std::uint32_t next = firstPlace;
    for (std::uint32_t i : order) {
        while (!active.empty() && active.top().first < lifetimes[i].start) {
            free.push(active.top().second);
            active.pop();
        }
        if (free.empty()) {
            places[i] = next++;
        } else {
            places[i] = free.top();
            free.pop();
        }
        active.push({lifetimes[i].end, places[i]});
    }
    return next;
}

} // namespace

Lifetimes FindLifetimes(const LinearUnit& unit) {
    Lifetimes lifetimes;
    lifetimes.rows.resize(unit.rows.size());
    lifetimes.scalars.resize(unit.scalars.size());
    std::vector<std::uint32_t> startsAt(unit.ops.size(), kNone);
    for (std::uint32_t loop = 0; loop < unit.loopStarts.size(); ++loop) {
        if (unit.loopEnds[loop] != 0) {
            startsAt[unit.loopStarts[loop]] = loop;
        }
    }
    std::uint32_t current = kNone;
    for (std::uint32_t i = 0; i < unit.ops.size(); ++i) {
        while (current != kNone && i >= unit.loopEnds[current]) {
            current = unit.loopOuter[current];
        }
        if (startsAt[i] != kNone) {
            current = startsAt[i];
        }
        bool isCall = unit.ops[i].code == LinearCode::Call;
        ForEachRegister(unit, unit.ops[i], [&](Register r, bool isWritten) {
            const RegisterInfo& info =
                IsScalar(r) ? unit.scalars[GetIndex(r)] : unit.rows[GetIndex(r)];
            Lifetime& life =
                IsScalar(r) ? lifetimes.scalars[GetIndex(r)] : lifetimes.rows[GetIndex(r)];
            // Services read operands after they have written results of other lanes.
            std::uint32_t at = 2 * i + (isWritten || isCall ? 1 : 0);
            life.start = std::min(life.start, at);
            life.end = std::max(life.end, at);
            std::uint32_t outermost = kNone;
            for (std::uint32_t loop = current; loop != kNone && loop != info.loop;
                 loop = unit.loopOuter[loop]) {
                outermost = loop;
            }
            if (outermost != kNone) {
                life.start = std::min(life.start, 2 * unit.loopStarts[outermost]);
                life.end = std::max(life.end, 2 * unit.loopEnds[outermost] + 1);
            }
        });
    }
    return lifetimes;
}

RegisterCounts AllocateRegisters(LinearUnit& unit) {
    Lifetimes lifetimes = FindLifetimes(unit);
    std::vector<std::uint32_t> rows(unit.rows.size(), kNone);
    std::vector<std::uint32_t> scalars(unit.scalars.size(), kNone);
    rows[kLanesRow] = kLanesRow;
    std::uint32_t constants = 0;
    for (Register r : unit.constantRegisters) {
        scalars[GetIndex(r)] = constants++;
    }
    RegisterCounts counts{};
    counts.rows = Scan(lifetimes.rows, kLanesRow + 1, rows);
    counts.scalars = Scan(lifetimes.scalars, constants, scalars);
    for (LinearOp& op : unit.ops) {
        // A register that is read and written comes twice; it must be replaced once.
        Register dst = op.dst;
        op.dst = kNoRegister;
        auto place = [&](Register& r) {
            r = IsScalar(r) ? scalars[GetIndex(r)] | kScalarBit : rows[GetIndex(r)];
        };
        ForEachRegister(unit, op, [&](Register& r, bool) { place(r); });
        if (dst != kNoRegister) {
            place(dst);
        }
        op.dst = dst;
    }
    for (LinearArray& array : unit.arrays) {
        std::uint32_t& next = array.isScalar ? counts.scalars : counts.rows;
        array.first = next;
        next += array.count;
    }
    return counts;
}

} // namespace Tolen::OpenKL

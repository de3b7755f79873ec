#pragma once

#include "TolenOpenKL/Statistics.h"

#include <compare>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Tolen {
class Result;
}

namespace Tolen::OpenKL {

struct Limits;
struct PlanPrimitive;

/// What a render stopped or replaced, and where.
enum Problem {
    kProblem_Depth,
    kProblem_RayCount,
    kProblem_RayMemory,
    kProblem_InvalidRay,
    kProblem_LoopSteps,
    kProblem_Value,
    kProblem_Accumulates,
    kProblem_Count,
};

/// Counts of one thread, brought together after each tile.
class Reports {
public:
    /// Counts something that happened in a program on a primitive.
    /// @param text, line where in the program, the index of a shader and its line; -1 when it isn't
    ///                   known
    void Count(Problem problem, const PlanPrimitive& primitive, std::int64_t count, int text = -1,
               int line = -1);

    void Add(const Reports& other);

    /// Tells each problem that @p told doesn't have yet, and enters it there.
    void Tell(const Limits& limits, std::set<std::string>& told, Result& result) const;

    /// What the render counts beside problems.
    Statistics counters;

private:
    struct Key {
        Problem problem;
        std::uint64_t link;
        int text;
        int line;
        auto operator<=>(const Key&) const = default;
    };
    struct Entry {
        std::int64_t count = 0;
        std::int32_t primitive = 0; ///< the lowest handle on which it happened
        std::string program;
        std::string primitiveName;
        std::string shader;
    };

    std::map<Key, Entry> _entries;
};

} // namespace Tolen::OpenKL

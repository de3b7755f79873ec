#include "Suggestion.h"

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

namespace Tolen::Language {

namespace {

/// Names beyond this are no slips of the pen any more; comparing them would only take time.
constexpr std::size_t kMaxLength = 64;

/// What a letter costs that was put in, left out, swapped with the next or made another one.
constexpr int kCost = 4;
/// What one costs that differs in case alone.
constexpr int kCostOfCase = 1;

char Lower(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

int CostOfChange(char from, char to) {
    if (from == to) {
        return 0;
    }
    return Lower(from) == Lower(to) ? kCostOfCase : kCost;
}

/// The highest cost for which a name of this length counts as meant: one slip in three letters.
int Limit(std::size_t length) {
    return length < 3 ? kCostOfCase * 2 : kCost * static_cast<int>((length + 1) / 3);
}

/// The least cost of making @p to of @p from, or anything above @p limit when it is more. Keeps
/// three rows of the table of all pairs of beginnings.
int Distance(std::string_view from, std::string_view to, int limit) {
    const std::size_t width = to.size() + 1;
    std::vector<int> before(width);
    std::vector<int> above(width);
    std::vector<int> row(width);
    for (std::size_t column = 0; column < width; ++column) {
        row[column] = static_cast<int>(column) * kCost;
    }
    for (std::size_t line = 1; line <= from.size(); ++line) {
        std::swap(before, above);
        std::swap(above, row);
        row[0] = static_cast<int>(line) * kCost;
        int least = row[0];
        for (std::size_t column = 1; column < width; ++column) {
            int cost = std::min(above[column], row[column - 1]) + kCost;
            cost = std::min(cost, above[column - 1] + CostOfChange(from[line - 1], to[column - 1]));
            if (line > 1 && column > 1 && from[line - 1] == to[column - 2] &&
                from[line - 2] == to[column - 1]) {
                cost = std::min(cost, before[column - 2] + kCost);
            }
            row[column] = cost;
            least = std::min(least, cost);
        }
        // A swap reaches one row further back.
        if (least > limit + kCost) {
            return least;
        }
    }
    return row[to.size()];
}

} // namespace

std::string Suggest(std::string_view name, const std::vector<std::string>& candidates) {
    if (name.empty() || name.size() > kMaxLength) {
        return {};
    }
    int best = Limit(name.size()) + 1;
    const std::string* meant = nullptr;
    for (const std::string& candidate : candidates) {
        if (candidate == name) {
            return {};
        }
        const std::size_t shorter = std::min(candidate.size(), name.size());
        const std::size_t longer = std::max(candidate.size(), name.size());
        if (longer > 2 * kMaxLength || static_cast<int>(longer - shorter) * kCost >= best) {
            continue;
        }
        const int cost = Distance(name, candidate, best);
        if (cost < best) {
            best = cost;
            meant = &candidate;
        }
    }
    return meant == nullptr ? std::string() : *meant;
}

} // namespace Tolen::Language

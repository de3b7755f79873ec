#include "compiler/OverloadChooser.h"

#include "compiler/Expressions.h"

#include <algorithm>

namespace Tolen::OpenKL {

bool IsConvertible(const Type& from, const Type& to) {
    if (from == to) {
        return true;
    }
    Type asFloat = from;
    asFloat.base = kBase_Float;
    return from.base == kBase_Int && !from.IsArray() && asFloat == to;
}

void OverloadChooser::Offer(std::size_t candidate, std::span<const ParameterShape> parameters) {
    if (parameters.size() != _arguments.size()) {
        return;
    }
    Fit fit{candidate, {}};
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        const Type& from = _arguments[i]->type;
        if (from == parameters[i].type) {
            continue;
        }
        if (parameters[i].direction != kDirection_In || !IsConvertible(from, parameters[i].type)) {
            return;
        }
        fit.conversions.set(i);
    }
    _fits.push_back(fit);
}

std::size_t OverloadChooser::GetBest() const {
    if (_fits.empty()) {
        return kNone;
    }
    // There is only one conversion, so that equal sets of conversions mean equal parameters.
    const auto best = std::min_element(_fits.begin(), _fits.end(), [](const Fit& a, const Fit& b) {
        return a.conversions.count() < b.conversions.count();
    });
    const bool beatsAll = std::all_of(_fits.begin(), _fits.end(), [&](const Fit& fit) {
        return (best->conversions & ~fit.conversions).none();
    });
    return beatsAll ? best->candidate : kNone;
}

} // namespace Tolen::OpenKL

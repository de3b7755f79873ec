#include "PrototypeRequests.h"

#include <iterator>

namespace Tolen::Effects {

void PrototypeRequests::Begin(const Class& loaded) {
    _open.push_back({loaded, _loaded.size()});
}

std::vector<PrototypeRequests::Class> PrototypeRequests::End(bool good) {
    const Open closed = _open.back();
    _open.pop_back();
    std::vector<Class> inside;
    if (good) {
        _loaded.push_back(closed.loading);
    } else {
        inside.assign(_loaded.rbegin(),
                      std::make_reverse_iterator(_loaded.begin() +
                                                 static_cast<std::ptrdiff_t>(closed.firstInside)));
        _loaded.resize(closed.firstInside);
        _failed.insert(closed.loading);
    }
    if (_open.empty()) {
        _loaded.clear();
        _failed.clear();
    }
    return inside;
}

} // namespace Tolen::Effects

#include "TolenEffects/Key.h"

#include "TolenCore/Format.h"

namespace Tolen::Effects {

const Key& Key::Null() {
    static const Key null;
    return null;
}

std::string Key::ToString() const {
    return Format("_k%x", _number);
}

} // namespace Tolen::Effects

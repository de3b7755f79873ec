#include "MangleMethodPrefixKey.h"

#include "TolenEffects/Declaration.h"
#include "TolenEffects/Key.h"

namespace Tolen::Effects {

std::string MangleMethodPrefixKey::Mangle(const std::string& prefix,
                                          const FunctionPrototype* prototype) const {
    return prefix + prototype->GetName()->GetString() + _pKey->ToString();
}

} // namespace Tolen::Effects

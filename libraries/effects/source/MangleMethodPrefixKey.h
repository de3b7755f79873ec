#pragma once

#include "IMangleMethod.h"

namespace Tolen::Effects {

class Key;

/// Names a method by prefix, own name and the text of a key: "Foo_", "Shade" and key 0x1a give
/// "Foo_Shade_k1a".
class MangleMethodPrefixKey : public IMangleMethod {
public:
    /// @param key borrowed; read at every use
    explicit MangleMethodPrefixKey(const Key* key) : _pKey(key) {}

    std::string Mangle(const std::string& prefix, const FunctionPrototype* prototype) const override;

private:
    const Key* _pKey;
};

} // namespace Tolen::Effects

#pragma once

#include <string>

namespace Tolen::Effects {

class FunctionPrototype;

/// Makes the name that a method carries in generated text.
class IMangleMethod {
public:
    virtual ~IMangleMethod() = default;

    /// @param prefix put before the method's own name
    virtual std::string Mangle(const std::string& prefix, const FunctionPrototype* prototype) const = 0;
};

} // namespace Tolen::Effects

#pragma once

#include <string>
#include <vector>

namespace Tolen::Tests {

/// The names that a text declares outside of braces, in order.
struct DeclaredNames {
    std::vector<std::string> uniforms;
    std::vector<std::string> blocks;
    std::vector<std::string> attributes;
};

/// Looks through a text for `uniform T a, b[2];`, `uniformblock B { ... };` and `attribute T a;`,
/// also with further qualifiers in front.
DeclaredNames FindDeclaredNames(const std::string& text);

} // namespace Tolen::Tests

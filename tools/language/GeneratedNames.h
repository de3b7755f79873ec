#pragma once

#include "language/SourceIndex.h"

#include <cstddef>
#include <string>

namespace Tolen::Language {

/// A part of a text in which a message means something.
struct TokenRegion {
    const IndexedSource* pSource = nullptr;
    std::size_t begin = 0; ///< the first token
    std::size_t end = 0;   ///< one past the last

    std::size_t GetOffset() const {
        return begin < pSource->tokens.size() ? pSource->tokens[begin].range.begin : 0;
    }
};

/// A generated name without the keys of the shader and the graph that it ends with: "Dots_At" of
/// "Dots_At_k2a". Names of static methods have none.
std::string WithoutKeys(const std::string& name);

/// Puts the names of the source into a message about generated code, in which every shader has
/// names of its own: "no function 'Dots_At_k2a' takes (vec3)" becomes "no function 'At' ...".
/// @param region what the message is about
std::string PutSourceNames(const std::string& text, SourceIndex& index, const TokenRegion& region);

} // namespace Tolen::Language

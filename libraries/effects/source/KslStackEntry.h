#pragma once

#include "Token.h"

#include <cstdint>

namespace Tolen::Effects {

/// An entry of the parsing machine's stack.
struct KslStackEntry {
    std::int16_t state = 0;
    bool ownsNode = false;   ///< the value is a node that belongs to the machine
    bool isGroup = false;    ///< the value is an expression in parentheses
    std::int32_t depth = 0;  ///< levels open around what stands behind the entry
    std::int32_t height = 0; ///< levels inside the value
    Token token;
};

} // namespace Tolen::Effects

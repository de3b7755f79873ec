#pragma once

#include "TolenEffects/Syntax.h"

#include <cstdint>

namespace Tolen::Effects {

/// A token, or what the parsing machine made of several: a value and where it stands.
struct Token {
    union Value {
        String* string;       ///< of an identifier or a float constant; the module's
        bool boolean;         ///< of a bool constant
        std::int32_t integer; ///< of an int constant; an enumerator
        Syntax* node;         ///< owned by the machine
    };

    Value value{nullptr};
    LocationRange range;
};

} // namespace Tolen::Effects

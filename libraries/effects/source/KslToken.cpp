#include "KslToken.h"

namespace Tolen::Effects {

const char* TokenName(int code) {
    const bool named = code > kToken_End && code < kToken_Count && code != kToken_Input;
    return named ? kTokenTexts[code] : "Unknown";
}

} // namespace Tolen::Effects

#pragma once

namespace Tolen::Effects {

/// How a global variable is declared in generated code.
enum AccessQualifier {
    kAccessQualifier_None = 0,
    kAccessQualifier_Uniform = 1,
    kAccessQualifier_Const = 2,
};

} // namespace Tolen::Effects

#pragma once

namespace Tolen::Effects {

class VariableDeclaration;

/// How a global variable is declared in generated code.
enum AccessQualifier {
    kAccessQualifier_None = 0,
    kAccessQualifier_Uniform = 1,
    kAccessQualifier_Const = 2,
};

/// Gives @p declaration the qualifier.
void SetAccessQualifier(VariableDeclaration* declaration, AccessQualifier qualifier);

} // namespace Tolen::Effects

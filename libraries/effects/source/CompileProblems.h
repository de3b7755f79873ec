#pragma once

namespace Tolen::Effects {

class IShader;

/// Looks for what keeps the graph below a root from compiling and prints the first thing found on
/// the console, with its place: names of inputs joined by ".", array elements as "[i]".
/// @return whether nothing was found
bool CheckCompileProblems(IShader* root);

} // namespace Tolen::Effects

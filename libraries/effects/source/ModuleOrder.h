#pragma once

namespace Tolen::Effects {

class Module;

/// Sorts the structures, variables, prototypes and function definitions of @p module, so that its
/// text doesn't depend on the order in which they were added. The order is that of the `operator<`
/// of the declarations; prototypes that it takes for equal are told apart by the arrays and user
/// types of their parameters, and what is equal then keeps its place.
void SortModule(Module* module);

} // namespace Tolen::Effects

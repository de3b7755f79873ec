#pragma once

#include <string>

namespace Tolen::Effects {

/// The text of one element, in the same form in every locale. Instances exist for the element types
/// of values.
template <class T>
std::string ElementToString(const T& element);

} // namespace Tolen::Effects

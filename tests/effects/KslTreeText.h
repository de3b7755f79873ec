#pragma once

#include <string>

namespace Tolen::Effects {

class Module;
class Statement;
class Expression;

namespace Tests {

/// Whether the text of a tree tells the ranges of its nodes.
enum class Ranges { Hidden, Shown };

/// The whole of a tree as text in prefix form, for small trees. One line for each definition, with
/// functions first, then interfaces, classes, stand-alone statements and expressions.
///
/// Operators and statements are lists in parentheses: "(+ a (call f 1))", "(post++ a)",
/// "(if a (block) (return))". A cleared range shows as "@-", one on line 1 as "@0-5", others as
/// "@2:1-3:4".
std::string TreeText(const Module& module, Ranges ranges = Ranges::Hidden);

} // namespace Tests
} // namespace Tolen::Effects

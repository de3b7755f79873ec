#pragma once

#include "TolenEffects/SyntaxTypes.h"

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {

class Expression;
class IStorage;

/// The evaluation of default values: constants of a few fixed shapes are computed on the host and
/// written to a storage. Understood are numbers and truth values, minus signs before numbers,
/// constructors of scalars with one argument, and constructors of vectors and matrices with one
/// scalar or with all of them. Anything else is refused.
///
/// A refusal prints a line on the general channel and adds to @p result, if not null; elements that
/// were written before stay written.

/// Whether @p expression is a constructor of an array, such as `float[](1, 2)`.
bool IsArrayConstructor(const Expression* expression);

/// The arguments of an array constructor; 0 for anything else.
int GetArrayConstructorLength(const Expression* expression);

/// Writes the value of @p expression to the element @p index.
bool _InitializeValue(Result* result, IStorage* storage, int index, TypeSpecifier specifier,
                      const Expression* expression);

/// Writes a whole array. The arguments of an array constructor are the elements: an array that can
/// be resized takes their number for its length, any other must have it. Any other expression fills
/// all elements of an array of fixed length, and leaves one that can be resized as it is.
bool _InitializeValueArray(Result* result, IStorage* storage, TypeSpecifier specifier,
                           const Expression* expression);

} // namespace Tolen::Effects

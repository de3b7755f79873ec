#pragma once

#include "TolenCore/Export.h"

#include <string>

namespace Tolen::Effects {

/// A number that tells apart what would otherwise share a name in generated text.
class TOLEN_EXPORT Key {
public:
    /// The null key, 0.
    Key() = default;
    /// A key of this number; 0 gives the null key.
    explicit Key(unsigned int number) : _number(number) {}

    /// The one null key.
    static const Key& Null();

    /// "_k" and the number in hexadecimal, such as "_k1a" for 26.
    std::string ToString() const;

    /// The number; 0 for the null key.
    unsigned int GetNumber() const { return _number; }

    /// Whether the numbers are the same.
    friend bool operator==(const Key& a, const Key& b) { return a._number == b._number; }
    /// Whether the numbers differ.
    friend bool operator!=(const Key& a, const Key& b) { return a._number != b._number; }
    /// By the numbers.
    friend bool operator<(const Key& a, const Key& b) { return a._number < b._number; }

private:
    unsigned int _number = 0;
};

} // namespace Tolen::Effects

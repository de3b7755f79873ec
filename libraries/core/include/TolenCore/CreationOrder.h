#pragma once

#include "TolenCore/Export.h"

#include <cstdint>

namespace Tolen {

/// A number that says when an object was made, compared with the others of the process.
///
/// Sets of delegates are ordered by it, so that the order in which notices arrive, and with it the
/// keys and names in generated text, is the same in every run instead of following addresses. A
/// copy is a new object and draws a new number.
class TOLEN_EXPORT CreationOrder {
public:
    /// 1 for the first object of the process, then rising.
    std::uint64_t GetCreationNumber() const { return _creationNumber; }

protected:
    /// Draws the next number; from any thread.
    CreationOrder();
    /// Draws a number of its own.
    CreationOrder(const CreationOrder&) : CreationOrder() {}
    /// Leaves the number as it is.
    CreationOrder& operator=(const CreationOrder&) { return *this; }
    ~CreationOrder() = default;

private:
    std::uint64_t _creationNumber;
};

} // namespace Tolen

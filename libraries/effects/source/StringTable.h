#pragma once

#include <cstddef>
#include <vector>

namespace Tolen::Effects {

class String;

/// The names that a Module owns, found by their address alone: a pointer to a name that is gone is
/// never followed.
///
/// An open hash table. A text brings a name every few words, so entering one must cost next to
/// nothing; names made one after the other lie near each other in memory, and in the table too.
class StringTable {
public:
    /// Deletes the names.
    ~StringTable();
    StringTable() = default;
    StringTable(const StringTable&) = delete;
    StringTable& operator=(const StringTable&) = delete;

    /// @param string not in the table
    void Insert(String* string);
    /// Leaves @p string to the caller. @return whether it was there
    bool Remove(const String* string);

    void Swap(StringTable& other);

private:
    std::size_t _SlotOf(const String* string) const;
    std::size_t _Next(std::size_t slot) const { return (slot + 1) & (_slots.size() - 1); }
    void _Place(String* string);
    void _Grow();

    std::vector<String*> _slots; ///< a power of two, at most half of them in use; null for a free one
    std::size_t _count = 0;
};

} // namespace Tolen::Effects

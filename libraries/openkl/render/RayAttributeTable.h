#pragma once

#include "compiler/Type.h"

#include <string>
#include <vector>

namespace Tolen::OpenKL {

struct LinkedCode;

/// Where rays carry their attributes: one place for each name and type that a program of the scene
/// declares.
class RayAttributeTable {
public:
    /// Gives every attribute of a program its place.
    /// @return for each word of the program's ray attributes the word in what rays carry
    std::vector<int> Add(const LinkedCode& code);

    /// The words that a ray carries.
    int GetWordCount() const { return _wordCount; }

private:
    struct Entry {
        std::string name;
        Type type;
        int firstWord;
    };

    int _FindOrAdd(std::string_view name, const Type& type, int words);

    std::vector<Entry> _entries;
    int _wordCount = 0;
};

} // namespace Tolen::OpenKL

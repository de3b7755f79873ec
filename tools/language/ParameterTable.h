#pragma once

#include "language/Diagnostic.h"
#include "language/HeadComment.h"
#include "language/Outline.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Language {

/// What the tables at the top of a library say of the inputs of its classes, with what contradicts
/// the source. A row is about "Class.input", about several inputs of it as in "Class.first,
/// second", or about the inputs of that name in the class of its table, or else in all classes.
class ParameterTable {
public:
    /// @param outline, blocks borrowed; @p blocks those of the outline's head comment
    ParameterTable(const Outline& outline, const std::vector<HeadBlock>& blocks);

    /// Whether the block is a table of inputs, each of which the library has.
    bool IsAboutInputs(const HeadBlock& block) const;

    /// @return the unit, range and meaning of an input or a coord; empty when nothing is told
    std::string FindMeaning(const Symbol& owner, const Symbol& value) const;

    /// What the rows say otherwise than the source.
    /// @param file for the messages
    std::vector<Diagnostic> Compare(const std::string& file, const SourceText& text) const;

private:
    /// What one row says of one name.
    struct Entry {
        const HeadBlock* pBlock = nullptr;
        const HeadBlock::Row* pRow = nullptr;
        std::string className; ///< empty for all
        std::string name;
        std::string type;
        std::string meaning;
        std::string value;     ///< the default
        std::string allValues; ///< of all names of the row
    };

    void _AddRow(const HeadBlock& block, const HeadBlock::Row& row);
    static bool _HasDefault(const Entry& entry, const Symbol& value);
    std::vector<const Symbol*> _FindValues(const Entry& entry) const;

    const Outline& _outline;
    std::vector<Entry> _entries;
};

/// Whether a default in a table, such as "0, 1, 0", means the one of the source, such as
/// "vec3(0.0, 1.0, 0.0)". What isn't made of numbers, truth values and a class says something in
/// words, and contradicts nothing.
bool IsSameDefault(const Symbol& value, const std::string& told);

} // namespace Tolen::Language

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace Tolen::Effects {

/// The symbols of the preprocessor: the set of names that count as defined, and the list of names
/// and values, in the order of their definition, that is substituted in text. A name may stand in
/// the list several times, and may stand there without counting as defined.
class Definitions {
public:
    Definitions();
    Definitions(const Definitions&) = delete;
    Definitions& operator=(const Definitions&) = delete;

    /// Lets @p name count as defined and appends the pair; nothing is checked.
    void Define(const std::string& name, const std::string& value);
    bool IsDefined(const std::string& name) const;
    /// The value of the oldest pair of a name; null when there is none.
    const std::string* FindFirst(const std::string& name) const;
    /// Lets @p name no longer count as defined, and takes its oldest pair away. Without a pair
    /// nothing happens.
    void EraseFirst(const std::string& name);

    /// Replaces names by values in one line, from the newest pair to the oldest, so that a value
    /// may bring in names that are older. A name is replaced where the line ends behind it or a
    /// character that is no part of a word follows; what stands before it does not matter. A pair
    /// with an empty name replaces nothing.
    /// @return false, with @p line in any state, when it would grow over @p maxBytes
    bool Substitute(std::string& line, std::size_t maxBytes) const;

private:
    /// Position in the list; later pairs have greater numbers.
    using Serial = std::uint64_t;

    struct Name {
        bool isDefined = false;
        std::set<Serial> serials;
    };
    /// A node of the tree of all names, read from their ends.
    struct Node {
        std::vector<std::pair<char, std::uint32_t>> children;
        const Name* pName = nullptr; ///< the name that begins here; null for none
    };
    struct Pair {
        std::string name;
        std::string value;
    };
    using Pairs = std::map<Serial, Pair>;

    void _AddToTree(const std::string& text, const Name* name);
    std::uint32_t _FindChild(std::uint32_t node, char c) const;
    Pairs::const_iterator _FindNewest(std::string_view line, Serial before) const;

    std::unordered_map<std::string, Name> _names; ///< keeps its nodes, to which the tree points
    Pairs _pairs;
    Serial _next = 1;
    std::vector<Node> _tree; ///< the first node is the root
    std::array<bool, 256> _isLastCharacter{};
};

} // namespace Tolen::Effects

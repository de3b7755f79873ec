#pragma once

#include "language/GeneratedNames.h"
#include "language/Message.h"
#include "language/NamesInScope.h"
#include "language/PlacedMessage.h"
#include "language/SourceIndex.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Tolen::Language {

/// Finds out what messages about code mean in the statements that they are about.
class CodePlacer {
public:
    /// @param index, scope borrowed
    CodePlacer(SourceIndex& index, const NamesInScope& scope) : _index(index), _scope(scope) {}

    /// @return nothing for a region without tokens; a place without columns where more than one
    ///         thing may be meant
    std::optional<PlacedMessage> Place(const Message& message, const TokenRegion& region);

private:
    struct Rule;
    static const std::vector<Rule>& _GetRules();

    void _AddNotes(const Message& message, const TokenRegion& region, PlacedMessage& placed);
    void _Suggest(const IndexedSource& source, std::size_t offset, const std::string& name,
                  const std::vector<std::string>& names, PlacedMessage& placed);

    /// Each takes what the message names; they leave the place alone when they find none.
    /// @{
    using Names = std::vector<std::string>;
    std::size_t _PlaceVariable(const Names& names, const TokenRegion& region,
                               PlacedMessage& placed);
    std::size_t _PlaceFunction(const Names& names, const TokenRegion& region,
                               PlacedMessage& placed);
    std::size_t _PlaceCall(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceMember(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceAssigned(const Names& names, const TokenRegion& region,
                               PlacedMessage& placed);
    std::size_t _PlaceDeclared(const Names& names, const TokenRegion& region,
                               PlacedMessage& placed);
    std::size_t _PlaceTwice(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceReturn(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceMethod(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceObject(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceClass(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    std::size_t _PlaceWord(const Names& names, const TokenRegion& region, PlacedMessage& placed);
    /// @}

    SourceIndex& _index;
    const NamesInScope& _scope;
};

} // namespace Tolen::Language

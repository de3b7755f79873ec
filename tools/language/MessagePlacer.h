#pragma once

#include "language/GeneratedNames.h"
#include "language/Message.h"
#include "language/NamesInScope.h"
#include "language/PreprocessedText.h"
#include "language/SourceIndex.h"

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace Tolen::Language {

/// A message with the places that it means.
struct PlacedMessage {
    std::string text; ///< the message's, with the names of the source
    FilePlace place;  ///< its columns are empty when all of the line is meant
    std::vector<std::pair<FilePlace, std::string>> notes;
    std::string suggestion;
};

/// Finds out what messages about classes and their code mean: they tell a line at best, and name
/// things. A place is told only when it is sure to be the one.
class MessagePlacer {
public:
    /// @param index, names borrowed
    MessagePlacer(SourceIndex& index, const ClientNames& names)
        : _index(index), _scope(index, names) {}

    /// What was being done when the message came.
    struct Context {
        std::string file;      ///< the library's path
        std::string className; ///< empty when it wasn't about a class
    };

    /// @return nothing when the message has no place in a library that is known
    std::optional<PlacedMessage> Place(const Message& message, const Context& context);

    /// Places a message about the code that gives the members of a class their first values, which
    /// tells no place at all. @return nothing when it can't be about these
    std::optional<PlacedMessage> PlaceInMembers(const Message& message, const Context& context);

    /// Whether a message that tells no file is about sources all the same, by the names in it.
    bool MeansSources(const Message& message, const Context& context);

    /// The class of which a message only tells that it can't be used; others may have told why.
    /// @return nothing for other messages
    IndexedSymbol FindUnusable(const Message& message);

    /// The class that was meant by a name that no class has. @return empty when none comes close
    std::string SuggestClass(const std::string& name) const;

    /// Local variables that the library leaves out without a word, since their types are no types
    /// of values. Most of these were meant to be something else.
    std::vector<PlacedMessage> FindLostVariables(const std::string& path);

private:
    struct Rule;
    static const std::vector<Rule>& _GetRules();

    std::optional<PlacedMessage> _PlaceInRegion(const Message& message, const TokenRegion& region);
    std::optional<PlacedMessage> _PlaceInClass(const Message& message, const Context& context);
    void _AddNotes(const Message& message, const TokenRegion& region, PlacedMessage& placed);
    void _AddNote(const IndexedSymbol& symbol, PlacedMessage& placed,
                  const std::string& text = {}) const;
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

    bool _PlaceOutput(const Message& message, const IndexedSymbol& container,
                      PlacedMessage& placed);
    bool _PlaceInHead(const Message& message, const IndexedSymbol& container,
                      PlacedMessage& placed);
    bool _PlaceInVariable(const Message& message, const IndexedSymbol& container,
                          PlacedMessage& placed);

    SourceIndex& _index;
    NamesInScope _scope;
};

} // namespace Tolen::Language

#pragma once

#include "language/CodePlacer.h"
#include "language/Message.h"
#include "language/NamesInScope.h"
#include "language/PlacedMessage.h"
#include "language/SourceIndex.h"

#include <optional>
#include <string>
#include <vector>

namespace Tolen::Language {

/// Finds out what messages about classes and their code mean: they tell a line at best, and name
/// things. A place is told only when it is sure to be the one.
class MessagePlacer {
public:
    /// @param index, names borrowed
    MessagePlacer(SourceIndex& index, const ClientNames& names)
        : _index(index), _scope(index, names), _code(index, _scope) {}
    MessagePlacer(const MessagePlacer&) = delete;
    MessagePlacer& operator=(const MessagePlacer&) = delete;

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
    std::optional<PlacedMessage> _PlaceInClass(const Message& message, const Context& context);
    bool _PlaceOutput(const Message& message, const IndexedSymbol& container,
                      PlacedMessage& placed);
    bool _PlaceInHead(const Message& message, const IndexedSymbol& container,
                      PlacedMessage& placed);
    bool _PlaceInVariable(const Message& message, const IndexedSymbol& container,
                          PlacedMessage& placed);

    SourceIndex& _index;
    NamesInScope _scope;
    CodePlacer _code;
};

} // namespace Tolen::Language

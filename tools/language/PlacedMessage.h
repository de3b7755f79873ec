#pragma once

#include "language/PreprocessedText.h"
#include "language/SourceIndex.h"

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

    /// Adds a note about a declaration. @param note without any, that it is there
    void AddNote(const IndexedSymbol& symbol, const std::string& note = {});
};

/// Where the name of a declaration stands.
FilePlace PlaceOf(const IndexedSymbol& symbol);

} // namespace Tolen::Language

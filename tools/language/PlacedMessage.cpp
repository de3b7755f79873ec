#include "PlacedMessage.h"

namespace Tolen::Language {

void PlacedMessage::AddNote(const IndexedSymbol& symbol, const std::string& note) {
    notes.emplace_back(PlaceOf(symbol),
                       note.empty() ? "'" + symbol.pSymbol->name + "' is declared here" : note);
}

FilePlace PlaceOf(const IndexedSymbol& symbol) {
    return symbol.pSource->pText->Find(symbol.pSymbol->nameRange);
}

} // namespace Tolen::Language

#include "Symbols.h"

#include <cctype>

namespace Tolen::LanguageServer {

using Language::Symbol;

namespace {

/// The numbers of the protocol's SymbolKind.
int GetKind(Symbol::Kind kind) {
    switch (kind) {
    case Symbol::kKind_Define:
        return 14; // Constant
    case Symbol::kKind_Class:
        return 5; // Class
    case Symbol::kKind_Interface:
        return 11; // Interface
    case Symbol::kKind_Function:
        return 12; // Function
    case Symbol::kKind_Method:
        return 6; // Method
    case Symbol::kKind_Input:
        return 7; // Property
    case Symbol::kKind_Member:
    case Symbol::kKind_Coord:
    case Symbol::kKind_Output:
        return 8; // Field
    case Symbol::kKind_Parameter:
    case Symbol::kKind_Local:
        return 13; // Variable
    }
    return 13;
}

bool IsListed(const Symbol& symbol) {
    return symbol.kind != Symbol::kKind_Parameter && symbol.kind != Symbol::kKind_Local &&
           !symbol.name.empty();
}

Json MakeTree(const Source& source, const std::vector<Symbol>& symbols,
              const Positions& positions) {
    Json list = Json::array();
    for (const Symbol& symbol : symbols) {
        if (IsListed(symbol)) {
            list.push_back({{"name", symbol.name},
                            {"detail", symbol.signature},
                            {"kind", GetKind(symbol.kind)},
                            {"range", positions.MakeRange(source.text, symbol.range)},
                            {"selectionRange", positions.MakeRange(source.text, symbol.nameRange)},
                            {"children", MakeTree(source, symbol.children, positions)}});
        }
    }
    return list;
}

Json MakeInformation(const Source& source, const Symbol& symbol, const std::string& container,
                     const Positions& positions) {
    Json information = {
        {"name", symbol.name},
        {"kind", GetKind(symbol.kind)},
        {"location",
         {{"uri", source.uri}, {"range", positions.MakeRange(source.text, symbol.range)}}}};
    if (!container.empty()) {
        information["containerName"] = container;
    }
    return information;
}

bool HoldsLetters(const std::string& name, const std::string& letters) {
    std::size_t found = 0;
    for (const char c : name) {
        if (found < letters.size() &&
            std::tolower(static_cast<unsigned char>(c)) ==
                std::tolower(static_cast<unsigned char>(letters[found]))) {
            ++found;
        }
    }
    return found == letters.size();
}

void AddFlat(const Source& source, const std::vector<Symbol>& symbols, const std::string& container,
             const std::string& query, const Positions& positions, Json& list) {
    for (const Symbol& symbol : symbols) {
        if (!IsListed(symbol)) {
            continue;
        }
        if (HoldsLetters(symbol.name, query)) {
            list.push_back(MakeInformation(source, symbol, container, positions));
        }
        AddFlat(source, symbol.children, symbol.name, query, positions, list);
    }
}

} // namespace

Json ListSymbols(const Source& source, const Positions& positions, bool isHierarchical) {
    if (isHierarchical) {
        return MakeTree(source, source.outline.symbols, positions);
    }
    Json list = Json::array();
    AddFlat(source, source.outline.symbols, {}, {}, positions, list);
    return list;
}

Json FindSymbols(const std::vector<SourcePtr>& sources, const Positions& positions,
                 const std::string& query) {
    Json list = Json::array();
    for (const SourcePtr& pSource : sources) {
        AddFlat(*pSource, pSource->outline.symbols, {}, query, positions, list);
    }
    return list;
}

} // namespace Tolen::LanguageServer

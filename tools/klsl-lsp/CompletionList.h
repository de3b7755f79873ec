#pragma once

#include "Description.h"
#include "Positions.h"
#include "Resolver.h"

#include <map>
#include <string>

namespace Tolen::LanguageServer {

/// What a client can make of completions.
struct CompletionStyle {
    TextFormat format = TextFormat::Plain;
    bool hasSnippets = false;
};

/// Collects what can be typed at a place. Of several things of one name the first counts; further
/// functions of its name are overloads.
class CompletionList {
public:
    /// Where an item stands among the others.
    enum Rank { kRank_Local, kRank_Class, kRank_Library, kRank_Builtin, kRank_Keyword };

    /// @param range what an item takes the place of
    CompletionList(const Json& range, const CompletionStyle& style)
        : _range(range), _style(style) {}

    void Add(const Meaning& meaning, Rank rank);
    void Add(const Declared& declared, Rank rank) { Add(Meaning{declared, nullptr}, rank); }
    /// @param kind of the protocol's CompletionItemKind
    void AddWord(const std::string& word, int kind, const std::string& detail, Rank rank);

    Json Take();

private:
    Json* _AddItem(const std::string& label, int kind, Rank rank);

    Json _range;
    CompletionStyle _style;
    Json _items = Json::array();
    std::map<std::string, std::size_t> _names; ///< with the item of each
};

} // namespace Tolen::LanguageServer

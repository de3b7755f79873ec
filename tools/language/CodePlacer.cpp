#include "CodePlacer.h"

#include "language/Suggestion.h"
#include "language/TokenQueries.h"

#include <algorithm>
#include <regex>

namespace Tolen::Language {

namespace {

/// The number of types in "vec3, mat4[2]".
std::size_t CountTypes(const std::string& types) {
    return types.empty()
               ? 0
               : static_cast<std::size_t>(std::count(types.begin(), types.end(), ',')) + 1;
}

} // namespace

/// How to find what the messages mean that fit a pattern.
struct CodePlacer::Rule {
    std::regex pattern; ///< its groups are the names
    std::size_t (CodePlacer::*place)(const Names&, const TokenRegion&, PlacedMessage&);
};

const std::vector<CodePlacer::Rule>& CodePlacer::_GetRules() {
    using Placer = CodePlacer;
    static const std::vector<Rule> rules = [] {
        const std::pair<const char*, decltype(Rule::place)> kRules[] = {
            {"^'(\\w+)' is not declared$", &Placer::_PlaceVariable},
            {"^function '(\\w+)' is not declared$", &Placer::_PlaceFunction},
            {"^(?:no function|several functions) '(\\w+)' (?:takes|can take) \\(([^)]*)\\)",
             &Placer::_PlaceCall},
            {"^.* has no member '(\\w+)'$", &Placer::_PlaceMember},
            {"^'(\\w+)' selects nothing of ", &Placer::_PlaceMember},
            {"^cannot assign to '(\\w+)', which is ", &Placer::_PlaceAssigned},
            {"^cannot assign to an element of uniform block '(\\w+)'", &Placer::_PlaceAssigned},
            {"^cannot initialise '(\\w+)' \\(", &Placer::_PlaceDeclared},
            {"^'(\\w+)' is declared twice$", &Placer::_PlaceTwice},
            {"^cannot return .*'(\\w+)' returns ", &Placer::_PlaceReturn},
            {"^'return' needs a value", &Placer::_PlaceReturn},
            {"^(?:Class|Interface) \"(\\w+)\" has no (?:static )?method named \"(\\w+)\"",
             &Placer::_PlaceMethod},
            {"^Calling array input \"(\\w+)\" as single value", &Placer::_PlaceObject},
            {"^Class \"(\\w+)\" cannot be found", &Placer::_PlaceClass},
            {"['\"]([^'\"]+)['\"]", &Placer::_PlaceWord},
        };
        std::vector<Rule> made;
        for (const auto& [pattern, place] : kRules) {
            made.push_back({std::regex(pattern), place});
        }
        return made;
    }();
    return rules;
}

std::optional<PlacedMessage> CodePlacer::Place(const Message& message, const TokenRegion& region) {
    if (region.begin == region.end) {
        return std::nullopt;
    }
    const PreprocessedText& text = *region.pSource->pText;
    PlacedMessage placed;
    placed.text = PutSourceNames(message.text, _index, region);
    const SourceRange first = region.pSource->tokens[region.begin].range;
    placed.place = text.Find({first.begin, first.begin});
    placed.place.columns = {};
    for (const Rule& rule : _GetRules()) {
        std::smatch match;
        if (!std::regex_search(placed.text, match, rule.pattern)) {
            continue;
        }
        const Names names(std::next(match.begin()), match.end());
        const std::size_t token = (this->*rule.place)(names, region, placed);
        if (token != kNone) {
            placed.place = text.Find(region.pSource->tokens[token].range);
        }
        break;
    }
    if (placed.notes.empty()) {
        _AddNotes(message, region, placed);
    }
    return placed;
}

/// The library's own notes, as far as they are about sources.
void CodePlacer::_AddNotes(const Message& message, const TokenRegion& region,
                           PlacedMessage& placed) {
    static const std::regex kName("^'(\\w+)");
    for (const Message& note : message.notes) {
        const std::string text = PutSourceNames(note.text, _index, region);
        std::smatch match;
        if (!std::regex_search(text, match, kName)) {
            continue;
        }
        const std::string name = match[1];
        const Symbol* const variable =
            _scope.FindVariable(*region.pSource, region.GetOffset(), name);
        if (variable != nullptr) {
            placed.AddNote({region.pSource, variable});
            continue;
        }
        for (const IndexedSource* const source : _index.FindSources(note.file)) {
            const TokenRegion place = FindRegion(*source, source->pText->FindLine(note.line));
            const std::size_t token = FindFirst(place, name, [](std::size_t) { return true; });
            if (token != kNone) {
                placed.notes.emplace_back(source->pText->Find(source->tokens[token].range), text);
                break;
            }
        }
    }
}

void CodePlacer::_Suggest(const IndexedSource& source, std::size_t offset, const std::string& name,
                          const std::vector<std::string>& names, PlacedMessage& placed) {
    placed.suggestion = Suggest(name, names);
    if (placed.suggestion.empty()) {
        return;
    }
    if (const Symbol* const variable = _scope.FindVariable(source, offset, placed.suggestion)) {
        placed.AddNote({&source, variable});
    }
}

std::size_t CodePlacer::_PlaceVariable(const Names& names, const TokenRegion& region,
                                       PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(region, names[0], [&queries](std::size_t at) {
        return !queries.IsCall(at) && !queries.IsMember(at) && !queries.IsDeclared(at);
    });
    if (token != kNone) {
        const std::size_t offset = region.pSource->tokens[token].range.begin;
        std::vector<std::string> known = _scope.GetVariables(*region.pSource, offset);
        if (queries.GetText(token + 1) == ".") {
            const auto classes = _scope.GetContainers(Symbol::kKind_Class);
            known.insert(known.end(), classes.begin(), classes.end());
        }
        _Suggest(*region.pSource, offset, names[0], known, placed);
    }
    return token;
}

std::size_t CodePlacer::_PlaceFunction(const Names& names, const TokenRegion& region,
                                       PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(region, names[0], [&queries](std::size_t at) {
        return queries.IsCall(at) && !queries.IsMember(at);
    });
    if (token == kNone) {
        return kNone;
    }
    const std::size_t offset = region.pSource->tokens[token].range.begin;
    placed.suggestion = Suggest(names[0], _scope.GetFunctions(*region.pSource, offset));
    for (const Symbol* const symbol : region.pSource->outline.FindAround(offset)) {
        if (const Symbol* const method = symbol->FindChild(placed.suggestion);
            method != nullptr && method->IsFunction()) {
            placed.AddNote({region.pSource, method});
            return token;
        }
    }
    for (const IndexedSymbol& function : _index.FindFunctions(placed.suggestion)) {
        placed.AddNote(function);
        break;
    }
    return token;
}

std::size_t CodePlacer::_PlaceCall(const Names& names, const TokenRegion& region,
                                   PlacedMessage& placed) {
    constexpr std::size_t kMaxNotes = 3;
    const TokenQueries queries(*region.pSource);
    const std::size_t count = CountTypes(names[1]);
    const std::size_t token = FindOnly(region, names[0], [&](std::size_t at) {
        return queries.IsCall(at) && queries.CountArguments(at) == count;
    });
    if (token == kNone) {
        return kNone;
    }
    // Declarations: of the object's type, of the class that the code is in, or outside of classes.
    const std::size_t offset = region.pSource->tokens[token].range.begin;
    std::vector<IndexedSymbol> containers;
    if (queries.IsMember(token)) {
        std::size_t object = token - 2;
        while (object > region.begin && queries.GetText(object) != "[" &&
               queries.GetText(token - 2) == "]") {
            --object;
        }
        object -= queries.GetText(object) == "[" ? 1 : 0;
        const std::string name(queries.GetText(object));
        const Symbol* const input = _scope.FindVariable(*region.pSource, offset, name);
        containers.push_back(
            _index.FindContainer(input == nullptr ? name : input->type, region.pSource));
    } else {
        for (const Symbol* const symbol : region.pSource->outline.FindAround(offset)) {
            containers.push_back({region.pSource, symbol});
        }
    }
    for (const IndexedSymbol& container : containers) {
        for (std::size_t i = 0;
             container.pSymbol != nullptr && i < container.pSymbol->children.size(); ++i) {
            const Symbol& child = container.pSymbol->children[i];
            if (child.IsFunction() && child.name == names[0] && placed.notes.size() < kMaxNotes) {
                placed.AddNote({container.pSource, &child});
            }
        }
    }
    if (placed.notes.empty() && !queries.IsMember(token)) {
        for (const IndexedSymbol& function : _index.FindFunctions(names[0])) {
            if (placed.notes.size() < kMaxNotes) {
                placed.AddNote(function);
            }
        }
    }
    return token;
}

std::size_t CodePlacer::_PlaceMember(const Names& names, const TokenRegion& region,
                                     PlacedMessage&) {
    const TokenQueries queries(*region.pSource);
    return FindOnly(region, names[0], [&queries](std::size_t at) { return queries.IsMember(at); });
}

std::size_t CodePlacer::_PlaceAssigned(const Names& names, const TokenRegion& region,
                                       PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindOnly(region, names[0], [&queries](std::size_t at) {
        return queries.IsAssigned(at) && !queries.IsMember(at);
    });
    const std::size_t offset =
        token == kNone ? region.GetOffset() : region.pSource->tokens[token].range.begin;
    if (const Symbol* const variable = _scope.FindVariable(*region.pSource, offset, names[0])) {
        placed.AddNote({region.pSource, variable});
    }
    return token;
}

std::size_t CodePlacer::_PlaceDeclared(const Names& names, const TokenRegion& region,
                                       PlacedMessage&) {
    const TokenQueries queries(*region.pSource);
    return FindOnly(region, names[0],
                    [&queries](std::size_t at) { return queries.IsDeclared(at); });
}

std::size_t CodePlacer::_PlaceTwice(const Names& names, const TokenRegion& region,
                                    PlacedMessage& placed) {
    const std::size_t token = _PlaceDeclared(names, region, placed);
    if (token == kNone) {
        return kNone;
    }
    const std::size_t offset = region.pSource->tokens[token].range.begin;
    for (const Symbol* const function : region.pSource->outline.FindAround(offset)) {
        for (const Symbol& child : function->children) {
            if (function->IsFunction() && child.name == names[0] &&
                child.nameRange.begin < offset && child.bodyRange.Contains(offset)) {
                placed.notes.clear();
                placed.AddNote({region.pSource, &child}, "the first one is here");
            }
        }
    }
    return token;
}

std::size_t CodePlacer::_PlaceReturn(const Names&, const TokenRegion& region,
                                     PlacedMessage& placed) {
    const std::size_t token = FindOnly(region, "return", [](std::size_t) { return true; });
    if (token != kNone) {
        const std::size_t offset = region.pSource->tokens[token].range.begin;
        for (const Symbol* const symbol : region.pSource->outline.FindAround(offset)) {
            if (symbol->IsFunction()) {
                placed.AddNote({region.pSource, symbol});
            }
        }
    }
    return token;
}

std::size_t CodePlacer::_PlaceMethod(const Names& names, const TokenRegion& region,
                                     PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(region, names[1], [&queries](std::size_t at) {
        return queries.IsMember(at) && queries.IsCall(at);
    });
    const IndexedSymbol container = _index.FindContainer(names[0], region.pSource);
    if (token != kNone && container.pSymbol != nullptr) {
        std::vector<std::string> methods;
        for (const Symbol& child : container.pSymbol->children) {
            const bool isWanted = container.pSymbol->kind == Symbol::kKind_Interface ||
                                  child.isStatic || placed.text.find("static") == std::string::npos;
            if (child.IsFunction() && isWanted) {
                methods.push_back(child.name);
            }
        }
        placed.suggestion = Suggest(names[1], methods);
        const Symbol* const method =
            placed.suggestion.empty() ? nullptr : container.pSymbol->FindChild(placed.suggestion);
        placed.AddNote(method == nullptr ? container : IndexedSymbol{container.pSource, method});
    }
    return token;
}

std::size_t CodePlacer::_PlaceObject(const Names& names, const TokenRegion& region,
                                     PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(
        region, names[0], [&queries](std::size_t at) { return queries.GetText(at + 1) == "."; });
    const std::size_t offset =
        token == kNone ? region.GetOffset() : region.pSource->tokens[token].range.begin;
    if (const Symbol* const variable = _scope.FindVariable(*region.pSource, offset, names[0])) {
        placed.AddNote({region.pSource, variable});
    }
    return token;
}

std::size_t CodePlacer::_PlaceClass(const Names& names, const TokenRegion& region,
                                    PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(region, names[0], [&queries](std::size_t at) {
        return queries.GetText(at + 1) == "." && !queries.IsMember(at);
    });
    if (token != kNone) {
        // What stands before the dot may also be meant for an input.
        const std::size_t offset = region.pSource->tokens[token].range.begin;
        std::vector<std::string> known = _scope.GetContainers(Symbol::kKind_Class);
        const auto variables = _scope.GetVariables(*region.pSource, offset);
        known.insert(known.end(), variables.begin(), variables.end());
        _Suggest(*region.pSource, offset, names[0], known, placed);
        if (const IndexedSymbol meant = _index.FindContainer(placed.suggestion);
            placed.notes.empty() && meant.pSymbol != nullptr) {
            placed.AddNote(meant);
        }
    }
    return token;
}

std::size_t CodePlacer::_PlaceWord(const Names& names, const TokenRegion& region, PlacedMessage&) {
    return FindOnly(region, names[0], [](std::size_t) { return true; });
}

} // namespace Tolen::Language

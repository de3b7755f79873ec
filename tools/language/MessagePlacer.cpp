#include "MessagePlacer.h"

#include "language/CallCycle.h"
#include "language/Suggestion.h"
#include "language/TokenQueries.h"

#include <algorithm>
#include <regex>

namespace Tolen::Language {

namespace {

/// What messages name in the place of a file when they are about code that has no source.
constexpr const char* kGenerated = "<generated>";

} // namespace

std::optional<PlacedMessage> MessagePlacer::Place(const Message& message, const Context& context) {
    if (std::optional<PlacedMessage> placed = PlaceCallCycle(message.text, _index)) {
        return placed;
    }
    std::vector<const IndexedSource*> sources = _index.FindSources(message.file);
    // Some messages tell the file without its folders; then it is most likely the one in work.
    std::stable_partition(sources.begin(), sources.end(), [&context](const IndexedSource* source) {
        return source->pText->GetPath() == context.file;
    });
    std::optional<PlacedMessage> best;
    for (const IndexedSource* const source : sources) {
        const int line = message.isOfCompiler ? source->pText->FindLine(message.line) : 0;
        if (line == 0) {
            continue;
        }
        const std::optional<PlacedMessage> placed = _code.Place(message, FindRegion(*source, line));
        if (placed && placed->place.columns.GetLength() != 0) {
            return placed;
        }
        best = best ? best : placed;
    }
    if (!best) {
        best = PlaceInMembers(message, context);
    }
    return best ? best : _PlaceInClass(message, context);
}

bool MessagePlacer::MeansSources(const Message& message, const Context& context) {
    return PlaceInMembers(message, context) || PlaceCallCycle(message.text, _index);
}

std::string MessagePlacer::SuggestClass(const std::string& name) const {
    return Suggest(name, _scope.GetContainers(Symbol::kKind_Class));
}

std::optional<PlacedMessage> MessagePlacer::PlaceInMembers(const Message& message,
                                                           const Context& context) {
    for (const IndexedSource* const source : _index.FindSources(context.file)) {
        const IndexedSymbol container = _index.FindContainer(context.className, source);
        if (message.file != kGenerated || container.pSource != source) {
            continue;
        }
        for (const Symbol& child : container.pSymbol->children) {
            if (child.kind != Symbol::kKind_Member || child.value.empty()) {
                continue;
            }
            std::optional<PlacedMessage> placed =
                _code.Place(message, RegionOf(*source, child.range));
            if (placed && placed->place.columns.GetLength() != 0) {
                return placed;
            }
        }
    }
    return std::nullopt;
}

IndexedSymbol MessagePlacer::FindUnusable(const Message& message) {
    static const std::regex kUnusable("^Class \"(\\w+)\" cannot be found|"
                                      "^Could not create shader named \"(\\w+)\"");
    std::smatch match;
    return std::regex_search(message.text, match, kUnusable)
               ? _index.FindContainer(match[1].matched ? match[1] : match[2])
               : IndexedSymbol{};
}

std::vector<PlacedMessage> MessagePlacer::FindLostVariables(const std::string& path) {
    std::vector<PlacedMessage> lost;
    const auto look = [&](const IndexedSource& source, const Symbol& function) {
        for (const Symbol& local : function.children) {
            const std::size_t name = source.FindToken(local.nameRange.begin);
            if (local.kind != Symbol::kKind_Local || name == 0 ||
                source.tokens[name - 1].kind != SourceToken::kKind_Word) {
                continue;
            }
            const bool isContainer = _index.FindContainer(local.type).pSymbol != nullptr;
            PlacedMessage message;
            message.text = (isContainer ? "no local variable can be of type '" + local.type + "'"
                                        : "type '" + local.type + "' is not declared") +
                           ": the declaration is left out";
            message.place = source.pText->Find(source.tokens[name - 1].range);
            message.suggestion =
                isContainer ? std::string() : Suggest(local.type, _scope.GetTypes());
            lost.push_back(std::move(message));
        }
    };
    for (const IndexedSource* const source : _index.FindSources(path)) {
        for (const Symbol& symbol : source->outline.symbols) {
            look(*source, symbol);
            for (const Symbol& child : symbol.children) {
                look(*source, child);
            }
        }
    }
    return lost;
}

std::optional<PlacedMessage> MessagePlacer::_PlaceInClass(const Message& message,
                                                          const Context& context) {
    static const std::regex kClass("(?:[Cc]lass|[Ss]hader|PrototypeShader) \"?(\\w+)\"?");
    IndexedSymbol container;
    const std::vector<const IndexedSource*> sources = _index.FindSources(context.file);
    const IndexedSource* const own = sources.empty() ? nullptr : sources.front();
    std::smatch match;
    if (std::regex_search(message.text, match, kClass)) {
        container = _index.FindContainer(match[1], own);
    }
    if (container.pSymbol == nullptr && !context.className.empty()) {
        container = _index.FindContainer(context.className, own);
    }
    PlacedMessage placed;
    placed.text = message.text;
    if (_PlaceOutput(message,
                     container.pSymbol == nullptr ? IndexedSymbol{own, nullptr} : container,
                     placed)) {
        return placed;
    }
    if (container.pSymbol == nullptr) {
        return std::nullopt;
    }
    if (!_PlaceInHead(message, container, placed) &&
        !_PlaceInVariable(message, container, placed)) {
        placed.place = PlaceOf(container);
    }
    return placed;
}

bool MessagePlacer::_PlaceOutput(const Message& message, const IndexedSymbol& container,
                                 PlacedMessage& placed) {
    static const std::regex kUnknown("accumulate\\(\\) call refers to unknown output '(\\w+)'");
    std::smatch match;
    const bool isUnknown = std::regex_search(message.text, match, kUnknown);
    const bool isMalformed = message.text.starts_with("Malformed accumulate() call");
    if (container.pSource == nullptr || message.text.find("accumulate() call") == kNone) {
        return false;
    }
    const IndexedSource& source = *container.pSource;
    const TokenQueries queries(source);
    const SourceRange all{0, source.pText->GetText().GetText().size()};
    const TokenRegion region =
        RegionOf(source, container.pSymbol == nullptr ? all : container.pSymbol->range);
    if (!isUnknown) {
        const std::size_t call = FindOnly(region, "accumulate", [&](std::size_t at) {
            const std::string_view first = queries.GetText(at + 2);
            const bool isName = source.tokens[at].kind == SourceToken::kKind_Word &&
                                queries.GetText(at + 3) == "," &&
                                first.find_first_of(".+-*/") == std::string_view::npos;
            return queries.IsCall(at) && (isMalformed ? queries.CountArguments(at) != 2 : !isName);
        });
        if (call != kNone) {
            placed.place = source.pText->Find(source.tokens[call].range);
        }
        return call != kNone;
    }
    const std::size_t token = FindFirst(region, match[1], [&queries](std::size_t at) {
        return at >= 2 && queries.GetText(at - 1) == "(" && queries.GetText(at - 2) == "accumulate";
    });
    if (token == kNone) {
        return false;
    }
    const std::size_t offset = source.tokens[token].range.begin;
    placed.place = source.pText->Find(source.tokens[token].range);
    placed.suggestion = Suggest(std::string(match[1]), _scope.GetOutputs(source, offset));
    for (const Symbol* const symbol : source.outline.FindAround(offset)) {
        const Symbol* const output = symbol->FindChild(placed.suggestion);
        if (output != nullptr && output->kind == Symbol::kKind_Output) {
            placed.AddNote({&source, output});
        }
    }
    return true;
}

bool MessagePlacer::_PlaceInHead(const Message& message, const IndexedSymbol& container,
                                 PlacedMessage& placed) {
    static const std::regex kMissing("missing implementation of method \"(\\w+)\" from interface "
                                     "\"(\\w+)\"");
    static const std::regex kInterface("Failed to find interface (\\w+) while");
    std::smatch match;
    if (std::regex_search(message.text, match, kMissing)) {
        placed.place = PlaceOf(container);
        const IndexedSymbol wanted = _index.FindContainer(match[2], container.pSource);
        const Symbol* const method =
            wanted.pSymbol == nullptr ? nullptr : wanted.pSymbol->FindChild(match[1]);
        if (method != nullptr) {
            placed.AddNote({wanted.pSource, method});
        }
        const std::vector<std::string> names = GetNames(*container.pSymbol, Symbol::kKind_Method);
        const Symbol* const own = container.pSymbol->FindChild(match[1]);
        if (own != nullptr) {
            placed.AddNote({container.pSource, own},
                           "'" + own->name + "' has another result or other parameters here");
        } else if (const std::string close = Suggest(std::string(match[1]), names);
                   !close.empty()) {
            placed.AddNote({container.pSource, container.pSymbol->FindChild(close)},
                           "is '" + close + "' meant to be '" + std::string(match[1]) + "'?");
        }
        return true;
    }
    if (!std::regex_search(message.text, match, kInterface)) {
        return false;
    }
    const TokenRegion head = RegionOf(
        *container.pSource, {container.pSymbol->nameRange.end, container.pSymbol->bodyRange.begin});
    const std::size_t token = FindFirst(head, match[1], [](std::size_t) { return true; });
    if (token == kNone) {
        return false;
    }
    placed.place = container.pSource->pText->Find(container.pSource->tokens[token].range);
    placed.suggestion =
        Suggest(std::string(match[1]), _scope.GetContainers(Symbol::kKind_Interface));
    if (const IndexedSymbol meant = _index.FindContainer(placed.suggestion);
        meant.pSymbol != nullptr) {
        placed.AddNote(meant);
    }
    return true;
}

bool MessagePlacer::_PlaceInVariable(const Message& message, const IndexedSymbol& container,
                                     PlacedMessage& placed) {
    static const std::regex kVariable("\"(\\w+)\"|^(\\w+): ");
    static const std::regex kTransformed("Transformed Coords must be declared vec3");
    static const std::regex kCreated("shader named \"(\\w+)\"");

    const IndexedSource& source = *container.pSource;
    std::vector<std::string> known = _scope.GetContainers(Symbol::kKind_Interface);
    const std::vector<std::string> classes = _scope.GetContainers(Symbol::kKind_Class);
    known.insert(known.end(), classes.begin(), classes.end());
    std::smatch created;
    const std::string named =
        std::regex_search(message.text, created, kCreated) ? created[1].str() : std::string();

    for (const Symbol& child : container.pSymbol->children) {
        const TokenRegion region = RegionOf(source, child.range);
        const TokenQueries queries(source);
        std::size_t token = kNone;
        if (child.kind == Symbol::kKind_Coord) {
            if (child.type != "vec3" && !child.signature.starts_with("coord") &&
                std::regex_search(message.text, kTransformed)) {
                placed.place = source.pText->Find(child.nameRange);
                return true;
            }
        } else if (child.kind == Symbol::kKind_Input && !named.empty()) {
            // The class of a default.
            token = FindFirst(region, named, [&](std::size_t at) { return queries.IsCall(at); });
            if (token != kNone) {
                placed.suggestion = Suggest(named, classes);
            }
        } else if (child.kind == Symbol::kKind_Input || child.kind == Symbol::kKind_Member) {
            for (std::sregex_iterator match(message.text.begin(), message.text.end(), kVariable),
                 end;
                 match != end && token == kNone; ++match) {
                if ((*match)[1] == child.name || (*match)[2] == child.name) {
                    token = source.FindToken(child.nameRange.begin);
                }
            }
        }
        if (token == kNone) {
            continue;
        }
        placed.place = source.pText->Find(source.tokens[token].range);
        const bool isKnown = std::find(known.begin(), known.end(), child.type) != known.end() ||
                             source.tokens[source.FindToken(child.nameRange.begin) - 1].kind ==
                                 SourceToken::kKind_Keyword;
        if (!isKnown && named.empty()) {
            const std::size_t type =
                FindFirst(region, child.type, [](std::size_t) { return true; });
            if (type != kNone) {
                placed.place = source.pText->Find(source.tokens[type].range);
                placed.suggestion = Suggest(child.type, known);
            }
        }
        return true;
    }
    return false;
}

} // namespace Tolen::Language

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

/// No token.
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// The one token of a region that has this text and is as @p filter says.
/// @return kNone when there is none, or more than one
template <class Filter>
std::size_t FindOnly(const TokenRegion& region, const std::string& text, Filter filter) {
    std::size_t found = kNone;
    for (std::size_t token = region.begin; token < region.end; ++token) {
        if (region.pSource->GetText(token) == text && filter(token)) {
            if (found != kNone) {
                return kNone;
            }
            found = token;
        }
    }
    return found;
}

/// The first token that has this text and is as @p filter says; where the message means all of
/// them, this is as good as any.
template <class Filter>
std::size_t FindFirst(const TokenRegion& region, const std::string& text, Filter filter) {
    for (std::size_t token = region.begin; token < region.end; ++token) {
        if (region.pSource->GetText(token) == text && filter(token)) {
            return token;
        }
    }
    return kNone;
}

/// The number of types in "vec3, mat4[2]".
std::size_t CountTypes(const std::string& types) {
    return types.empty()
               ? 0
               : static_cast<std::size_t>(std::count(types.begin(), types.end(), ',')) + 1;
}

FilePlace PlaceOf(const IndexedSymbol& symbol) {
    return symbol.pSource->pText->Find(symbol.pSymbol->nameRange);
}

const Symbol* FindChild(const Symbol& container, const std::string& name) {
    for (const Symbol& child : container.children) {
        if (child.name == name) {
            return &child;
        }
    }
    return nullptr;
}

TokenRegion RegionOf(const IndexedSource& source, const SourceRange& range) {
    return {&source, source.FindToken(range.begin), source.FindToken(range.end)};
}

} // namespace

/// How to find what the messages mean that fit a pattern.
struct MessagePlacer::Rule {
    std::regex pattern; ///< its groups are the names
    std::size_t (MessagePlacer::*place)(const Names&, const TokenRegion&, PlacedMessage&);
};

const std::vector<MessagePlacer::Rule>& MessagePlacer::_GetRules() {
    using Placer = MessagePlacer;
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
        const std::optional<PlacedMessage> placed =
            _PlaceInRegion(message, FindRegion(*source, line));
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

std::optional<PlacedMessage> MessagePlacer::_PlaceInRegion(const Message& message,
                                                           const TokenRegion& region) {
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
void MessagePlacer::_AddNotes(const Message& message, const TokenRegion& region,
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
            _AddNote({region.pSource, variable}, placed);
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

void MessagePlacer::_AddNote(const IndexedSymbol& symbol, PlacedMessage& placed,
                             const std::string& text) const {
    placed.notes.emplace_back(
        PlaceOf(symbol), text.empty() ? "'" + symbol.pSymbol->name + "' is declared here" : text);
}

bool MessagePlacer::MeansSources(const Message& message, const Context& context) {
    return PlaceInMembers(message, context) || PlaceCallCycle(message.text, _index);
}

std::string MessagePlacer::SuggestClass(const std::string& name) const {
    return Suggest(name, _scope.GetContainers(Symbol::kKind_Class));
}

void MessagePlacer::_Suggest(const IndexedSource& source, std::size_t offset,
                             const std::string& name, const std::vector<std::string>& names,
                             PlacedMessage& placed) {
    placed.suggestion = Suggest(name, names);
    if (placed.suggestion.empty()) {
        return;
    }
    if (const Symbol* const variable = _scope.FindVariable(source, offset, placed.suggestion)) {
        _AddNote({&source, variable}, placed);
    }
}

// ---- in code

std::size_t MessagePlacer::_PlaceVariable(const Names& names, const TokenRegion& region,
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

std::size_t MessagePlacer::_PlaceFunction(const Names& names, const TokenRegion& region,
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
        if (const Symbol* const method = FindChild(*symbol, placed.suggestion);
            method != nullptr && method->IsFunction()) {
            _AddNote({region.pSource, method}, placed);
            return token;
        }
    }
    for (const IndexedSymbol& function : _index.FindFunctions(placed.suggestion)) {
        _AddNote(function, placed);
        break;
    }
    return token;
}

std::size_t MessagePlacer::_PlaceCall(const Names& names, const TokenRegion& region,
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
                _AddNote({container.pSource, &child}, placed);
            }
        }
    }
    if (placed.notes.empty() && !queries.IsMember(token)) {
        for (const IndexedSymbol& function : _index.FindFunctions(names[0])) {
            if (placed.notes.size() < kMaxNotes) {
                _AddNote(function, placed);
            }
        }
    }
    return token;
}

std::size_t MessagePlacer::_PlaceMember(const Names& names, const TokenRegion& region,
                                        PlacedMessage&) {
    const TokenQueries queries(*region.pSource);
    return FindOnly(region, names[0], [&queries](std::size_t at) { return queries.IsMember(at); });
}

std::size_t MessagePlacer::_PlaceAssigned(const Names& names, const TokenRegion& region,
                                          PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindOnly(region, names[0], [&queries](std::size_t at) {
        return queries.IsAssigned(at) && !queries.IsMember(at);
    });
    const std::size_t offset =
        token == kNone ? region.GetOffset() : region.pSource->tokens[token].range.begin;
    if (const Symbol* const variable = _scope.FindVariable(*region.pSource, offset, names[0])) {
        _AddNote({region.pSource, variable}, placed);
    }
    return token;
}

std::size_t MessagePlacer::_PlaceDeclared(const Names& names, const TokenRegion& region,
                                          PlacedMessage&) {
    const TokenQueries queries(*region.pSource);
    return FindOnly(region, names[0],
                    [&queries](std::size_t at) { return queries.IsDeclared(at); });
}

std::size_t MessagePlacer::_PlaceTwice(const Names& names, const TokenRegion& region,
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
                _AddNote({region.pSource, &child}, placed, "the first one is here");
            }
        }
    }
    return token;
}

std::size_t MessagePlacer::_PlaceReturn(const Names&, const TokenRegion& region,
                                        PlacedMessage& placed) {
    const std::size_t token = FindOnly(region, "return", [](std::size_t) { return true; });
    if (token != kNone) {
        const std::size_t offset = region.pSource->tokens[token].range.begin;
        for (const Symbol* const symbol : region.pSource->outline.FindAround(offset)) {
            if (symbol->IsFunction()) {
                _AddNote({region.pSource, symbol}, placed);
            }
        }
    }
    return token;
}

std::size_t MessagePlacer::_PlaceMethod(const Names& names, const TokenRegion& region,
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
            placed.suggestion.empty() ? nullptr : FindChild(*container.pSymbol, placed.suggestion);
        _AddNote(method == nullptr ? container : IndexedSymbol{container.pSource, method}, placed);
    }
    return token;
}

std::size_t MessagePlacer::_PlaceObject(const Names& names, const TokenRegion& region,
                                        PlacedMessage& placed) {
    const TokenQueries queries(*region.pSource);
    const std::size_t token = FindFirst(
        region, names[0], [&queries](std::size_t at) { return queries.GetText(at + 1) == "."; });
    const std::size_t offset =
        token == kNone ? region.GetOffset() : region.pSource->tokens[token].range.begin;
    if (const Symbol* const variable = _scope.FindVariable(*region.pSource, offset, names[0])) {
        _AddNote({region.pSource, variable}, placed);
    }
    return token;
}

std::size_t MessagePlacer::_PlaceClass(const Names& names, const TokenRegion& region,
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
            _AddNote(meant, placed);
        }
    }
    return token;
}

std::size_t MessagePlacer::_PlaceWord(const Names& names, const TokenRegion& region,
                                      PlacedMessage&) {
    return FindOnly(region, names[0], [](std::size_t) { return true; });
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
                _PlaceInRegion(message, RegionOf(*source, child.range));
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

// ---- in declarations

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
        const Symbol* const output = FindChild(*symbol, placed.suggestion);
        if (output != nullptr && output->kind == Symbol::kKind_Output) {
            _AddNote({&source, output}, placed);
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
            wanted.pSymbol == nullptr ? nullptr : FindChild(*wanted.pSymbol, match[1]);
        if (method != nullptr) {
            _AddNote({wanted.pSource, method}, placed);
        }
        const std::vector<std::string> names = GetNames(*container.pSymbol, Symbol::kKind_Method);
        const Symbol* const own = FindChild(*container.pSymbol, match[1]);
        if (own != nullptr) {
            _AddNote({container.pSource, own}, placed,
                     "'" + own->name + "' has another result or other parameters here");
        } else if (const std::string close = Suggest(std::string(match[1]), names);
                   !close.empty()) {
            _AddNote({container.pSource, FindChild(*container.pSymbol, close)}, placed,
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
        _AddNote(meant, placed);
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

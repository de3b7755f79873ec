#include "CallCycle.h"

#include "language/GeneratedNames.h"

#include <algorithm>
#include <string_view>
#include <tuple>
#include <vector>

namespace Tolen::Language {

namespace {

constexpr std::string_view kBegin = "functions call one another in a cycle: ";
constexpr std::string_view kCalls = " calls ";

/// A function of a cycle in its source.
struct Function {
    IndexedSymbol symbol;
    std::string name; ///< with the class, such as "Rings.At"
};

/// The signatures between quotes, such as "Rings_At_k1(vec2)".
/// @param isWhole whether they are all of the cycle; of long ones only the first are told
std::vector<std::string> ReadSignatures(const std::string& text, bool& isWhole) {
    std::vector<std::string> signatures;
    isWhole = true;
    std::size_t at = text.find(kBegin);
    for (at = at == std::string::npos ? at : at + kBegin.size();
         at < text.size() && text[at] == '\'';) {
        const std::size_t end = text.find('\'', at + 1);
        if (end == std::string::npos) {
            break;
        }
        signatures.push_back(text.substr(at + 1, end - at - 1));
        at = end + 1;
        if (text.compare(at, kCalls.size(), kCalls) == 0) {
            at += kCalls.size();
            isWhole = at < text.size() && text[at] == '\'';
        }
    }
    return signatures;
}

/// The types of a function's parameters in brackets, as a signature ends.
std::string TypesOf(const Symbol& function) {
    std::string types;
    for (const Symbol& child : function.children) {
        if (child.kind == Symbol::kKind_Parameter) {
            types += (types.empty() ? "" : ", ") + child.type + child.brackets;
        }
    }
    return "(" + types + ")";
}

/// Every function that may be meant, those with the parameters of the signature first.
std::vector<Function> FindFunctions(const std::string& signature, SourceIndex& index) {
    const std::size_t bracket = signature.find('(');
    const std::string name = signature.substr(0, bracket);
    const std::string ofClass = WithoutKeys(name);
    std::vector<Function> found;
    for (const IndexedSymbol& function : index.FindFunctions(name)) {
        found.push_back({function, name});
    }
    for (const IndexedSource* const source : index.GetSources()) {
        for (const Symbol& container : source->outline.symbols) {
            if (container.kind != Symbol::kKind_Class ||
                !ofClass.starts_with(container.name + "_")) {
                continue;
            }
            for (const Symbol& method : container.children) {
                if (method.kind == Symbol::kKind_Method &&
                    ofClass == container.name + "_" + method.name) {
                    found.push_back({{source, &method}, container.name + "." + method.name});
                }
            }
        }
    }
    if (bracket != std::string::npos) {
        std::stable_partition(found.begin(), found.end(), [&](const Function& function) {
            return TypesOf(*function.symbol.pSymbol) == signature.substr(bracket);
        });
    }
    return found;
}

} // namespace

std::optional<PlacedMessage> PlaceCallCycle(const std::string& text, SourceIndex& index) {
    std::vector<Function> cycle;
    bool isWhole = false;
    for (const std::string& signature : ReadSignatures(text, isWhole)) {
        const std::vector<Function> meant = FindFunctions(signature, index);
        if (meant.empty()) {
            return std::nullopt;
        }
        cycle.push_back(meant.front());
    }
    if (cycle.size() < 2) {
        return std::nullopt;
    }
    const auto byPlace = [](const Function& a, const Function& b) {
        const auto key = [](const FilePlace& place) {
            return std::tuple(place.file, place.line, place.columns.begin);
        };
        return key(PlaceOf(a.symbol)) < key(PlaceOf(b.symbol));
    };
    if (isWhole) {
        cycle.pop_back(); // the first again
        std::rotate(cycle.begin(), std::min_element(cycle.begin(), cycle.end(), byPlace),
                    cycle.end());
    }

    PlacedMessage placed;
    placed.text = kBegin;
    placed.place = PlaceOf(cycle.front().symbol);
    for (const Function& function : cycle) {
        placed.text += "'" + function.name + "'" + std::string(kCalls);
        if (&function != &cycle.front()) {
            placed.AddNote(function.symbol, "'" + function.name + "' is declared here");
        }
    }
    placed.text += (isWhole ? "'" : "..., which calls '") + cycle.front().name + "'";
    return placed;
}

} // namespace Tolen::Language

#include "language/ParameterTable.h"

#include "language/SourceToken.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>

namespace Tolen::Language {

namespace {

constexpr const char* kNameTitle = "parameter";

bool IsValue(const Symbol& symbol) {
    return symbol.kind == Symbol::kKind_Input || symbol.kind == Symbol::kKind_Coord;
}

/// "1, 0.5, -2" as numbers; nothing when it is something else.
std::optional<std::vector<double>> ReadNumbers(const std::string& list) {
    std::vector<double> numbers;
    for (const std::string& part : SplitList(list)) {
        char* end = nullptr;
        numbers.push_back(std::strtod(part.c_str(), &end));
        if (part.empty() || *end != '\0' ||
            !std::isdigit(static_cast<unsigned char>(part.back()))) {
            return std::nullopt;
        }
    }
    return numbers;
}

/// The numbers of a value in the source, each constructor of one kind spelled out once: one number
/// of `vec3(1.0)` stands for three.
std::vector<double> GetNumbers(const std::string& value) {
    std::vector<double> numbers;
    double sign = 1.0;
    for (const SourceToken& token : Tokenize(value)) {
        const std::string text = value.substr(token.range.begin, token.range.GetLength());
        if (token.kind == SourceToken::kKind_Number) {
            numbers.push_back(sign * std::strtod(text.c_str(), nullptr));
        }
        sign = text == "-" ? -1.0 : 1.0;
    }
    return numbers;
}

bool AreAll(const std::vector<double>& numbers, double value) {
    return std::all_of(numbers.begin(), numbers.end(),
                       [value](double number) { return number == value; });
}

/// Whether two lists mean the same where one number may stand for any count of it.
bool AreSameNumbers(const std::vector<double>& a, const std::vector<double>& b) {
    return a == b || (!a.empty() && !b.empty() && AreAll(a, a.front()) && AreAll(b, a.front()));
}

/// What stands in front of the first bracket: the class of a default.
std::string GetConstructor(const std::string& value) {
    return value.substr(0, value.find_first_of("([ "));
}

bool IsTruth(const std::string& text) {
    return text == "true" || text == "false";
}

/// The item of a list that is told of one of several names, where there are as many; otherwise all.
std::string ItemOf(const std::string& told, std::size_t index, std::size_t count) {
    const std::vector<std::string> items = SplitList(told);
    return count > 1 && items.size() == count ? items[index] : told;
}

bool IsVector(const Symbol& value) {
    return value.type.find("vec") != std::string::npos;
}

} // namespace

bool IsSameDefault(const Symbol& value, const std::string& told) {
    if (told.empty()) {
        return true;
    }
    const std::string constructor = GetConstructor(value.value);
    if (const std::optional<std::vector<double>> numbers = ReadNumbers(told)) {
        const std::vector<double> own = GetNumbers(value.value);
        // Without a default in the source there are zeros.
        return value.value.empty() ? AreAll(*numbers, 0.0) : AreSameNumbers(own, *numbers);
    }
    if (IsTruth(told)) {
        return value.value.empty() ? told == "false" : value.value == told;
    }
    const bool isName = std::all_of(told.begin(), told.end(), [](char character) {
        return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
    });
    const bool isOfClass =
        !value.type.empty() && value.type.front() >= 'A' && value.type.front() <= 'Z';
    return !isName || !isOfClass || told == constructor || (told == "none" && constructor.empty());
}

ParameterTable::ParameterTable(const Outline& outline, const std::vector<HeadBlock>& blocks)
    : _outline(outline) {
    for (const HeadBlock& block : blocks) {
        if (block.IsTable() && !block.header.empty() && block.header.front() == kNameTitle) {
            for (const HeadBlock::Row& row : block.rows) {
                _AddRow(block, row);
            }
        }
    }
}

void ParameterTable::_AddRow(const HeadBlock& block, const HeadBlock::Row& row) {
    const std::vector<std::string> names = SplitList(row.cells.front());
    std::string className = block.className;
    for (std::size_t i = 0; i < names.size(); ++i) {
        std::string name = names[i];
        const std::size_t dot = name.find('.');
        if (dot != std::string::npos) {
            className = name.substr(0, dot);
            name.erase(0, dot + 1);
        }
        Entry& entry = _entries.emplace_back();
        entry.pBlock = &block;
        entry.pRow = &row;
        entry.className = className;
        entry.name = name;
        entry.type = block.GetCell(row, "type");
        entry.meaning = block.GetCell(row, "range");
        entry.meaning += entry.meaning.empty() ? block.GetCell(row, "meaning") : "";
        entry.allValues = block.GetCell(row, "default");
        entry.value = ItemOf(entry.allValues, i, names.size());
    }
}

bool ParameterTable::IsAboutInputs(const HeadBlock& block) const {
    bool hasEntry = false;
    for (const Entry& entry : _entries) {
        if (entry.pBlock == &block) {
            hasEntry = true;
            if (_FindValues(entry).empty()) {
                return false;
            }
        }
    }
    return hasEntry;
}

std::vector<const Symbol*> ParameterTable::_FindValues(const Entry& entry) const {
    std::vector<const Symbol*> values;
    for (const Symbol& symbol : _outline.symbols) {
        if (symbol.IsContainer() && (entry.className.empty() || entry.className == symbol.name)) {
            for (const Symbol& child : symbol.children) {
                if (IsValue(child) && child.name == entry.name) {
                    values.push_back(&child);
                }
            }
        }
    }
    return values;
}

/// A list may hold a number for each name, or those of a vector that all names have.
bool ParameterTable::_HasDefault(const Entry& entry, const Symbol& value) {
    return IsSameDefault(value, entry.value) ||
           (IsVector(value) && IsSameDefault(value, entry.allValues));
}

std::string ParameterTable::FindMeaning(const Symbol& owner, const Symbol& value) const {
    const Entry* best = nullptr;
    int bestFit = -1;
    for (const Entry& entry : _entries) {
        const bool isOfType = entry.type.empty() || entry.type == value.type + value.brackets ||
                              value.kind == Symbol::kKind_Coord;
        if (entry.name != value.name || !isOfType) {
            continue;
        }
        // A class that is "the same, and" something has the rows of another one.
        const int fit = (entry.className == owner.name ? 4
                         : entry.className.empty()     ? 2
                                                       : 0) +
                        (_HasDefault(entry, value) ? 1 : 0);
        if (fit > bestFit) {
            bestFit = fit;
            best = &entry;
        }
    }
    return best == nullptr ? std::string() : best->meaning;
}

std::vector<Diagnostic> ParameterTable::Compare(const std::string& file,
                                                const SourceText& text) const {
    std::vector<Diagnostic> differences;
    int line = 1;
    for (const Entry& entry : _entries) {
        // Rows come in the order of the lines.
        for (int next = line; next <= text.CountLines(); ++next) {
            if (text.GetLine(next).find(entry.pRow->line) != std::string_view::npos) {
                line = next;
                break;
            }
        }
        const auto tell = [&](const std::string& message) {
            Diagnostic difference;
            difference.severity = Diagnostic::kSeverity_Warning;
            difference.file = file;
            difference.line = line;
            difference.text = message;
            differences.push_back(std::move(difference));
        };
        const std::string name =
            (entry.className.empty() ? "" : entry.className + ".") + entry.name;
        const std::vector<const Symbol*> values = _FindValues(entry);
        if (values.empty()) {
            tell("no class has an input '" + name + "'");
            continue;
        }
        const auto isOfType = [&](const Symbol* value) {
            return value->kind == Symbol::kKind_Coord || entry.type.empty() ||
                   entry.type == value->type + value->brackets;
        };
        const auto fits = [&](const Symbol* value) {
            return isOfType(value) && _HasDefault(entry, *value);
        };
        const Symbol& first = *values.front();
        if (std::none_of(values.begin(), values.end(), isOfType)) {
            tell("the type of '" + name + "' is " + first.type + first.brackets + ", not " +
                 entry.type);
        } else if (std::none_of(values.begin(), values.end(), fits)) {
            tell("the default of '" + name + "' is " +
                 (first.value.empty() ? "missing" : first.value) + ", not " + entry.value);
        }
    }
    return differences;
}

} // namespace Tolen::Language

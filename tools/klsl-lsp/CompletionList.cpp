#include "CompletionList.h"

#include <utility>

namespace Tolen::LanguageServer {

using Language::Builtin;
using Language::Symbol;

namespace {

/// The numbers of the protocol's CompletionItemKind.
int GetKind(const Symbol& symbol) {
    switch (symbol.kind) {
    case Symbol::kKind_Define:
        return 21; // Constant
    case Symbol::kKind_Class:
        return 7; // Class
    case Symbol::kKind_Interface:
        return 8; // Interface
    case Symbol::kKind_Function:
        return 3; // Function
    case Symbol::kKind_Method:
        return 2; // Method
    case Symbol::kKind_Input:
        return 10; // Property
    case Symbol::kKind_Member:
    case Symbol::kKind_Coord:
    case Symbol::kKind_Output:
        return 5; // Field
    case Symbol::kKind_Parameter:
    case Symbol::kKind_Local:
        return 6; // Variable
    }
    return 6;
}

int GetKind(const Builtin& builtin) {
    switch (builtin.kind) {
    case Builtin::kKind_Keyword:
        return 14; // Keyword
    case Builtin::kKind_Type:
        return 22; // Struct
    case Builtin::kKind_Function:
        return 3; // Function
    case Builtin::kKind_Variable:
        return 6; // Variable
    }
    return 6;
}

bool IsFunction(const Meaning& meaning) {
    return meaning.pBuiltin != nullptr ? meaning.pBuiltin->kind == Builtin::kKind_Function
                                       : meaning.declared.pSymbol->IsFunction();
}

/// Whether the cursor has something to do between the brackets of a call.
bool HasArguments(const Meaning& meaning) {
    return meaning.pBuiltin != nullptr ? meaning.pBuiltin->signatures.empty() ||
                                             !meaning.pBuiltin->signatures.front().ends_with("()")
                                       : CountParameters(*meaning.declared.pSymbol) > 0;
}

} // namespace

Json* CompletionList::_AddItem(const std::string& label, int kind, Rank rank) {
    if (label.empty() || !_names.emplace(label, _items.size()).second) {
        return nullptr;
    }
    _items.push_back({{"label", label},
                      {"kind", kind},
                      {"sortText", std::to_string(static_cast<int>(rank)) + label},
                      {"textEdit", {{"range", _range}, {"newText", label}}}});
    return &_items.back();
}

void CompletionList::Add(const Meaning& meaning, Rank rank) {
    const bool isBuiltin = meaning.pBuiltin != nullptr;
    Json* const item =
        isBuiltin
            ? _AddItem(meaning.pBuiltin->name, GetKind(*meaning.pBuiltin), rank)
            : _AddItem(meaning.declared.pSymbol->name, GetKind(*meaning.declared.pSymbol), rank);
    if (item == nullptr) {
        return;
    }
    Json& added = *item;
    added["detail"] = GetSignature(meaning);
    const std::string documentation = DescribeBriefly(meaning, _style.format);
    if (!documentation.empty()) {
        added["documentation"] = MakeMarkup(documentation, _style.format);
    }
    if (_style.hasSnippets && IsFunction(meaning)) {
        added["insertTextFormat"] = 2;
        added["textEdit"]["newText"] =
            added["label"].get<std::string>() + (HasArguments(meaning) ? "($0)" : "()$0");
    }
}

void CompletionList::AddWord(const std::string& word, int kind, const std::string& detail,
                             Rank rank) {
    if (Json* const item = _AddItem(word, kind, rank); item != nullptr && !detail.empty()) {
        (*item)["detail"] = detail;
    }
}

Json CompletionList::Take() {
    return {{"isIncomplete", false}, {"items", std::move(_items)}};
}

} // namespace Tolen::LanguageServer

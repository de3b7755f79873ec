#include "Description.h"

#include "Uri.h"

#include <filesystem>

namespace Tolen::LanguageServer {

using Language::Builtin;
using Language::Symbol;

namespace {

std::string Quote(const std::string& code, TextFormat format) {
    return format == TextFormat::Markdown ? "`" + code + "`" : code;
}

std::string Fence(const std::string& code, TextFormat format) {
    return format == TextFormat::Markdown ? "```klsl\n" + code + "\n```" : code;
}

void AddParagraph(std::string& text, const std::string& paragraph) {
    if (!paragraph.empty()) {
        text += (text.empty() ? "" : "\n\n") + paragraph;
    }
}

const char* GetKindName(Symbol::Kind kind) {
    switch (kind) {
    case Symbol::kKind_Define:
        return "Define";
    case Symbol::kKind_Class:
        return "Class";
    case Symbol::kKind_Interface:
        return "Interface";
    case Symbol::kKind_Function:
        return "Function";
    case Symbol::kKind_Method:
        return "Method";
    case Symbol::kKind_Input:
        return "Input";
    case Symbol::kKind_Member:
        return "Member";
    case Symbol::kKind_Coord:
        return "Coord";
    case Symbol::kKind_Output:
        return "Output";
    case Symbol::kKind_Parameter:
        return "Parameter";
    case Symbol::kKind_Local:
        return "Local variable";
    }
    return "";
}

/// "Input of class `Wood`. Default: `0.5`."
std::string DescribeRole(const Declared& declared, TextFormat format) {
    const Symbol& symbol = *declared.pSymbol;
    std::string text = GetKindName(symbol.kind);
    if (declared.pOwner != nullptr) {
        text += declared.pOwner->kind == Symbol::kKind_Class       ? " of class "
                : declared.pOwner->kind == Symbol::kKind_Interface ? " of interface "
                                                                   : " of ";
        text += Quote(declared.pOwner->name, format);
    } else if (GetPathOfUri(declared.pSource->uri).has_value()) {
        const std::string file = std::filesystem::path(declared.pSource->path).filename().string();
        text += " in " + Quote(file, format);
    }
    text += ".";
    if (symbol.kind == Symbol::kKind_Input) {
        text += symbol.value.empty() ? " No default."
                                     : " Default: " + Quote(symbol.value, format) + ".";
    }
    return text;
}

std::string DescribeStages(const Builtin& builtin) {
    return builtin.stages.empty() ? "" : "Stages: " + builtin.stages + ".";
}

/// The signatures of a built-in, each on a line.
std::string MakeCode(const Builtin& builtin) {
    std::string code;
    for (const std::string& signature : builtin.signatures) {
        code += (code.empty() ? "" : "\n") + signature;
    }
    return code.empty() ? builtin.name : code;
}

/// The signature of a declaration; an interface is nothing but its methods, which come along.
std::string MakeCode(const Symbol& symbol) {
    if (symbol.kind != Symbol::kKind_Interface) {
        return symbol.signature;
    }
    std::string code = symbol.signature + "\n{\n";
    for (const Symbol& method : symbol.children) {
        code += "    " + method.signature + ";\n";
    }
    return code + "}";
}

std::string MakeCode(const Meaning& meaning) {
    return meaning.pBuiltin != nullptr ? MakeCode(*meaning.pBuiltin)
                                       : MakeCode(*meaning.declared.pSymbol);
}

} // namespace

std::string GetSignature(const Meaning& meaning) {
    if (meaning.pBuiltin == nullptr) {
        return meaning.declared.pSymbol->signature;
    }
    const Builtin& builtin = *meaning.pBuiltin;
    if (builtin.signatures.empty()) {
        return builtin.name;
    }
    const std::size_t others = builtin.signatures.size() - 1;
    return builtin.signatures.front() + (others == 0 ? "" : " (+" + std::to_string(others) + ")");
}

std::string DescribeBriefly(const Meaning& meaning, TextFormat format) {
    std::string text;
    if (meaning.pBuiltin != nullptr) {
        AddParagraph(text, meaning.pBuiltin->documentation);
        AddParagraph(text, DescribeStages(*meaning.pBuiltin));
    } else {
        AddParagraph(text, DescribeRole(meaning.declared, format));
        AddParagraph(text, meaning.declared.pSymbol->comment);
    }
    return text;
}

std::string Describe(const std::vector<Meaning>& meanings, TextFormat format) {
    std::string text;
    for (const Meaning& meaning : meanings) {
        AddParagraph(text, Fence(MakeCode(meaning), format));
        AddParagraph(text, DescribeBriefly(meaning, format));
    }
    return text;
}

Json MakeMarkup(const std::string& text, TextFormat format) {
    return {{"kind", format == TextFormat::Markdown ? "markdown" : "plaintext"}, {"value", text}};
}

} // namespace Tolen::LanguageServer

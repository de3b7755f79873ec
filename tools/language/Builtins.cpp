#include "language/Builtins.h"

#include "language/BuiltinTexts.h"
#include "language/Spacing.h"

#include "KslKeywords.h"

#include "compiler/BuiltinTable.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <string_view>

namespace Tolen::Language {

namespace {

using namespace OpenKL;

/// "vec" for vec2 to vec4, and so on.
std::string WithoutSize(const Type& type) {
    std::string name = type.ToString();
    if ((type.IsVector() || type.IsMatrix()) && !name.empty()) {
        name.pop_back();
    }
    return name;
}

/// The names of @p count parameters.
std::vector<std::string_view> GetParameterNames(std::string_view text, std::size_t count) {
    while (true) {
        const std::size_t end = std::min(text.find('|'), text.size());
        std::vector<std::string_view> names;
        for (std::string_view rest = text.substr(0, end); !rest.empty();) {
            const std::size_t blank = std::min(rest.find(' '), rest.size());
            names.push_back(rest.substr(0, blank));
            rest.remove_prefix(std::min(blank + 1, rest.size()));
        }
        if (names.size() >= count || end == text.size()) {
            names.resize(count);
            return names;
        }
        text.remove_prefix(end + 1);
    }
}

std::string Describe(const std::string& name, const BuiltinSignature& signature,
                     std::string_view parameters, bool hasSizes) {
    const auto spell = [hasSizes](const Type& type) {
        return hasSizes ? type.ToString() : WithoutSize(type);
    };
    const std::vector<std::string_view> names =
        GetParameterNames(parameters, signature.parameters.size());
    std::string text = spell(signature.returnType) + " " + name + "(";
    for (std::size_t i = 0; i < names.size(); ++i) {
        const ParameterShape& parameter = signature.parameters[i];
        text += i == 0 ? "" : ", ";
        text += parameter.direction == kDirection_Out ? "out " : "";
        text += spell(parameter.type);
        text += (names[i].empty() ? "" : " ") + std::string(names[i]);
    }
    return text + ")";
}

/// Signatures that are there for each size of vectors or matrices count as one.
std::vector<std::string> FoldSignatures(const std::string& name, std::string_view parameters) {
    constexpr int kSizes = 3;
    const auto signatures = FindBuiltinFunction(name);
    std::map<std::string, int> counts;
    for (const BuiltinSignature& signature : signatures) {
        ++counts[Describe(name, signature, parameters, false)];
    }
    std::vector<std::string> folded;
    for (const BuiltinSignature& signature : signatures) {
        std::string text = Describe(name, signature, parameters, false);
        if (counts[text] < kSizes) {
            text = Describe(name, signature, parameters, true);
        }
        if (std::find(folded.begin(), folded.end(), text) == folded.end()) {
            folded.push_back(std::move(text));
        }
    }
    return folded;
}

class BuiltinList {
public:
    std::vector<Builtin> Make() {
        _AddKeywords();
        _AddFunctions();
        _AddVariables();
        std::sort(_builtins.begin(), _builtins.end(),
                  [](const Builtin& a, const Builtin& b) { return a.name < b.name; });
        return std::move(_builtins);
    }

private:
    Builtin& _Add(Builtin::Kind kind, std::string_view name) {
        Builtin& builtin = _builtins.emplace_back();
        builtin.kind = kind;
        builtin.name = name;
        if (const BuiltinText* text = FindBuiltinText(name)) {
            builtin.documentation = text->documentation;
        }
        return builtin;
    }

    void _AddKeywords() {
        for (const Effects::KslKeyword& keyword : Effects::Detail::kKeywords) {
            if (!keyword.text.empty()) {
                _Add(IsTypeKeyword(keyword.text) ? Builtin::kKind_Type : Builtin::kKind_Keyword,
                     keyword.text);
            }
        }
    }

    void _AddFunctions() {
        for (int i = 0; i < kFunction_Count; ++i) {
            const auto function = static_cast<BuiltinFunction>(i);
            const std::string name(BuiltinFunctionToString(function));
            const BuiltinText* const text = FindBuiltinText(name);
            Builtin& builtin = _Add(Builtin::kKind_Function, name);
            builtin.signatures =
                FoldSignatures(name, text == nullptr ? std::string_view() : text->parameters);
            builtin.stages = _GetStages(function);
        }
    }

    void _AddVariables() {
        for (int i = 0; i < kVariable_Count; ++i) {
            const auto variable = static_cast<BuiltinVariable>(i);
            const std::string name(BuiltinVariableToString(variable));
            const Type type = GetBuiltinVariableType(variable, kStage_Frame);
            Builtin& builtin = _Add(Builtin::kKind_Variable, name);
            builtin.signatures = {type.ToString() + " " + name};
            builtin.stages = _GetStages(variable);
        }
        // The library adds these two to the texts that it makes.
        for (const auto& [name, stages] :
             {std::pair("Normal", "ray"), std::pair("o_color", "frame, ray and prefix")}) {
            Builtin& builtin = _Add(Builtin::kKind_Variable, name);
            builtin.signatures = {std::string("vec3 ") + name};
            builtin.stages = stages;
        }
    }

    template <class Name>
    static std::string _GetStages(Name name) {
        const bool isEverywhere =
            IsAvailable(name, kStage_Ray) && IsAvailable(name, kStage_Frame) &&
            IsAvailable(name, kStage_Prefix) && IsAvailable(name, kStage_Vertex);
        return isEverywhere ? std::string() : GetStages(name);
    }

    std::vector<Builtin> _builtins;
};

} // namespace

const std::vector<Builtin>& GetBuiltins() {
    static const std::vector<Builtin> kBuiltins = BuiltinList().Make();
    return kBuiltins;
}

const Builtin* FindBuiltin(const std::string& name) {
    const std::vector<Builtin>& builtins = GetBuiltins();
    const auto found = std::lower_bound(
        builtins.begin(), builtins.end(), name,
        [](const Builtin& builtin, const std::string& wanted) { return builtin.name < wanted; });
    return found == builtins.end() || found->name != name ? nullptr : &*found;
}

} // namespace Tolen::Language

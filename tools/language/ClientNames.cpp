#include "ClientNames.h"

#include <algorithm>
#include <regex>

namespace Tolen::Language {

using namespace Effects;

namespace {

/// @return kType_Void when there is no such type of values
TypeSpecifier FindType(const std::string& name) {
    for (int value = kType_Float; value <= kType_Primitive; ++value) {
        const auto type = static_cast<TypeSpecifier>(value);
        if (name == TypeSpecifierToString(type)) {
            return type;
        }
    }
    return kType_Void;
}

/// No variable needs more; the search for the pattern goes as deep as the text is long.
constexpr std::size_t kMaxLength = 2000;

} // namespace

bool ReadClientVariable(const std::string& text, ClientVariable& variable) {
    static const std::regex kVariable("\\s*(\\w+)\\s+([A-Za-z_]\\w*)\\s*");
    std::smatch match;
    if (text.size() > kMaxLength || !std::regex_match(text, match, kVariable) ||
        FindType(match[1]) == kType_Void) {
        return false;
    }
    variable = {FindType(match[1]), match[2]};
    return true;
}

void Put(std::vector<ClientVariable>& variables, const ClientVariable& variable) {
    const auto same = [&variable](const ClientVariable& other) {
        return other.name == variable.name;
    };
    const auto found = std::find_if(variables.begin(), variables.end(), same);
    if (found == variables.end()) {
        variables.push_back(variable);
    } else {
        *found = variable;
    }
}

std::vector<Builtin> MakeBuiltins(const ClientNames& names) {
    std::vector<Builtin> builtins;
    const auto add = [&builtins](const std::vector<ClientVariable>& variables,
                                 const char* documentation) {
        for (const ClientVariable& variable : variables) {
            builtins.push_back({Builtin::kKind_Variable,
                                variable.name,
                                {TypeSpecifierToString(variable.type) + (" " + variable.name)},
                                {},
                                documentation});
        }
    };
    add(names.rayAttributes,
        "A ray attribute of the renderer: each ray carries a value of its own.");
    add(names.globals, "A global variable of the renderer: all shaders share it.");
    return builtins;
}

} // namespace Tolen::Language

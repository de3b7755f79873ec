#include "CodeActions.h"

namespace Tolen::LanguageServer {

Json MakeCodeActions(const std::string& uri, const Json& diagnostics) {
    Json actions = Json::array();
    for (const Json& diagnostic : diagnostics) {
        const Json* const suggestion = FindMember(diagnostic, "/data/suggestion");
        const Json* const range = FindMember(diagnostic, "/range");
        if (suggestion == nullptr || !suggestion->is_string() || range == nullptr) {
            continue;
        }
        const std::string& name = suggestion->get_ref<const std::string&>();
        const Json edit = {{"range", *range}, {"newText", name}};
        actions.push_back({{"title", "Change to '" + name + "'"},
                           {"kind", "quickfix"},
                           {"isPreferred", true},
                           {"diagnostics", Json::array({diagnostic})},
                           {"edit", {{"changes", {{uri, Json::array({edit})}}}}}});
    }
    return actions;
}

} // namespace Tolen::LanguageServer

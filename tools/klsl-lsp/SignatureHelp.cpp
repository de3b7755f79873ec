#include "SignatureHelp.h"

#include "Call.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace Tolen::LanguageServer {

namespace {

/// The parts between the brackets of a signature; labels of the protocol.
Json MakeParameters(std::string_view signature) {
    Json parameters = Json::array();
    const std::size_t opening = signature.find('(');
    const std::size_t closing = signature.rfind(')');
    if (opening == std::string_view::npos || closing == std::string_view::npos ||
        closing < opening) {
        return parameters;
    }
    std::string_view rest = signature.substr(opening + 1, closing - opening - 1);
    while (!rest.empty()) {
        const std::size_t comma = std::min(rest.find(','), rest.size());
        const std::string_view part = rest.substr(0, comma);
        const std::size_t begin = std::min(part.find_first_not_of(' '), part.size());
        parameters.push_back({{"label", part.substr(begin)}});
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return parameters;
}

void AddSignature(const std::string& signature, const std::string& documentation, TextFormat format,
                  Json& signatures) {
    Json added = {{"label", signature}, {"parameters", MakeParameters(signature)}};
    if (!documentation.empty()) {
        added["documentation"] = MakeMarkup(documentation, format);
    }
    signatures.push_back(std::move(added));
}

/// The first signature that has the argument in work.
std::size_t FindFitting(const Json& signatures, std::size_t argument) {
    for (std::size_t index = 0; index < signatures.size(); ++index) {
        if (signatures[index]["parameters"].size() > argument) {
            return index;
        }
    }
    return 0;
}

} // namespace

Json MakeSignatureHelp(const Resolver& resolver, TextFormat format, std::size_t offset) {
    const Source& source = resolver.GetSource();
    const std::optional<Call> call =
        source.IsInComment(offset) ? std::nullopt : FindCallAround(source, offset);
    if (!call.has_value()) {
        return nullptr;
    }
    Json signatures = Json::array();
    for (const Meaning& meaning : resolver.ResolveCalled(source.tokens[call->name].range)) {
        const std::string documentation = DescribeBriefly(meaning, format);
        if (meaning.pBuiltin != nullptr) {
            for (const std::string& signature : meaning.pBuiltin->signatures) {
                AddSignature(signature, documentation, format, signatures);
            }
        } else if (meaning.declared.pSymbol->IsFunction()) {
            AddSignature(meaning.declared.pSymbol->signature, documentation, format, signatures);
        }
    }
    if (signatures.empty()) {
        return nullptr;
    }
    const std::size_t active = FindFitting(signatures, call->argument);
    return {{"signatures", std::move(signatures)},
            {"activeSignature", active},
            {"activeParameter", call->argument}};
}

} // namespace Tolen::LanguageServer

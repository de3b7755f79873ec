#include "GeneratedNames.h"

#include "language/RootText.h"

#include <regex>
#include <set>

namespace Tolen::Language {

namespace {

/// The one member of the classes around a region that stands in it; empty when there are several.
std::string FindMember(const TokenRegion& region) {
    std::set<std::string> names;
    for (const Symbol* const symbol : region.pSource->outline.FindAround(region.GetOffset())) {
        for (const Symbol& child : symbol->children) {
            for (std::size_t i = region.begin; i < region.end; ++i) {
                if (child.kind == Symbol::kKind_Member &&
                    region.pSource->GetText(i) == child.name) {
                    names.insert(child.name);
                }
            }
        }
    }
    return names.size() == 1 ? *names.begin() : std::string();
}

/// What is left of "Dots_At" without the class that declares it.
std::string WithoutClass(const std::string& name, bool isOfShader, SourceIndex& index) {
    for (const IndexedSource* const source : index.GetSources()) {
        for (const Symbol& container : source->outline.symbols) {
            if (!container.IsContainer() || !name.starts_with(container.name + "_")) {
                continue;
            }
            const std::string rest = name.substr(container.name.size() + 1);
            for (const Symbol& child : container.children) {
                if (child.name == rest && (isOfShader || child.isStatic)) {
                    return rest;
                }
            }
        }
    }
    return name;
}

} // namespace

std::string WithoutKeys(const std::string& name) {
    static const std::regex kKeys("(_k[0-9a-f]+)+$");
    return std::regex_replace(name, kKeys, "");
}

std::string PutSourceNames(const std::string& text, SourceIndex& index, const TokenRegion& region) {
    static const std::regex kQuoted("'([A-Za-z_]\\w*)");
    static const std::regex kArrayCall("ParameterInterfaceArray_k[0-9a-f]+_(\\w+)");
    static const std::regex kMember("PrototypeMemberValue(Single|Array)");

    std::string named;
    bool isArrayCall = false;
    auto rest = text.cbegin();
    for (std::sregex_iterator quoted(text.begin(), text.end(), kQuoted), end; quoted != end;
         ++quoted) {
        const std::string name = (*quoted)[1];
        std::string source = WithoutKeys(name);
        const bool isOfShader = source != name;
        if (source.starts_with(kMadeImplementation)) {
            source.erase(0, kMadeImplementation.size());
        }
        std::smatch match;
        if (std::regex_match(name, match, kArrayCall)) {
            source = match[1];
            isArrayCall = true;
        } else if (std::regex_match(source, kMember)) {
            const std::string member = FindMember(region);
            source = member.empty() ? name : member;
        } else {
            source = WithoutClass(source, isOfShader, index);
        }
        named.append(rest, (*quoted)[1].first);
        named += source;
        rest = (*quoted)[1].second;
    }
    named.append(rest, text.cend());
    // The index comes first in the generated call.
    return isArrayCall ? std::regex_replace(named, std::regex("\\(int(, )?"), "(") : named;
}

} // namespace Tolen::Language

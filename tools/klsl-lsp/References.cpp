#include "References.h"

namespace Tolen::LanguageServer {

using Language::SourceToken;

namespace {

/// Whether @p name is a name that a declaration can have.
bool IsName(const std::string& name) {
    const std::vector<SourceToken> tokens = Language::Tokenize(name);
    return tokens.size() == 1 && tokens.front().kind == SourceToken::kKind_Word &&
           tokens.front().range.GetLength() == name.size();
}

} // namespace

References::References(const Workspace& workspace, const std::vector<SourcePtr>& sources,
                       const Resolver& resolver, const Positions& positions, std::size_t offset)
    : _positions(positions), _resolver(resolver), _word(resolver.GetSource().FindWord(offset)) {
    if (_word.has_value()) {
        _occurrences.emplace(workspace, sources, resolver, *_word);
    }
}

Json References::List(bool withDeclarations) const {
    Json list = Json::array();
    if (_occurrences.has_value()) {
        for (const Occurrence& occurrence : _occurrences->GetList()) {
            if (withDeclarations || !occurrence.isDeclaration) {
                const Source& source = *occurrence.pSource;
                list.push_back({{"uri", source.uri},
                                {"range", _positions.MakeRange(source.text, occurrence.range)}});
            }
        }
    }
    return list;
}

Json References::ListHighlights() const {
    Json list = Json::array();
    if (_occurrences.has_value()) {
        for (const Occurrence& occurrence : _occurrences->GetList()) {
            if (occurrence.pSource->path == _resolver.GetSource().path) {
                list.push_back(
                    {{"range", _positions.MakeRange(occurrence.pSource->text, occurrence.range)}});
            }
        }
    }
    return list;
}

Json References::PrepareRename() const {
    if (!_occurrences.has_value() || _occurrences->GetList().empty()) {
        return nullptr;
    }
    return _positions.MakeRange(_resolver.GetSource().text, *_word);
}

Json References::Rename(const std::string& name) const {
    if (!_occurrences.has_value() || _occurrences->GetList().empty()) {
        throw RequestError(ErrorCode::RequestFailed, "there is no name that can change");
    }
    if (!IsName(name)) {
        throw RequestError(ErrorCode::InvalidParams, "\"" + name + "\" is no name");
    }
    if (_occurrences->IsTaken(name)) {
        throw RequestError(ErrorCode::RequestFailed, "\"" + name + "\" is taken");
    }
    Json changes = Json::object();
    for (const Occurrence& occurrence : _occurrences->GetList()) {
        const Source& source = *occurrence.pSource;
        Json& edits = changes.emplace(source.uri, Json::array()).first.value();
        edits.push_back(
            {{"range", _positions.MakeRange(source.text, occurrence.range)}, {"newText", name}});
    }
    return {{"changes", std::move(changes)}};
}

} // namespace Tolen::LanguageServer

#include "Documents.h"

#include "Uri.h"

#include <cctype>
#include <utility>

namespace Tolen::LanguageServer {

using Language::SourceRange;
using Language::SourceText;

namespace {

/// A path for a text without a file: told from others, and without signs that would confuse
/// messages which name it.
std::string MakeUpPath(const std::string& uri) {
    std::string path = "/";
    for (const char c : uri) {
        path += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
    }
    return path + ".klsl";
}

} // namespace

void Documents::Open(const std::string& uri, std::int64_t version, const std::string& text) {
    _documents[uri] = {GetPathOfUri(uri).value_or(MakeUpPath(uri)), version, SourceText(text), {}};
}

void Documents::Change(const std::string& uri, std::int64_t version, const Json& changes) {
    const auto found = _documents.find(uri);
    if (found == _documents.end()) {
        throw RequestError(ErrorCode::InvalidParams, "\"" + uri + "\" is not open");
    }
    Document& document = found->second;
    document.version = version;
    document.pSource = nullptr;
    for (const Json& change : changes) {
        std::string text = GetString(change, "text");
        if (change.contains("range")) {
            const SourceRange range = _positions.GetRange(document.text, change["range"]);
            std::string changed = document.text.GetText();
            changed.replace(range.begin, range.GetLength(), text);
            text = std::move(changed);
        }
        document.text = SourceText(std::move(text));
    }
}

void Documents::Close(const std::string& uri) {
    _documents.erase(uri);
}

SourcePtr Documents::Find(const std::string& uri) const {
    const auto found = _documents.find(uri);
    return found == _documents.end() ? nullptr : _GetSource(uri, found->second);
}

std::vector<SourcePtr> Documents::GetAll() const {
    std::vector<SourcePtr> sources;
    for (const auto& [uri, document] : _documents) {
        sources.push_back(_GetSource(uri, document));
    }
    return sources;
}

SourcePtr Documents::_GetSource(const std::string& uri, const Document& document) const {
    if (document.pSource == nullptr) {
        document.pSource = std::make_shared<Source>(uri, document.path, document.text.GetText());
    }
    return document.pSource;
}

} // namespace Tolen::LanguageServer

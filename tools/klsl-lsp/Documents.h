#pragma once

#include "Positions.h"
#include "Source.h"

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// The texts that the client has open, which stand for their files.
class Documents {
public:
    /// @param positions borrowed
    explicit Documents(const Positions& positions) : _positions(positions) {}

    void Open(const std::string& uri, std::int64_t version, const std::string& text);
    /// Applies changes one after the other; one without a range replaces the whole text.
    /// @param changes as the protocol has them
    /// @throw RequestError when the document isn't open or a change is none
    void Change(const std::string& uri, std::int64_t version, const Json& changes);
    void Close(const std::string& uri);

    bool IsOpen(const std::string& uri) const { return _documents.contains(uri); }
    /// @return null when it isn't open
    SourcePtr Find(const std::string& uri) const;
    /// The version of an open document.
    std::int64_t GetVersion(const std::string& uri) const { return _documents.at(uri).version; }
    /// All of them by URI.
    std::vector<SourcePtr> GetAll() const;

private:
    struct Document {
        std::string path;
        std::int64_t version = 0;
        Language::SourceText text;
        mutable SourcePtr pSource; ///< made when somebody asks, null after a change
    };

    SourcePtr _GetSource(const std::string& uri, const Document& document) const;

    const Positions& _positions;
    std::map<std::string, Document> _documents;
};

} // namespace Tolen::LanguageServer

#pragma once

#include "Occurrences.h"
#include "Positions.h"
#include "Resolver.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// What is asked about a name and all others that mean the same, in a document of a workspace.
class References {
public:
    /// All borrowed. @param offset of the name
    References(const Workspace& workspace, const std::vector<SourcePtr>& sources,
               const Resolver& resolver, const Positions& positions, std::size_t offset);

    /// Their places, as "textDocument/references" answers.
    Json List(bool withDeclarations) const;
    /// Those in the document itself, as "textDocument/documentHighlight" answers.
    Json ListHighlights() const;
    /// The range of the name, as "textDocument/prepareRename" answers; null when it can't change.
    Json PrepareRename() const;
    /// The edits that give all of them another name, as "textDocument/rename" answers.
    /// @throw RequestError when @p name is none, or stands for something else
    Json Rename(const std::string& name) const;

private:
    const Positions& _positions;
    const Resolver& _resolver;
    std::optional<Language::SourceRange> _word;
    std::optional<Occurrences> _occurrences;
};

} // namespace Tolen::LanguageServer

#pragma once

#include "Documents.h"
#include "Source.h"

#include "language/ClientNames.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Tolen::LanguageServer {

/// The KLSL files of the client's folders, and those beside open documents that are in none of
/// them. Where a document is open its text stands for the file.
class Workspace {
public:
    static constexpr std::size_t kLimitFiles = 2048;
    static constexpr int kLimitDepth = 16;               ///< of folders inside each other
    static constexpr std::size_t kLimitEntries = 100000; ///< that are looked at in all folders
    static constexpr std::uintmax_t kLimitFileSize = std::uintmax_t{4} << 20; ///< in bytes

    /// @param documents borrowed
    explicit Workspace(const Documents& documents) : _documents(documents) {}

    void AddFolder(const std::string& path) { _folders.insert(path); }
    void RemoveFolder(const std::string& path) { _folders.erase(path); }
    void SetSearchPaths(std::vector<std::string> paths) { _searchPaths = std::move(paths); }

    void SetClientNames(const Language::ClientNames& names) {
        _clientVariables = MakeBuiltins(names);
    }
    /// The variables that a client adds to the language.
    const std::vector<Language::Builtin>& GetClientVariables() const { return _clientVariables; }

    /// Looks anew which files there are and reads those that have changed.
    void Scan();

    /// All sources by path.
    std::vector<SourcePtr> GetSources() const;
    /// An open document or a file of the workspace. @return null when it is neither
    SourcePtr FindUri(const std::string& uri) const;
    /// The file that a directive names; read from disk when the workspace lacks it.
    SourcePtr FindInclusion(const std::string& name) const;
    /// The file at an absolute path. @return null when it can't be read
    SourcePtr FindFile(const std::string& path) const;

    /// The folders where included files are looked up, in this order: those that the client names,
    /// its folders, and those of open documents.
    std::vector<std::string> GetSearchPaths() const;

private:
    struct File {
        std::filesystem::file_time_type time;
        std::uintmax_t size = 0;
        SourcePtr pSource;
    };

    void _ScanFolder(const std::string& folder, int limitDepth, std::set<std::string>& found) const;
    bool _IsInFolders(const std::string& path) const;
    SourcePtr _Read(const std::string& path) const;

    const Documents& _documents;
    std::set<std::string> _folders;
    std::vector<std::string> _searchPaths;
    std::vector<Language::Builtin> _clientVariables; ///< as SetClientNames has them
    std::set<std::string> _paths;               ///< of the last scan
    mutable std::map<std::string, File> _files; ///< as they were read last, also others
};

} // namespace Tolen::LanguageServer

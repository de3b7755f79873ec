#include "Workspace.h"

#include "Uri.h"

#include <algorithm>
#include <fstream>
#include <sstream>
#include <system_error>

namespace Tolen::LanguageServer {

namespace fs = std::filesystem;

namespace {

bool IsInFolder(const std::string& path, const std::string& folder) {
    return path.starts_with(folder.ends_with('/') ? folder : folder + "/");
}

} // namespace

void Workspace::Scan() {
    std::set<std::string> found;
    for (const std::string& folder : _folders) {
        _ScanFolder(folder, kLimitDepth, found);
    }
    for (const SourcePtr& pSource : _documents.GetAll()) {
        if (GetPathOfUri(pSource->uri).has_value() && !_IsInFolders(pSource->path)) {
            _ScanFolder(fs::path(pSource->path).parent_path().string(), 0, found);
        }
    }
    _paths = std::move(found);
    std::erase_if(_files, [this](const auto& file) { return !_paths.contains(file.first); });
}

void Workspace::_ScanFolder(const std::string& folder, int limitDepth,
                            std::set<std::string>& found) const {
    // Links to folders are not followed, so that there are no circles.
    std::error_code error;
    fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied,
                                           error);
    std::size_t count = 0;
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (++count > kLimitEntries || found.size() == kLimitFiles) {
            return;
        }
        const fs::path& path = entry->path();
        std::error_code unknown;
        if (entry->is_directory(unknown)) {
            if (entry.depth() >= limitDepth || path.filename().string().starts_with('.')) {
                entry.disable_recursion_pending();
            }
        } else if (path.extension() == ".klsl" && entry->is_regular_file(unknown)) {
            found.insert(path.lexically_normal().string());
        }
    }
}

bool Workspace::_IsInFolders(const std::string& path) const {
    return std::any_of(_folders.begin(), _folders.end(),
                       [&path](const std::string& folder) { return IsInFolder(path, folder); });
}

std::vector<SourcePtr> Workspace::GetSources() const {
    std::map<std::string, SourcePtr> sources;
    for (const SourcePtr& pSource : _documents.GetAll()) {
        sources.emplace(pSource->path, pSource);
    }
    for (const std::string& path : _paths) {
        if (!sources.contains(path)) {
            if (SourcePtr pSource = _Read(path)) {
                sources.emplace(path, std::move(pSource));
            }
        }
    }
    std::vector<SourcePtr> list;
    list.reserve(sources.size());
    for (auto& [path, pSource] : sources) {
        list.push_back(std::move(pSource));
    }
    return list;
}

SourcePtr Workspace::FindUri(const std::string& uri) const {
    if (SourcePtr pDocument = _documents.Find(uri)) {
        return pDocument;
    }
    const std::optional<std::string> path = GetPathOfUri(uri);
    return path.has_value() && _paths.contains(*path) ? FindFile(*path) : nullptr;
}

SourcePtr Workspace::FindFile(const std::string& path) const {
    for (const SourcePtr& pSource : _documents.GetAll()) {
        if (pSource->path == path) {
            return pSource;
        }
    }
    return _Read(path);
}

SourcePtr Workspace::FindInclusion(const std::string& name) const {
    if (name.empty()) {
        return nullptr;
    }
    for (const std::string& folder : GetSearchPaths()) {
        if (SourcePtr pSource = FindFile((fs::path(folder) / name).lexically_normal().string())) {
            return pSource;
        }
    }
    return nullptr;
}

std::vector<std::string> Workspace::GetSearchPaths() const {
    std::vector<std::string> paths = _searchPaths;
    paths.insert(paths.end(), _folders.begin(), _folders.end());
    for (const SourcePtr& pSource : _documents.GetAll()) {
        std::string folder = fs::path(pSource->path).parent_path().string();
        if (GetPathOfUri(pSource->uri).has_value() &&
            std::find(paths.begin(), paths.end(), folder) == paths.end()) {
            paths.push_back(std::move(folder));
        }
    }
    return paths;
}

SourcePtr Workspace::_Read(const std::string& path) const {
    std::error_code error;
    const bool isFile = fs::is_regular_file(path, error);
    const std::uintmax_t size = isFile ? fs::file_size(path, error) : 0;
    const fs::file_time_type time =
        isFile ? fs::last_write_time(path, error) : fs::file_time_type();
    if (!isFile || error || size > kLimitFileSize) {
        return nullptr;
    }
    File& file = _files[path];
    if (file.pSource == nullptr || file.time != time || file.size != size) {
        std::ifstream stream(path, std::ios::binary);
        std::ostringstream text;
        text << stream.rdbuf();
        if (!stream) {
            _files.erase(path);
            return nullptr;
        }
        file = {time, size, std::make_shared<Source>(MakeUri(path), path, text.str())};
    }
    return file.pSource;
}

} // namespace Tolen::LanguageServer

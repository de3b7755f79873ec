#include "SourceAssets.h"

#include <filesystem>
#include <utility>

namespace Tolen::Language {

struct SourceAssets::Source {
    std::string path;
    std::string text;
    IAsset::Status status = IAsset::kStatus_NotFound;
};

class SourceAssets::Asset : public IAsset {
public:
    explicit Asset(const Source& source) : _source(source) {}

    Path GetPath() const override { return _source.path; }
    const char* GetText() const override { return _source.text.c_str(); }

private:
    const Source& _source;
};

std::string FullPath(const std::string& file) {
    std::error_code error;
    const std::filesystem::path full =
        std::filesystem::weakly_canonical(std::filesystem::absolute(file, error), error);
    return Path(error ? file : full.string()).AsString();
}

SourceAssets::SourceAssets(const std::vector<std::string>& searchPaths, const SourceTexts& texts)
    : _searchPaths(searchPaths), _texts(texts) {}

SourceAssets::~SourceAssets() = default;

IAsset* SourceAssets::AcquireAsset(Path path, int mode, IAsset::Status& status) {
    if (mode != 1) {
        status = IAsset::kStatus_BadMode;
        return nullptr;
    }
    const Source* const source = _Find(path, status);
    if (source == nullptr) {
        return nullptr;
    }
    auto asset = std::make_unique<Asset>(*source);
    IAsset* const key = asset.get();
    _acquired.emplace(key, std::move(asset));
    return key;
}

void SourceAssets::ReleaseAsset(IAsset* asset) {
    _acquired.erase(asset);
}

const std::string* SourceAssets::Find(const std::string& file, std::string& fullPath) {
    IAsset::Status status = IAsset::kStatus_NotFound;
    const Source* const source = _Find(file, status);
    if (source == nullptr) {
        return nullptr;
    }
    fullPath = source->path;
    return &source->text;
}

const SourceAssets::Source* SourceAssets::_Find(const Path& path, IAsset::Status& status) {
    status = IAsset::kStatus_NotFound;
    if (path.IsEmpty()) {
        return nullptr;
    }
    std::vector<Path> candidates{path};
    if (!path.IsAbsolute()) {
        for (const std::string& folder : _searchPaths) {
            candidates.push_back(Path(folder) / path);
        }
    }
    for (const Path& candidate : candidates) {
        const Source& source = _Read(FullPath(candidate.AsString()));
        if (source.status == IAsset::kStatus_Ok) {
            status = IAsset::kStatus_Ok;
            return &source;
        }
        // The first thing that was there but no use says more than that the rest was missing.
        if (status == IAsset::kStatus_NotFound) {
            status = source.status;
        }
    }
    return nullptr;
}

const SourceAssets::Source& SourceAssets::_Read(const std::string& fullPath) {
    _asked.insert(fullPath);
    std::unique_ptr<Source>& source = _sources[fullPath];
    if (source != nullptr) {
        return *source;
    }
    source = std::make_unique<Source>();
    source->path = fullPath;
    const auto text = _texts.find(fullPath);
    if (text != _texts.end()) {
        source->text = text->second;
        source->status = IAsset::kStatus_Ok;
        return *source;
    }
    MgrAssets files;
    if (IAsset* const asset = files.AcquireAsset(fullPath, 1, source->status)) {
        source->text = asset->GetText();
        files.ReleaseAsset(asset);
    }
    return *source;
}

} // namespace Tolen::Language

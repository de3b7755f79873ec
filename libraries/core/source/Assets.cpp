#include "TolenCore/Assets.h"

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace Tolen {

namespace {

constexpr int kMode_Text = 1;
constexpr std::uintmax_t kMaxBytes = std::uintmax_t{256} << 20;

std::atomic<IMgrAssets*>& ActiveAssets() {
    static MgrAssets initial;
    static std::atomic<IMgrAssets*> active{&initial};
    return active;
}

/// Reads the file @p path and puts its one full name in place of @p path.
IAsset::Status ReadFile(Path& path, std::string& text) {
    std::error_code error;
    const std::filesystem::path file(path.AsString());
    const std::filesystem::file_status status = std::filesystem::status(file, error);
    if (!std::filesystem::exists(status)) {
        return status.type() == std::filesystem::file_type::not_found ? IAsset::kStatus_NotFound
                                                                      : IAsset::kStatus_Unreadable;
    }
    if (!std::filesystem::is_regular_file(status)) {
        return IAsset::kStatus_NotAFile;
    }
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    if (error) {
        return IAsset::kStatus_Unreadable;
    }
    if (size > kMaxBytes) {
        return IAsset::kStatus_TooLarge;
    }
    std::ifstream stream(file, std::ios::binary);
    text.resize(static_cast<std::size_t>(size));
    if (!stream || !stream.read(text.data(), static_cast<std::streamsize>(text.size()))) {
        return IAsset::kStatus_Unreadable;
    }
    const std::filesystem::path full = std::filesystem::canonical(file, error);
    if (!error) {
        path = Path(full.string());
    }
    return IAsset::kStatus_Ok;
}

} // namespace

class MgrAssets::Asset : public IAsset {
public:
    Asset(Path path, std::string text) : _path(std::move(path)), _text(std::move(text)) {}

    Path GetPath() const override { return _path; }
    const char* GetText() const override { return _text.c_str(); }

private:
    Path _path;
    std::string _text;
};

const char* IAsset::StatusString(const Status& status) {
    switch (status) {
    case kStatus_Ok:
        return "ok";
    case kStatus_NotFound:
        return "not found";
    case kStatus_NotAFile:
        return "not a file";
    case kStatus_Unreadable:
        return "not readable";
    case kStatus_BadMode:
        return "unknown mode";
    case kStatus_TooLarge:
        return "over the limit of 256 MiB";
    }
    return "unknown status";
}

MgrAssets::MgrAssets() = default;

MgrAssets::~MgrAssets() = default;

void MgrAssets::AddSearchPath(const Path& folder) { _searchPaths.push_back(folder); }

void MgrAssets::ClearSearchPaths() { _searchPaths.clear(); }

void MgrAssets::AddMemoryAsset(const Path& path, const std::string& text) { _memory[path] = text; }

void MgrAssets::RemoveMemoryAsset(const Path& path) { _memory.erase(path); }

IAsset* MgrAssets::AcquireAsset(Path path, int mode, IAsset::Status& status) {
    if (mode != kMode_Text) {
        status = IAsset::kStatus_BadMode;
        return nullptr;
    }
    status = IAsset::kStatus_NotFound;
    if (path.IsEmpty()) {
        return nullptr;
    }
    const auto memory = _memory.find(path);
    if (memory != _memory.end()) {
        status = IAsset::kStatus_Ok;
        return _Acquire(path, memory->second);
    }

    std::vector<Path> candidates{path};
    if (!path.IsAbsolute()) {
        for (const Path& folder : _searchPaths) {
            candidates.push_back(folder / path);
        }
    }
    for (Path& candidate : candidates) {
        std::string text;
        const IAsset::Status found = ReadFile(candidate, text);
        if (found == IAsset::kStatus_Ok) {
            status = found;
            return _Acquire(candidate, std::move(text));
        }
        // The first thing that was there but no use says more than that the rest was missing.
        if (status == IAsset::kStatus_NotFound) {
            status = found;
        }
    }
    return nullptr;
}

void MgrAssets::ReleaseAsset(IAsset* asset) { _acquired.erase(asset); }

IAsset* MgrAssets::_Acquire(const Path& path, std::string text) {
    auto asset = std::make_unique<Asset>(path, std::move(text));
    IAsset* const key = asset.get();
    _acquired.emplace(key, std::move(asset));
    return key;
}

IMgrAssets* GetMgrAssets() { return ActiveAssets(); }

IMgrAssets* SetMgrAssets(IMgrAssets* assets) { return ActiveAssets().exchange(assets); }

} // namespace Tolen

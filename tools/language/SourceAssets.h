#pragma once

#include "TolenCore/Assets.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Language {

/// The texts that stand for files, by their full paths.
using SourceTexts = std::map<std::string, std::string>;

/// The one name of a file, absolute and without links as far as it exists.
std::string FullPath(const std::string& file);

/// The files of one check, each of which is read once, so that all who ask see the same text.
/// Knows what it was asked for, also what it did not find.
class SourceAssets : public IMgrAssets {
public:
    /// @param texts borrowed; stand for the files of their paths
    SourceAssets(const std::vector<std::string>& searchPaths, const SourceTexts& texts);
    ~SourceAssets() override;

    IAsset* AcquireAsset(Path path, int mode, IAsset::Status& status) override;
    void ReleaseAsset(IAsset* asset) override;

    /// The text of a file as AcquireAsset would give it. @param fullPath set when there is one
    /// @return null when there is none; stays
    const std::string* Find(const std::string& file, std::string& fullPath);

    /// The full paths of all files that were looked for, there or not.
    const std::set<std::string>& GetAsked() const { return _asked; }

private:
    struct Source;
    class Asset;

    const Source* _Find(const Path& path, IAsset::Status& status);
    const Source& _Read(const std::string& fullPath);

    std::vector<std::string> _searchPaths;
    const SourceTexts& _texts;
    std::map<std::string, std::unique_ptr<Source>> _sources;
    std::map<IAsset*, std::unique_ptr<Asset>> _acquired;
    std::set<std::string> _asked;
};

} // namespace Tolen::Language

#pragma once

#include "TolenCore/Export.h"
#include "TolenCore/Path.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Tolen {

/// Something that was read for the client: a file, or a text that stands for one.
class TOLEN_EXPORT IAsset {
public:
    /// How a request for an asset has ended.
    enum Status {
        kStatus_Ok,         ///< there is an asset
        kStatus_NotFound,   ///< no such file in any search path
        kStatus_NotAFile,   ///< a folder or a device
        kStatus_Unreadable, ///< there, but it can't be read
        kStatus_BadMode,    ///< a mode that the assets don't know
        kStatus_TooLarge,   ///< a file of more than 256 MiB
    };

    virtual ~IAsset() = default;

    /// The full path under which the asset was found.
    virtual Path GetPath() const = 0;
    /// The content with a zero behind it; null when there is none. Lives until the release.
    virtual const char* GetText() const = 0;

    /// A short text for a person, such as "not found". Never null.
    static const char* StatusString(const Status& status);
};

/// Gives out assets by path. Mode 1 reads a text; no other mode is known.
class TOLEN_EXPORT IMgrAssets {
public:
    virtual ~IMgrAssets() = default;

    /// Reads what @p path names.
    /// @param path   a file, or whatever the implementation finds by its name
    /// @param mode   1 for a text
    /// @param status says why when there is no asset
    /// @return owned by the manager until ReleaseAsset; null on failure
    virtual IAsset* AcquireAsset(Path path, int mode, IAsset::Status& status) = 0;

    /// Gives an asset back; null and strangers are passed over.
    virtual void ReleaseAsset(IAsset* asset) = 0;
};

/// Assets over memory and files. A path is looked up among the texts in memory first, then as a
/// file as it stands, then, when it is relative, in each search path in the order they were added.
/// The path of a file asset is absolute, so that one file has one name. Not for use from several
/// threads at once.
class TOLEN_EXPORT MgrAssets : public IMgrAssets {
public:
    MgrAssets();
    ~MgrAssets() override;

    /// Appends a folder to those in which relative paths are looked up. Nothing checks that it
    /// exists.
    void AddSearchPath(const Path& folder);
    /// Forgets the added folders; the working folder still serves relative paths.
    void ClearSearchPaths();

    /// Lets @p text stand for the file @p path; copied. A second call replaces the text.
    void AddMemoryAsset(const Path& path, const std::string& text);
    /// Takes a text away, if there is one; assets that were given out keep it.
    void RemoveMemoryAsset(const Path& path);

    /// @cond
    IAsset* AcquireAsset(Path path, int mode, IAsset::Status& status) override;
    void ReleaseAsset(IAsset* asset) override;
    /// @endcond

    /// Assets given out and not yet released.
    std::size_t GetCountAcquired() const { return _acquired.size(); }

private:
    class Asset;

    IAsset* _Acquire(const Path& path, std::string text);

    std::vector<Path> _searchPaths;
    std::map<Path, std::string> _memory;
    std::map<IAsset*, std::unique_ptr<Asset>> _acquired;
};

/// The assets of the process. There from the start: files, searched from the working folder.
TOLEN_EXPORT IMgrAssets* GetMgrAssets();

/// Replaces the assets of the process. @param assets borrowed; null is legal and finds nothing
/// @return the one before
TOLEN_EXPORT IMgrAssets* SetMgrAssets(IMgrAssets* assets);

} // namespace Tolen

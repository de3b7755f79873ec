#pragma once

#include <memory>
#include <set>
#include <string>

namespace Tolen::Language {

/// Waits for changes of files, also of such that are not there yet, or no more. It watches the
/// folders, since editors put a new file in the place of the old one. What is written in a burst
/// counts as one change.
class FileWatch {
public:
    FileWatch();
    ~FileWatch();
    FileWatch(const FileWatch&) = delete;
    FileWatch& operator=(const FileWatch&) = delete;

    /// Watches these files, and no others any more. What changes behind this call is told by the
    /// next Wait. @param files full paths @return whether there was one that wasn't watched before
    bool Watch(const std::set<std::string>& files);

    /// Waits until a file has changed and none changes any more for a short while.
    /// @return false when End was called
    bool Wait();

    /// Ends a Wait, now or when it comes. May be called from a signal handler.
    void End();

private:
    class Platform;
    std::unique_ptr<Platform> _pPlatform;
};

} // namespace Tolen::Language

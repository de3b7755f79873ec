// Watching files by inotify. Polling would read the times of all files of all libraries five times
// a second, and still be slower to notice.

#include "FileWatch.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <map>
#include <poll.h>
#include <stdexcept>
#include <sys/eventfd.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace Tolen::Language {

namespace {

/// How long it has to be quiet behind a change.
constexpr int kQuietMilliseconds = 50;

constexpr std::uint32_t kEvents = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE |
                                  IN_CREATE | IN_DELETE_SELF | IN_MOVE_SELF;

/// A descriptor that is closed at the end.
class Descriptor {
public:
    explicit Descriptor(int number) : _number(number) {
        if (number < 0) {
            throw std::runtime_error(std::string("files can't be watched: ") +
                                     std::strerror(errno));
        }
    }
    ~Descriptor() { close(_number); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Get() const { return _number; }

private:
    int _number;
};

/// The folder itself or, when it isn't there, the nearest one around it that is.
std::string FindFolder(std::filesystem::path folder) {
    std::error_code ignored;
    while (!std::filesystem::is_directory(folder, ignored) && folder.has_relative_path()) {
        folder = folder.parent_path();
    }
    return folder.string();
}

} // namespace

class FileWatch::Platform {
public:
    Platform()
        : _events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)),
          _end(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

    bool Watch(const std::set<std::string>& files) {
        const bool isMore =
            !std::includes(_files.begin(), _files.end(), files.begin(), files.end());
        _files = files;
        _AddFolders();
        return isMore;
    }

    bool Wait() {
        bool hasChanged = false;
        for (;;) {
            std::array<pollfd, 2> descriptors{
                {{_events.Get(), POLLIN, 0}, {_end.Get(), POLLIN, 0}}};
            const int count =
                poll(descriptors.data(), descriptors.size(), hasChanged ? kQuietMilliseconds : -1);
            if (count < 0 && errno != EINTR) {
                throw std::runtime_error(std::string("files can't be watched: ") +
                                         std::strerror(errno));
            }
            if (count > 0 && descriptors[1].revents != 0) {
                return false;
            }
            if (count == 0) {
                return true;
            }
            if (count > 0) {
                hasChanged = _Read() || hasChanged;
            }
        }
    }

    void End() {
        const std::uint64_t one = 1;
        const ssize_t written = write(_end.Get(), &one, sizeof one);
        static_cast<void>(written);
    }

private:
    void _AddFolders() {
        std::map<int, std::string> folders;
        for (const std::string& file : _files) {
            const std::string folder = FindFolder(std::filesystem::path(file).parent_path());
            const int watch = inotify_add_watch(_events.Get(), folder.c_str(), kEvents);
            if (watch >= 0) {
                folders[watch] = folder;
            }
        }
        for (const auto& [watch, folder] : _folders) {
            if (!folders.contains(watch)) {
                inotify_rm_watch(_events.Get(), watch);
            }
        }
        _folders = std::move(folders);
    }

    /// Reads what has come. @return whether any of it may be about the files
    bool _Read() {
        alignas(inotify_event) std::array<char, 16384> buffer;
        bool isOurs = false;
        bool hasLost = false;
        for (;;) {
            const ssize_t length = read(_events.Get(), buffer.data(), buffer.size());
            if (length <= 0) {
                break;
            }
            for (ssize_t at = 0; at < length;) {
                const auto* const event =
                    reinterpret_cast<const inotify_event*>(buffer.data() + at);
                isOurs = _IsOurs(*event, hasLost) || isOurs;
                at += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
            }
        }
        if (hasLost) {
            _AddFolders();
        }
        return isOurs;
    }

    bool _IsOurs(const inotify_event& event, bool& hasLost) {
        if ((event.mask & IN_Q_OVERFLOW) != 0) {
            return true;
        }
        const auto folder = _folders.find(event.wd);
        if (folder == _folders.end()) {
            return false;
        }
        if (event.len == 0) {
            // The folder has gone; one around it may still be there.
            hasLost = true;
            if ((event.mask & IN_IGNORED) != 0) {
                _folders.erase(folder);
            }
            return true;
        }
        const std::string path = (std::filesystem::path(folder->second) / event.name).string();
        // A folder on the way to a file may have come or gone.
        const auto inside = _files.lower_bound(path + "/");
        if (inside != _files.end() && inside->starts_with(path + "/")) {
            hasLost = true;
            return true;
        }
        return _files.contains(path);
    }

    Descriptor _events;
    Descriptor _end; ///< readable from the end on
    std::set<std::string> _files;
    std::map<int, std::string> _folders; ///< by their watches
};

FileWatch::FileWatch() : _pPlatform(std::make_unique<Platform>()) {}

FileWatch::~FileWatch() = default;

bool FileWatch::Watch(const std::set<std::string>& files) {
    return _pPlatform->Watch(files);
}

bool FileWatch::Wait() {
    return _pPlatform->Wait();
}

void FileWatch::End() {
    _pPlatform->End();
}

} // namespace Tolen::Language

#include "TextFile.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

namespace Tolen::Klsl {

namespace {

[[noreturn]] void Fail() {
    throw std::system_error(errno, std::generic_category());
}

/// Closes a file of the C library; what was written counts only when Close has returned.
class File {
public:
    explicit File(std::FILE* file) : _file(file) {
        if (_file == nullptr) {
            Fail();
        }
    }
    ~File() {
        if (_file != nullptr) {
            std::fclose(_file);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    std::FILE* Get() const { return _file; }
    void Close() {
        std::FILE* const file = std::exchange(_file, nullptr);
        if (std::fclose(file) != 0) {
            Fail();
        }
    }

private:
    std::FILE* _file;
};

std::string Read(std::FILE* file) {
    std::string text;
    char piece[1 << 16];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, file)) {
        text.append(piece, count);
    }
    if (std::ferror(file) != 0) {
        Fail();
    }
    return text;
}

void Write(std::FILE* file, const std::string& text) {
    if (std::fwrite(text.data(), 1, text.size(), file) != text.size() || std::fflush(file) != 0) {
        Fail();
    }
}

/// The permissions of a file, or those that a new one gets.
mode_t GetMode(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0) {
        return status.st_mode & 07777;
    }
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// A file beside another one, which takes its place when it is whole.
class Successor {
public:
    explicit Successor(const std::string& path) : _path(path), _name(path + ".XXXXXX") {
        const int descriptor = mkstemp(_name.data());
        if (descriptor < 0) {
            Fail();
        }
        _file = fdopen(descriptor, "wb");
    }
    ~Successor() {
        if (!_name.empty()) {
            std::remove(_name.c_str());
        }
    }
    Successor(const Successor&) = delete;
    Successor& operator=(const Successor&) = delete;

    void Replace(const std::string& text) {
        File file(_file);
        if (fchmod(fileno(file.Get()), GetMode(_path)) != 0) {
            Fail();
        }
        Write(file.Get(), text);
        file.Close();
        if (std::rename(_name.c_str(), _path.c_str()) != 0) {
            Fail();
        }
        _name.clear();
    }

private:
    std::string _path;
    std::string _name; ///< empty once it has taken the place
    std::FILE* _file = nullptr;
};

} // namespace

std::string ReadTextFile(const std::string& path) {
    if (path == kStandardStream) {
        return Read(stdin);
    }
    File file(std::fopen(path.c_str(), "rb"));
    return Read(file.Get());
}

void WriteTextFile(const std::string& path, const std::string& text) {
    if (path == kStandardStream) {
        Write(stdout, text);
        return;
    }
    std::error_code isNone;
    const std::filesystem::path target = std::filesystem::canonical(path, isNone);
    Successor(isNone ? path : target.string()).Replace(text);
}

} // namespace Tolen::Klsl

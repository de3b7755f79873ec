#include "Commands.h"
#include "Options.h"

#include "language/Format.h"

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

constexpr const char* kStandardStream = "-";

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
        struct stat status {};
        if (stat(_path.c_str(), &status) != 0 ||
            fchmod(fileno(file.Get()), status.st_mode & 07777) != 0) {
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

/// @return whether the file is, or was, laid out otherwise
bool FormatFile(const std::string& path, bool checks) {
    File file(std::fopen(path.c_str(), "rb"));
    const std::string text = Read(file.Get());
    file.Close();
    const std::string formatted = Language::Format(text);
    if (formatted == text) {
        return false;
    }
    if (!checks) {
        // Where the path is a link, what it leads to is written.
        Successor(std::filesystem::canonical(path)).Replace(formatted);
    }
    return true;
}

bool FormatStandardInput(bool checks) {
    const std::string text = Read(stdin);
    const std::string formatted = Language::Format(text);
    if (!checks) {
        Write(stdout, formatted);
    }
    return formatted != text;
}

} // namespace

int FormatFiles(const Options& options) {
    int status = 0;
    for (const std::string& path : options.files) {
        try {
            const bool differs = path == kStandardStream ? FormatStandardInput(options.checksFormat)
                                                         : FormatFile(path, options.checksFormat);
            if (differs && options.checksFormat) {
                std::printf("%s\n", path.c_str());
                status = 1;
            }
        } catch (const std::system_error& error) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), error.code().message().c_str());
            status = 1;
        }
    }
    return status;
}

} // namespace Tolen::Klsl

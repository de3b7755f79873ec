#include "Commands.h"
#include "Options.h"
#include "TextFile.h"

#include "language/Format.h"

#include <cstdio>
#include <string>
#include <system_error>

namespace Tolen::Klsl {

namespace {

/// @return whether the file is, or was, laid out otherwise
bool FormatFile(const std::string& path, bool checks) {
    const std::string text = ReadTextFile(path);
    const std::string formatted = Language::Format(text);
    const bool isStream = path == kStandardStream;
    if (!checks && (isStream || formatted != text)) {
        WriteTextFile(path, formatted);
    }
    return formatted != text;
}

} // namespace

int FormatFiles(const Options& options) {
    int status = 0;
    for (const std::string& path : options.files) {
        try {
            const bool differs = FormatFile(path, options.checksFormat);
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

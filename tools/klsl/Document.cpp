#include "Commands.h"
#include "Options.h"
#include "TextFile.h"

#include "language/Reference.h"

#include <cstdio>
#include <string>
#include <system_error>
#include <vector>

namespace Tolen::Klsl {

int Document(const Options& options) {
    int status = 0;
    std::vector<Language::ReferenceSource> sources;
    const auto attempt = [&status](const std::string& path, const auto& action) {
        try {
            action();
        } catch (const std::system_error& error) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), error.code().message().c_str());
            status = 1;
        }
    };
    for (const std::string& path : options.files) {
        attempt(path, [&] { sources.push_back({path, ReadTextFile(path)}); });
    }
    const Language::Reference reference = Language::MakeReference(sources, options.title);
    for (const Language::Diagnostic& difference : reference.differences) {
        std::fprintf(stderr, "%s:%d: warning: %s\n", difference.file.c_str(), difference.line,
                     difference.text.c_str());
    }
    const std::string output = options.output.empty() ? kStandardStream : options.output;
    attempt(output, [&] { WriteTextFile(output, reference.page); });
    return status;
}

} // namespace Tolen::Klsl

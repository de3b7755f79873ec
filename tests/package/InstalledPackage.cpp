#include "InstalledPackage.h"

#include "tools/Process.h"

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace Tolen::Tests {

namespace {

std::string _Run(const std::string& path, const std::vector<std::string>& arguments) {
    Ended ended = RunCommand(path, arguments);
    if (ended.status != 0) {
        throw std::runtime_error(path + " failed: " + ended.errors);
    }
    return std::move(ended.output);
}

} // namespace

std::string GetIncludeFolder() {
    return TOLEN_INCLUDE_FOLDER;
}

std::string PreprocessHeaders() {
    std::vector<std::string> headers;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(GetIncludeFolder())) {
        if (entry.path().extension() == ".h") {
            headers.push_back(entry.path());
        }
    }
    std::sort(headers.begin(), headers.end());
    std::string unit;
    for (const std::string& header : headers) {
        unit += "#include \"" + header + "\"\n";
    }
    return _Run(TOLEN_COMPILER, {"-std=c++20", "-E", "-I", GetIncludeFolder(), "-x", "c++",
                                 WriteTemporary("headers.cpp", unit)});
}

std::vector<std::string> ListSymbols(const std::string& library) {
    std::istringstream lines(
        _Run(TOLEN_NM, {"--dynamic", "--demangle", "--defined-only",
                        std::string(TOLEN_LIBRARY_FOLDER) + "/lib" + library + ".so"}));
    std::vector<std::string> symbols;
    for (std::string line; std::getline(lines, line);) {
        // The address, the kind and the name; names have blanks of their own.
        const std::size_t kind = line.find(' ');
        if (kind == std::string::npos || kind + 3 >= line.size()) {
            throw std::runtime_error("not a line of nm: " + line);
        }
        symbols.push_back(line.substr(kind + 3));
    }
    return symbols;
}

} // namespace Tolen::Tests

// The main function of documents: runs the program of one page, with all that they print, also on
// consoles, in the order in which it comes.
//
// usage: PROGRAM PAGE

#include "docs/programs/Page.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <unistd.h>

namespace Tolen::Tests {

namespace {

std::map<std::string, Page::Program>& _Pages() {
    static std::map<std::string, Page::Program> pages;
    return pages;
}

} // namespace

Page::Page(const std::string& name, Program program) {
    _Pages()[name] = program;
}

bool Page::Run(const std::string& name) {
    const auto found = _Pages().find(name);
    if (found == _Pages().end()) {
        return false;
    }
    found->second();
    return true;
}

void EndOfBlock(int line) {
    std::printf("\x1e%d\n", line);
}

void SaveFile(const std::string& name, const std::string& text) {
    if (const std::filesystem::path folder = std::filesystem::path(name).parent_path();
        !folder.empty()) {
        std::filesystem::create_directories(folder);
    }
    std::ofstream(name, std::ios::binary) << text;
}

} // namespace Tolen::Tests

int main(int count, char** arguments) {
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    dup2(STDOUT_FILENO, STDERR_FILENO);
    return count == 2 && Tolen::Tests::Page::Run(arguments[1]) ? 0 : 1;
}

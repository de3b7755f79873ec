#include "Options.h"
#include "Print.h"
#include "StatsClient.h"

#include <cstdio>
#include <exception>

using namespace Tolen::StatsTool;

int main(int count, char** arguments) {
    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    try {
        const StatsList list = GetStatistics(options.host, options.wait);
        const std::string text = options.printsJson ? PrintJson(list) : PrintTable(list);
        std::fputs(text.c_str(), stdout);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tolen-stats: %s\n", error.what());
        return 1;
    }
    return 0;
}

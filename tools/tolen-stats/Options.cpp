#include "Options.h"

#include <CLI/CLI.hpp>

namespace Tolen::StatsTool {

bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    CLI::App app("Prints the statistics of a running program that offers them on TCP port 8881, as "
                 "it does when it was started with MGR_STATS_DUMP_TCPIP in its environment.",
                 "tolen-stats");
    app.footer("Exit status: 0 with a list, also an empty one, 1 without, 2 on misuse.");
    app.add_option("--host", options.host, "the machine that the program runs on")
        ->capture_default_str();
    app.add_option("--wait", options.wait, "seconds in which to try again while nobody listens")
        ->check(CLI::Range(0.0, 86400.0));
    app.add_flag("--json", options.printsJson, "print JSON");
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    return true;
}

} // namespace Tolen::StatsTool

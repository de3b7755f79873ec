#include "MessageLoop.h"
#include "Options.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <unistd.h>

int main(int count, char** arguments) {
    using namespace Tolen::LanguageServer;
    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    // A client that is gone shows itself when something is written.
    std::signal(SIGPIPE, SIG_IGN);
    try {
        MessageWriter writer(STDOUT_FILENO);
        Server server(writer, options.searchPaths);
        return MessageLoop(STDIN_FILENO, server, writer).Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "klsl-lsp: %s\n", error.what());
        return 1;
    }
}

#include "Commands.h"
#include "Options.h"

int main(int count, char** arguments) {
    using namespace Tolen::Klsl;

    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    return options.command == Options::kCommand_Print ? Print(options) : Check(options);
}

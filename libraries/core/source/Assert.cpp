#include "TolenCore/Assert.h"

#include "TolenCore/Console.h"

namespace Tolen {

namespace {

class ConsoleAssertHandler : public IAssertHandler {
public:
    Response OnAssert(const char* expression, int line, const char* source) override {
        if (IMgrConsole* console = GetMgrConsole()) {
            console->Error("Check failed: %s (%s, line %d)\n", expression, source, line);
        }
        return kResponse_IgnoreSite;
    }
};

std::atomic<IAssertHandler*>& ActiveHandler() {
    static ConsoleAssertHandler initial;
    static std::atomic<IAssertHandler*> active{&initial};
    return active;
}

} // namespace

IAssertHandler* GetActiveAssertHandler() { return ActiveHandler(); }

IAssertHandler* SetActiveAssertHandler(IAssertHandler* handler) {
    return ActiveHandler().exchange(handler);
}

bool ReportFailedCheck(const char* expression, int line, const char* source,
                       std::atomic<bool>& ignored) {
    IAssertHandler* handler = GetActiveAssertHandler();
    if (handler == nullptr || ignored) {
        return false;
    }
    if (handler->OnAssert(expression, line, source) == IAssertHandler::kResponse_IgnoreSite) {
        ignored = true;
    }
    return false;
}

} // namespace Tolen

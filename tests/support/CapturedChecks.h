#pragma once

#include "TolenCore/Assert.h"

#include <string>
#include <vector>

namespace Tolen::Tests {

/// Is the assertion handler of the process while it lives, and keeps the checks that failed. It
/// never lets a site be ignored, so that every failure is seen.
class CapturedChecks : private IAssertHandler {
public:
    struct Check {
        std::string expression;
        int line;
        std::string source;
    };

    CapturedChecks() : _pPrevious(SetActiveAssertHandler(this)) {}
    ~CapturedChecks() override { SetActiveAssertHandler(_pPrevious); }
    CapturedChecks(const CapturedChecks&) = delete;
    CapturedChecks& operator=(const CapturedChecks&) = delete;

    const std::vector<Check>& Get() const { return _checks; }
    bool IsEmpty() const { return _checks.empty(); }
    /// Whether a check of this text failed in this unit.
    bool Contains(const std::string& expression, const std::string& source) const {
        for (const Check& check : _checks) {
            if (check.expression == expression && check.source == source) {
                return true;
            }
        }
        return false;
    }
    void Clear() { _checks.clear(); }

private:
    Response OnAssert(const char* expression, int line, const char* source) override {
        _checks.push_back({expression, line, source});
        return kResponse_Continue;
    }

    IAssertHandler* _pPrevious;
    std::vector<Check> _checks;
};

} // namespace Tolen::Tests

#pragma once

/// @file
/// Internal checks: what the library believes of itself, and who hears when it does not hold.

#include "TolenCore/Export.h"

#include <atomic>

namespace Tolen {

/// Decides what happens when an internal check fails.
class TOLEN_EXPORT IAssertHandler {
public:
    /// What is to follow a failed check.
    enum Response {
        kResponse_Continue,   ///< go on with the operation's failure answer; ask again next time
        kResponse_IgnoreSite, ///< the same, and don't ask again for this place in the source
    };

    virtual ~IAssertHandler() = default;

    /// Called when a check has failed, on its thread.
    /// @param expression the text of the check that failed
    /// @param line       where it stands
    /// @param source     the unit, such as "Source/Graph"
    /// @return what is to follow
    virtual Response OnAssert(const char* expression, int line, const char* source) = 0;
};

/// The handler in force; null means that failed checks are passed over in silence. The one that is
/// there from the start prints on the console's error channel and ignores the site from then on.
TOLEN_EXPORT IAssertHandler* GetActiveAssertHandler();

/// Replaces the handler. @param handler borrowed @return the one before
TOLEN_EXPORT IAssertHandler* SetActiveAssertHandler(IAssertHandler* handler);

/// Tells the active handler of a failed check unless @p ignored says that nobody wants to hear.
/// @return false, so that a check can be the condition of its failure branch
TOLEN_EXPORT bool ReportFailedCheck(const char* expression, int line, const char* source,
                                    std::atomic<bool>& ignored);

} // namespace Tolen

/// Checks @p condition and tells the assertion handler when it does not hold. The value is the
/// condition's, so that the caller leaves with its failure answer:
/// `if (!TOLEN_CHECK(_pGraph == NULL, "Source/Effect")) return false;`
#define TOLEN_CHECK(condition, source) TOLEN_CHECK_TEXT(condition, #condition, source)

/// The same with a text of its own for the expression.
#define TOLEN_CHECK_TEXT(condition, text, source)                                                  \
    ((condition) ? true : [&] {                                                                    \
        static std::atomic<bool> ignored{false};                                                   \
        return ::Tolen::ReportFailedCheck(text, __LINE__, source, ignored);                        \
    }())

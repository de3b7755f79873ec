#include "Commands.h"
#include "Options.h"
#include "Report.h"

#include "language/Checker.h"

namespace Tolen::Klsl {

int Check(const Options& options) {
    Language::Checker checker;
    for (const std::string& folder : options.searchPaths) {
        checker.AddSearchPath(folder);
    }
    checker.SetClientNames(options.names);
    return Report(checker.Check(options.files)) ? 1 : 0;
}

} // namespace Tolen::Klsl

#include "support/paths/SourceFolder.h"

namespace Tolen::Tests {

std::string SourceFolder() { return TOLEN_SOURCE_FOLDER; }

std::string ProgramFolder() { return TOLEN_PROGRAM_FOLDER; }

} // namespace Tolen::Tests

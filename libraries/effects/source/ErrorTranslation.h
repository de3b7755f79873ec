#pragma once

#include <string>

namespace Tolen::Effects {

class VisitorPrintKsl;

/// Rewrites the log of the API's compiler, in which "String 0 Line N" tells a line of the generated
/// text, to the lines of the source. In each line of the log, all up to the first such number
/// becomes the location of the node that was printed there; lines without one stay as they are.
/// @param printer the one that made the text; its module must still be there
std::string TranslateErrorMessage(const std::string& log, const VisitorPrintKsl& printer);

} // namespace Tolen::Effects

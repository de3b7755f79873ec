#include "LocationText.h"

namespace Tolen::Effects {

std::string LocationText(const LocationRange& range) {
    std::string text = "<generated>";
    if (range.file != nullptr) {
        // npos + 1 is 0: a name without folders stays whole.
        text = range.file->substr(range.file->find_last_of("/\\") + 1);
    }
    return text + ":" + std::to_string(range.firstLine);
}

} // namespace Tolen::Effects

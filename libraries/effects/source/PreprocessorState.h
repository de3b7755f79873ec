#pragma once

#include "Definitions.h"

#include <cstddef>

namespace Tolen::Effects {

/// What the files of one AddLibrary call share: a file, what it includes and what it imports.
struct PreprocessorState {
    Definitions definitions;
    int depth = 0;         ///< files around the one that is being read
    int files = 1;         ///< files read so far, the one that is being read among them
    std::size_t bytes = 0; ///< text written so far
};

} // namespace Tolen::Effects

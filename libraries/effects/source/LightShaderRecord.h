#pragma once

#include "BorrowedShader.h"
#include "Shader_LightShader.h"

#include <cstdint>
#include <map>
#include <memory>

namespace Tolen::Effects {

/// The lights of one class.
struct LightShaderRecord {
    BorrowedShader shader; ///< the real one, owned through the effects manager; null when it is gone
    int count = 0;         ///< the cell of the next light
    /// By creation number, so that cells can be moved up one after the other: none is written that
    /// has not been read.
    std::map<std::uint64_t, std::unique_ptr<Shader_LightShader>> wrappers;
};

} // namespace Tolen::Effects

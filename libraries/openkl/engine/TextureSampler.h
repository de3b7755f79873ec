#pragma once

#include "engine/TextureView.h"

namespace Tolen::OpenKL {

/// Reads a texture at a point.
/// @param u, v      texture coordinates; ones that are not finite read as 0
/// @param level     which of the levels, fractions between two; 0 is the image itself
/// @param pColor    takes red, green, blue and alpha
void SampleTexture(const TextureView& texture, float u, float v, float level, float* pColor);

/// The level at which the texels of a texture are as wide as a footprint in texture coordinates.
float FindLevel(const TextureView& texture, float footprint, float bias);

} // namespace Tolen::OpenKL

#pragma once

#include "scene/ImageFile.h"

namespace Tolen::Scene {

/// Where the light of an image is that shows all directions, by longitude and latitude: a table
/// from which a shader chooses directions with one look-up. Its form is told in
/// shaders/environments.klsl. A texel of the table is a cell of the sphere; the darkest cells are
/// chosen too, though seldom.
/// @param image of at least one pixel; colours below 0, infinite or no number count as black
Image MakeImportanceTable(const Image& image);

} // namespace Tolen::Scene

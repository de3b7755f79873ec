#pragma once

#include "scene/IesFile.h"
#include "scene/ImageFile.h"

#include <string>

namespace Tolen::Scene {

constexpr int kIesImageWidth = 720;
constexpr int kIesImageHeight = 360;

/// An image of the intensities in all directions, in candela as grey: columns are phi from 0 to 360
/// degrees, rows theta from 0 at the bottom to 180 at the top. The middle of each texel is exact.
Image MakeIesImage(const Photometry& photometry, int width = kIesImageWidth,
                   int height = kIesImageHeight);

/// What a reader of the image's file has to know.
extern const char* const kIesImageComments;

/// The light in lumens that such an image sends in all directions.
double GetLumens(const Image& image);

} // namespace Tolen::Scene

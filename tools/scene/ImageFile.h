#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Tolen::Scene {

/// Four linear floats for each pixel, row by row from the lowest.
struct Image {
    int width = 0;
    int height = 0;
    std::vector<float> rgba;
};

/// Reads a PNG, a JPEG or an OpenEXR file.
/// @param isSrgb whether the colours are encoded for a screen; those of OpenEXR never are
/// @throws std::runtime_error
Image ReadImage(const std::string& file, bool isSrgb);

/// The same for the bytes of a PNG or a JPEG.
/// @param name for messages
Image DecodeImage(const std::string& name, const std::string& bytes, bool isSrgb);

/// Writes the colours as an 8-bit PNG for screens (sRGB); what is above 1 is cut off.
/// @throws std::runtime_error
void WritePng(const std::string& file, const Image& image);

/// What an OpenEXR file stores: halves, which end at 65504, or floats.
enum ExrPixels { kExrPixels_Half, kExrPixels_Float };

/// Writes linear values, those of the first image as R, G, B, A, those of others under their names.
/// @param images names and images of one size
/// @param comments the header's attribute of that name; left out when empty
/// @throws std::runtime_error
void WriteExr(const std::string& file,
              const std::vector<std::pair<std::string, const Image*>>& images,
              ExrPixels pixels = kExrPixels_Half, const std::string& comments = std::string());

} // namespace Tolen::Scene

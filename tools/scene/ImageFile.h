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

/// Writes linear half floats, the first image as R, G, B, A, the others under their names.
/// @param images names and images of one size
/// @throws std::runtime_error
void WriteExr(const std::string& file,
              const std::vector<std::pair<std::string, const Image*>>& images);

} // namespace Tolen::Scene

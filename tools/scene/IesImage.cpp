#include "scene/IesImage.h"

#include <cmath>

namespace Tolen::Scene {

namespace {

constexpr double kPi = 3.14159265358979323846;

} // namespace

const char* const kIesImageComments =
    "Luminous intensity in candela by direction. Columns are phi from 0 to 360 degrees, from left to "
    "right. Rows are theta from 0 degrees, straight down, at the bottom to 180, straight up, at the "
    "top. A shader reads it at vec2(phi / 360, theta / 180), clamped.";

Image MakeIesImage(const Photometry& photometry, int width, int height) {
    Image image{width, height, {}};
    image.rgba.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4);
    for (int row = 0; row < height; ++row) {
        const double theta = 180.0 * (row + 0.5) / height;
        for (int column = 0; column < width; ++column) {
            const double phi = 360.0 * (column + 0.5) / width;
            const auto candela = static_cast<float>(photometry.GetCandela(theta, phi));
            image.rgba.insert(image.rgba.end(), {candela, candela, candela, 1.0f});
        }
    }
    return image;
}

double GetLumens(const Image& image) {
    double lumens = 0.0;
    for (int row = 0; row < image.height; ++row) {
        // The solid angle of a texel, whole even where the row meets a pole.
        const double texel = 2.0 * kPi / image.width *
                             (std::cos(kPi * row / image.height) -
                              std::cos(kPi * (row + 1) / image.height));
        for (int column = 0; column < image.width; ++column) {
            const std::size_t at = (static_cast<std::size_t>(row) *
                                        static_cast<std::size_t>(image.width) +
                                    static_cast<std::size_t>(column)) * 4;
            lumens += texel * static_cast<double>(image.rgba[at]);
        }
    }
    return lumens;
}

} // namespace Tolen::Scene

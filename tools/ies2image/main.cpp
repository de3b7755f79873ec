// Makes an image of the light that a luminaire sends in all directions from its IES file.

#include "scene/IesImage.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

namespace {

using namespace Tolen::Scene;

struct Options {
    std::string file;
    std::string output = "out.exr";
    int width = kIesImageWidth;
    int height = kIesImageHeight;
};

void ReadSize(const std::string& text, Options& options) {
    constexpr int kMost = 8192;
    char rest = 0;
    if (std::sscanf(text.c_str(), "%dx%d%c", &options.width, &options.height, &rest) != 2 ||
        options.width < 1 || options.height < 1 || options.width > kMost ||
        options.height > kMost) {
        throw CLI::ValidationError("--size", "expected WIDTHxHEIGHT, up to 8192 each, found '" +
                                                 text + "'");
    }
}

bool EndsWith(const std::string& text, const char* ending) { return text.ends_with(ending); }

/// @return whether to go on; otherwise @p exitStatus is set
bool ReadOptions(int count, char** arguments, Options& options, int& exitStatus) {
    CLI::App app("Makes an image of a luminaire's light from its IES file.", "ies2image");
    std::string size;
    app.add_option("file", options.file, "the IES file (LM-63, photometry of type C)")->required();
    app.add_option("-o,--output", options.output,
                   "the image: .exr (candela) or .png (to look at, the most of it white)")
        ->capture_default_str();
    app.add_option("--size", size, "WIDTHxHEIGHT in pixels; 720x360 without it");
    try {
        app.parse(count, arguments);
        if (!size.empty()) {
            ReadSize(size, options);
        }
        if (!EndsWith(options.output, ".exr") && !EndsWith(options.output, ".png")) {
            throw CLI::ValidationError("--output", "ends neither with .exr nor with .png");
        }
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : 2;
        return false;
    }
    return true;
}

void Convert(const Options& options) {
    const Photometry photometry = ReadIes(options.file);
    Image image = MakeIesImage(photometry, options.width, options.height);
    std::printf("%s: %zu by %zu angles, at most %g cd, %.6g lm\n", options.file.c_str(),
                photometry.GetThetas().size(), photometry.GetPhis().size(),
                photometry.GetMostCandela(), GetLumens(image));
    if (EndsWith(options.output, ".exr")) {
        WriteExr(options.output, {{"candela", &image}}, kExrPixels_Float, kIesImageComments);
        return;
    }
    const auto most = static_cast<float>(photometry.GetMostCandela());
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        image.rgba[i] /= i % 4 == 3 || !(most > 0.0f) ? 1.0f : most;
    }
    WritePng(options.output, image);
}

} // namespace

int main(int count, char** arguments) {
    Options options;
    int exitStatus = 0;
    if (!ReadOptions(count, arguments, options, exitStatus)) {
        return exitStatus;
    }
    try {
        Convert(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}

#include "scene/ImageFile.h"

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <ImfRgbaFile.h>
#include <ImfStandardAttributes.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <fstream>
#include <half.h>
#include <memory>
#include <png.h>
#include <sstream>
#include <stdexcept>
#include <turbojpeg.h>

namespace Tolen::Scene {

namespace {

constexpr int kMostPixels = 65536;

float _ToLinear(float encoded) {
    return encoded <= 0.04045f ? encoded / 12.92f : std::pow((encoded + 0.055f) / 1.055f, 2.4f);
}

std::uint8_t _ToScreen(float linear) {
    // Written so that what is no number becomes black.
    const float clamped = linear > 0.0f ? std::min(linear, 1.0f) : 0.0f;
    const float encoded = clamped <= 0.0031308f ? clamped * 12.92f
                                                : 1.055f * std::pow(clamped, 1.0f / 2.4f) - 0.055f;
    return static_cast<std::uint8_t>(encoded * 255.0f + 0.5f);
}

[[noreturn]] void _Fail(const std::string& file, const std::string& what) {
    throw std::runtime_error(file + ": " + what);
}

/// libpng's simple interface with the release that it asks for.
class PngImage {
public:
    PngImage() { _image.version = PNG_IMAGE_VERSION; }
    ~PngImage() { png_image_free(&_image); }
    PngImage(const PngImage&) = delete;
    PngImage& operator=(const PngImage&) = delete;

    png_image* operator->() { return &_image; }
    png_image* Get() { return &_image; }

private:
    png_image _image{};
};

/// libjpeg-turbo's decompressor with its release.
class JpegDecompressor {
public:
    JpegDecompressor() : _handle(tjInitDecompress()) {
        if (_handle == nullptr) {
            throw std::runtime_error("no memory for a JPEG decompressor");
        }
    }
    ~JpegDecompressor() { tjDestroy(_handle); }
    JpegDecompressor(const JpegDecompressor&) = delete;
    JpegDecompressor& operator=(const JpegDecompressor&) = delete;

    tjhandle Get() const { return _handle; }

private:
    tjhandle _handle;
};

void _CheckSize(const std::string& name, std::uint64_t width, std::uint64_t height) {
    if (width < 1 || height < 1) {
        _Fail(name, "holds no pixels");
    }
    if (width > kMostPixels || height > kMostPixels) {
        _Fail(name, "wider or higher than the limit of 65536 pixels");
    }
}

/// An image of 8-bit RGBA, row by row from the lowest.
Image _FromBytes(int width, int height, const std::vector<std::uint8_t>& bytes, bool isSrgb) {
    std::array<float, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const float value = static_cast<float>(i) / 255.0f;
        table[i] = isSrgb ? _ToLinear(value) : value;
    }
    Image image{width, height, std::vector<float>(bytes.size())};
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        image.rgba[i] = i % 4 == 3 ? static_cast<float>(bytes[i]) / 255.0f : table[bytes[i]];
    }
    return image;
}

Image _DecodePng(const std::string& name, const std::string& bytes, bool isSrgb) {
    PngImage png;
    if (png_image_begin_read_from_memory(png.Get(), bytes.data(), bytes.size()) == 0) {
        _Fail(name, png->message);
    }
    _CheckSize(name, png->width, png->height);
    png->format = PNG_FORMAT_RGBA;
    std::vector<std::uint8_t> pixels(PNG_IMAGE_SIZE(*png.Get()));
    // A negative stride turns the rows around, so that the lowest comes first.
    const auto stride = -static_cast<png_int_32>(PNG_IMAGE_ROW_STRIDE(*png.Get()));
    if (png_image_finish_read(png.Get(), nullptr, pixels.data(), stride, nullptr) == 0) {
        _Fail(name, png->message);
    }
    return _FromBytes(static_cast<int>(png->width), static_cast<int>(png->height), pixels, isSrgb);
}

Image _DecodeJpeg(const std::string& name, const std::string& bytes, bool isSrgb) {
    const JpegDecompressor jpeg;
    const auto* const data = reinterpret_cast<const unsigned char*>(bytes.data());
    const auto size = static_cast<unsigned long>(bytes.size());
    int width = 0;
    int height = 0;
    int subsampling = 0;
    int colors = 0;
    if (tjDecompressHeader3(jpeg.Get(), data, size, &width, &height, &subsampling, &colors) != 0) {
        _Fail(name, tjGetErrorStr2(jpeg.Get()));
    }
    _CheckSize(name, static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));
    std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height) * 4);
    // A warning leaves a picture with flaws, as viewers show it.
    if (tjDecompress2(jpeg.Get(), data, size, pixels.data(), width, 0, height, TJPF_RGBA,
                      TJFLAG_BOTTOMUP) != 0 &&
        tjGetErrorCode(jpeg.Get()) != TJERR_WARNING) {
        _Fail(name, tjGetErrorStr2(jpeg.Get()));
    }
    return _FromBytes(width, height, pixels, isSrgb);
}

/// A file of colours and maybe alpha, with values beyond those of halves.
Image _ReadExrColors(Imf::InputFile& input, const Imath::Box2i& window) {
    const int width = window.max.x - window.min.x + 1;
    const int height = window.max.y - window.min.y + 1;
    const auto columns = static_cast<std::ptrdiff_t>(width);
    Image image{width, height, std::vector<float>(static_cast<std::size_t>(width) *
                                                  static_cast<std::size_t>(height) * 4)};
    // A negative stride turns the rows around, so that the lowest comes first.
    float* const corner = image.rgba.data() +
                          4 * (columns * (height - 1 + window.min.y) - window.min.x);
    constexpr const char* kChannels[] = {"R", "G", "B", "A"};
    Imf::FrameBuffer frame;
    for (std::ptrdiff_t channel = 0; channel < 4; ++channel) {
        frame.insert(kChannels[channel],
                     Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(corner + channel),
                                4 * sizeof(float),
                                static_cast<std::size_t>(-4 * columns) * sizeof(float), 1, 1,
                                channel == 3 ? 1.0 : 0.0));
    }
    input.setFrameBuffer(frame);
    input.readPixels(window.min.y, window.max.y);
    return image;
}

/// A file of any channels, such as luminance, as the library makes colours of them.
Image _ReadExrAsColors(const std::string& file, const Imath::Box2i& window) {
    Imf::RgbaInputFile input(file.c_str());
    const int width = window.max.x - window.min.x + 1;
    const int height = window.max.y - window.min.y + 1;
    const auto columns = static_cast<std::size_t>(width);
    std::vector<Imf::Rgba> pixels(columns * static_cast<std::size_t>(height));
    input.setFrameBuffer(pixels.data() - window.min.x - static_cast<std::ptrdiff_t>(window.min.y) * width,
                         1, columns);
    input.readPixels(window.min.y, window.max.y);
    Image image{width, height, std::vector<float>(pixels.size() * 4)};
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const std::size_t row = static_cast<std::size_t>(height) - 1 - i / columns;
        float* const to = &image.rgba[(row * columns + i % columns) * 4];
        to[0] = pixels[i].r;
        to[1] = pixels[i].g;
        to[2] = pixels[i].b;
        to[3] = pixels[i].a;
    }
    return image;
}

Image _ReadExr(const std::string& file) {
    Imf::InputFile input(file.c_str());
    const Imath::Box2i window = input.header().dataWindow();
    const auto length = [](int low, int high) {
        return static_cast<std::uint64_t>(std::max(std::int64_t{high} - low + 1, std::int64_t{0}));
    };
    _CheckSize(file, length(window.min.x, window.max.x), length(window.min.y, window.max.y));
    return input.header().channels().findChannel("R") != nullptr
               ? _ReadExrColors(input, window)
               : _ReadExrAsColors(file, window);
}

/// Writes all channels as values of type T.
template <class T>
void _WriteExr(const std::string& file,
               const std::vector<std::pair<std::string, const Image*>>& images,
               Imf::PixelType type, Imf::Header header) {
    const auto columns = static_cast<std::size_t>(images.front().second->width);
    const auto rows = static_cast<std::size_t>(images.front().second->height);
    Imf::FrameBuffer frame;
    std::vector<std::vector<T>> planes;
    planes.reserve(images.size() * 4);
    for (const auto& [name, image] : images) {
        static constexpr const char* kChannels[] = {"R", "G", "B", "A"};
        for (std::size_t channel = 0; channel < 4; ++channel) {
            std::vector<T>& plane = planes.emplace_back(columns * rows);
            for (std::size_t y = 0; y < rows; ++y) {
                for (std::size_t x = 0; x < columns; ++x) {
                    // cppcheck-suppress invalidContainerReference ; there is room from the start
                    plane[y * columns + x] =
                        T(image->rgba[((rows - 1 - y) * columns + x) * 4 + channel]);
                }
            }
            const std::string full =
                (image == images.front().second ? "" : name + ".") + kChannels[channel];
            header.channels().insert(full, Imf::Channel(type));
            frame.insert(full, Imf::Slice(type, reinterpret_cast<char*>(plane.data()), sizeof(T),
                                          sizeof(T) * columns));
        }
    }
    Imf::OutputFile output(file.c_str(), header);
    output.setFrameBuffer(frame);
    output.writePixels(static_cast<int>(rows));
}

} // namespace

Image DecodeImage(const std::string& name, const std::string& bytes, bool isSrgb) {
    if (bytes.starts_with("\x89PNG")) {
        return _DecodePng(name, bytes, isSrgb);
    }
    if (bytes.starts_with("\xff\xd8\xff")) {
        return _DecodeJpeg(name, bytes, isSrgb);
    }
    _Fail(name, "is neither PNG, JPEG nor OpenEXR");
}

Image ReadImage(const std::string& file, bool isSrgb) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream bytes;
    bytes << stream.rdbuf();
    if (!stream || bytes.fail()) {
        _Fail(file, "can't be read");
    }
    if (bytes.view().starts_with("\x76\x2f\x31\x01")) {
        return _ReadExr(file);
    }
    return DecodeImage(file, bytes.str(), isSrgb);
}

void WritePng(const std::string& file, const Image& image) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(image.rgba.size() / 4 * 3);
    for (std::size_t i = 0; i < image.rgba.size(); ++i) {
        if (i % 4 != 3) {
            bytes.push_back(_ToScreen(image.rgba[i]));
        }
    }
    PngImage png;
    png->width = static_cast<png_uint_32>(image.width);
    png->height = static_cast<png_uint_32>(image.height);
    png->format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(png.Get(), file.c_str(), 0, bytes.data(), -image.width * 3,
                                nullptr) == 0) {
        _Fail(file, png->message);
    }
}

void WriteExr(const std::string& file,
              const std::vector<std::pair<std::string, const Image*>>& images, ExrPixels pixels,
              const std::string& comments) {
    Imf::Header header(images.front().second->width, images.front().second->height);
    if (!comments.empty()) {
        Imf::addComments(header, comments);
    }
    if (pixels == kExrPixels_Half) {
        _WriteExr<half>(file, images, Imf::HALF, header);
    } else {
        _WriteExr<float>(file, images, Imf::FLOAT, header);
    }
}

} // namespace Tolen::Scene

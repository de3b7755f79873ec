#include "support/RecordingTexImage2D.h"

#include "support/RecordingBindings.h"
#include "support/RecordingContext.h"

#include "TolenCore/Format.h"

namespace Tolen::Tests {

namespace {

std::size_t CountChannels(int format) {
    switch (format) {
    case IKLTexImage2D::kFormat_RGB32F:
        return 3;
    case IKLTexImage2D::kFormat_RGBA32F:
        return 4;
    case IKLTexImage2D::kFormat_R32F:
        return 1;
    default:
        return 0;
    }
}

} // namespace

RecordingTexImage2D::RecordingTexImage2D(RecordingContext& context, const std::string& id)
    : _context(context), _id(id) {}

RecordingTexImage2D::~RecordingTexImage2D() = default;

std::vector<float> RecordingTexImage2D::GetTexels() const {
    return std::vector<float>(_pData, _pData + _count);
}

bool RecordingTexImage2D::Init(int width, int height, int format, int wrap, int minification,
                               int magnification, const void* data, bool borrow) {
    RecordingLog& log = _context.GetLog();
    const std::size_t channels = CountChannels(format);
    bool good = log.Begin("TexImage2DInit");
    if (width <= 0 || height <= 0 || channels == 0 || data == nullptr) {
        log.AddMisuse("TexImage2DInit " + _id);
        good = false;
    }
    if (good) {
        _width = width;
        _height = height;
        _count = static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * channels;
        _pData = static_cast<const float*>(data);
        if (!borrow) {
            _copied.assign(_pData, _pData + _count);
            _pData = _copied.data();
        }
        _texture = std::make_unique<KLtextureRecord>(KLtextureRecord{_id});
    }
    return log.End("TexImage2DInit",
                   _id + Tolen::Format(" %dx%d format %d wrap 0x%x filters 0x%x 0x%x%s", width,
                                       height, format, wrap, minification, magnification,
                                       borrow ? " borrow" : ""),
                   good);
}

} // namespace Tolen::Tests

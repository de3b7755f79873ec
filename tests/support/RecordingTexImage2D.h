#pragma once

#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace Tolen::Tests {

class RecordingContext;

/// An image that keeps its texels.
class RecordingTexImage2D : public IKLTexImage2D {
public:
    RecordingTexImage2D(RecordingContext& context, const std::string& id);
    ~RecordingTexImage2D() override;

    /// What the log calls this image, such as "image1". Its texture is called the same.
    const std::string& GetId() const { return _id; }
    /// The texels as they are now: what was copied, or what was borrowed.
    std::vector<float> GetTexels() const;

    KLtexture GetTexture() const override { return _texture.get(); }
    bool Init(int width, int height, int format, int wrap, int minification, int magnification,
              const void* data, bool borrow) override;
    int GetWidth() const override { return _width; }
    int GetHeight() const override { return _height; }

private:
    RecordingContext& _context;
    std::string _id;
    std::unique_ptr<KLtextureRecord> _texture;
    int _width = 0;
    int _height = 0;
    std::size_t _count = 0; ///< floats
    std::vector<float> _copied;
    const float* _pData = nullptr;
};

} // namespace Tolen::Tests

#pragma once

#include "ParameterStorageTyped.h"
#include "TextureGeometry.h"

#include "TolenOpenKLWrapper/IKLTexImage2D.h"

#include <memory>

namespace Tolen {
class IOpenKLContext;
} // namespace Tolen

namespace Tolen::Effects {

class ParameterValueArray;

/// The form in which a texture keeps elements of type T.
///
/// - `Stored`: the element in memory
/// - `kFormat`: the format of the image
template <class T>
struct TextureElement;

template <>
struct TextureElement<float> {
    using Stored = float;
    static constexpr IKLTexImage2D::Format kFormat = IKLTexImage2D::kFormat_R32F;
};

template <>
struct TextureElement<Vector2f> {
    using Stored = Vector3f;
    static constexpr IKLTexImage2D::Format kFormat = IKLTexImage2D::kFormat_RGB32F;
};

template <>
struct TextureElement<Vector3f> {
    using Stored = Vector3f;
    static constexpr IKLTexImage2D::Format kFormat = IKLTexImage2D::kFormat_RGB32F;
};

template <>
struct TextureElement<Vector4f> {
    using Stored = Vector4f;
    static constexpr IKLTexImage2D::Format kFormat = IKLTexImage2D::kFormat_RGBA32F;
};

/// A storage in a texture. The image reads the elements where they lie in host memory, so that a
/// write needs nothing more.
/// @tparam Parameter the class of the parameter, asked for its mangled name
template <class Parameter, class T>
class ParameterStorageTexture
    : public ParameterStorageTyped<T, Value<typename TextureElement<T>::Stored>> {
public:
    ~ParameterStorageTexture() override;

    /// @param context   borrowed; makes the image
    /// @param parameter borrowed
    bool Init(IOpenKLContext* context, Parameter* parameter, int length, bool resizable);
    void Shutdown() override;

    int GetLength() override { return _count; }
    /// A length whose texels are as many as the present ones changes nothing. A failure shuts the
    /// storage down.
    bool SetLength(int length) override;

protected:
    Parameter* _GetParameter() const { return _pParameter; }
    IKLTexImage2D* _GetImage() const { return _pImage; }

private:
    using Base = ParameterStorageTyped<T, Value<typename TextureElement<T>::Stored>>;
    using Stored = typename TextureElement<T>::Stored;

    bool _InitImage();
    void _ShutdownImage();

    IOpenKLContext* _pContext = nullptr; ///< borrowed
    Parameter* _pParameter = nullptr;    ///< borrowed
    IKLTexImage2D* _pImage = nullptr;    ///< owned through the context
    int _count = 0;                      ///< elements, as asked for
    TextureGeometry _geometry = {0, 0};
};

/// Adds the apply to a storage in a texture: it sets the sampler, and the width as a uniform.
template <class Storage>
class ParameterStorageApplyTexture : public Storage {
public:
    bool Apply(IKLPrimitive* primitive, IKLProgram* program, const std::string& name,
               int location) override;
};

/// Makes a storage in a texture.
/// @return null for a type that textures can't keep, or on a failure of the context
std::unique_ptr<IStorage> CreateParameterStorageTexture(IOpenKLContext* context,
                                                        ParameterValueArray* parameter,
                                                        TypeSpecifier specifier, int length,
                                                        bool resizable);

} // namespace Tolen::Effects

#include "ParameterStorageTexture.h"

#include "ParameterValueArray.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"
#include "TolenOpenKLWrapper/IKLProgram.h"
#include "TolenOpenKLWrapper/IOpenKLContext.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <optional>

namespace Tolen::Effects {

template <class Parameter, class T>
ParameterStorageTexture<Parameter, T>::~ParameterStorageTexture() {
    _ShutdownImage();
}

template <class Parameter, class T>
bool ParameterStorageTexture<Parameter, T>::Init(IOpenKLContext* context, Parameter* parameter,
                                                 int length, bool resizable) {
    if (!TOLEN_CHECK_TEXT(length >= 0, "nValues >= 0", "Source/ParameterStorageTexture")) {
        Shutdown();
        return false;
    }
    _pContext = context;
    _pParameter = parameter;
    const std::optional<TextureGeometry> geometry = TextureGeometry::Of(length);
    if (!geometry) {
        Shutdown();
        return false;
    }
    _count = length;
    _geometry = *geometry;
    this->_pValue = std::make_unique<Value<Stored>>(_geometry.GetCount(), resizable, Stored());
    if (this->_pValue->GetLength() != _geometry.GetCount() || !_InitImage()) {
        Shutdown();
        return false;
    }
    return true;
}

template <class Parameter, class T>
void ParameterStorageTexture<Parameter, T>::Shutdown() {
    _ShutdownImage();
    Base::Shutdown();
    _pContext = nullptr;
    _pParameter = nullptr;
    _count = 0;
    _geometry = {0, 0};
}

template <class Parameter, class T>
bool ParameterStorageTexture<Parameter, T>::SetLength(int length) {
    if (length == _count) {
        return true;
    }
    const std::optional<TextureGeometry> geometry =
        length < 0 ? std::nullopt : TextureGeometry::Of(length);
    if (this->_pValue == nullptr || !geometry) {
        return false;
    }
    if (geometry->GetCount() == this->_pValue->GetLength()) {
        return true;
    }
    // The image reads the elements in place: it goes before they move.
    _ShutdownImage();
    _geometry = *geometry;
    if (!this->_pValue->SetLength(_geometry.GetCount()) || !_InitImage()) {
        Shutdown();
        return false;
    }
    _count = length;
    return this->_FireChangeLength(length);
}

template <class Parameter, class T>
bool ParameterStorageTexture<Parameter, T>::_InitImage() {
    _pImage = _pContext == nullptr ? nullptr : _pContext->CreateTexImage2D();
    return _pImage != nullptr &&
           _pImage->Init(_geometry.width, _geometry.height, TextureElement<T>::kFormat, KL_REPEAT,
                         KL_NEAREST, KL_NEAREST, this->_pValue->GetData(), true);
}

template <class Parameter, class T>
void ParameterStorageTexture<Parameter, T>::_ShutdownImage() {
    if (_pImage != nullptr) {
        _pContext->DestroyTexImage2D(_pImage);
        _pImage = nullptr;
    }
}

template <class Storage>
bool ParameterStorageApplyTexture<Storage>::Apply(IKLPrimitive* primitive, IKLProgram* program,
                                                  const std::string&, int location) {
    IKLTexImage2D* const image = this->_GetImage();
    if (image == nullptr || this->_GetParameter() == nullptr || primitive == nullptr ||
        program == nullptr) {
        return false;
    }
    const std::string name = this->_GetParameter()->GetNameMangled();
    if (!primitive->SetUniformTexture(name, location, image->GetTexture())) {
        ConsolePrint("ParameterStorageApplyTexture::Apply Set Uniform\n");
        return false;
    }
    const std::string nameWidth = name + "Width";
    const int locationWidth = program->GetUniformLocation(nameWidth);
    return locationWidth >= 0 && primitive->SetUniform(nameWidth, locationWidth, image->GetWidth());
}

std::unique_ptr<IStorage> CreateParameterStorageTexture(IOpenKLContext* context,
                                                        ParameterValueArray* parameter,
                                                        TypeSpecifier specifier, int length,
                                                        bool resizable) {
    const auto create = [=]<class T>(std::type_identity<T>) -> std::unique_ptr<IStorage> {
        if constexpr (requires { typename TextureElement<T>::Stored; }) {
            auto storage = std::make_unique<
                ParameterStorageApplyTexture<ParameterStorageTexture<ParameterValueArray, T>>>();
            if (storage->Init(context, parameter, length, resizable)) {
                return storage;
            }
        }
        return nullptr;
    };
    return VisitElementType(specifier, std::unique_ptr<IStorage>(), create);
}

} // namespace Tolen::Effects

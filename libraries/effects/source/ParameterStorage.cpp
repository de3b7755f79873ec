#include "ParameterStorage.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include <algorithm>

namespace Tolen::Effects {

template <class T, template <class> class ValueType>
bool ParameterStorage<T, ValueType>::Init(IOpenKLContext* context, int length, bool resizable) {
    _pContext = context;
    this->_pValue = std::make_unique<ValueType<T>>(length, resizable, T());
    if (this->_pValue->GetLength() != length) {
        Shutdown();
        return false;
    }
    return true;
}

template <class T, template <class> class ValueType>
bool ParameterStorage<T, ValueType>::Apply(IKLPrimitive* primitive, IKLProgram*,
                                           const std::string& name, int location) {
    if (this->_pValue == nullptr || primitive == nullptr) {
        return false;
    }
    const int length = this->GetLength();
    if (length == 1) {
        return primitive->SetUniform(name, location, this->_pValue->Get(0));
    }
    return primitive->SetUniformArray(name, location, std::max(length, 0),
                                      this->_pValue->GetData());
}

template <class T, template <class> class ValueType>
void ParameterStorage<T, ValueType>::Shutdown() {
    ParameterStorageTyped<T, ValueType<T>>::Shutdown();
    _pContext = nullptr;
}

TypeSpecifier GetStorageSpecifier(TypeSpecifier specifier) {
    const bool isSampler = specifier == kType_Sampler3D || specifier == kType_SamplerCube;
    return isSampler ? kType_Sampler2D : specifier;
}

std::unique_ptr<IStorage> CreateParameterStorage(IOpenKLContext* context, TypeSpecifier specifier,
                                                 int length, bool resizable) {
    const auto create = [=]<class T>(std::type_identity<T>) -> std::unique_ptr<IStorage> {
        auto storage = std::make_unique<ParameterStorage<T, Value>>();
        if (!storage->Init(context, length, resizable)) {
            return nullptr;
        }
        return storage;
    };
    return VisitElementType(specifier, std::unique_ptr<IStorage>(), create);
}

} // namespace Tolen::Effects

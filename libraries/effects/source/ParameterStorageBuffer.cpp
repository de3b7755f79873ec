#include "ParameterStorageBuffer.h"

#include "ParameterValueArray.h"

#include "TolenOpenKLWrapper/IKLPrimitive.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

template <class Parameter, class T>
bool ParameterStorageBuffer<Parameter, T>::Init(IOpenKLContext* context, Parameter* parameter,
                                                int length, bool resizable) {
    _pContext = context;
    _pParameter = parameter;
    this->_pValue = std::make_unique<ValueBuffer<T>>(context, length, resizable, T());
    if (context != nullptr && this->_pValue->GetBuffer() == nullptr) {
        Shutdown();
        return false;
    }
    return true;
}

template <class Parameter, class T>
void ParameterStorageBuffer<Parameter, T>::Shutdown() {
    ParameterStorageTyped<T, ValueBuffer<T>>::Shutdown();
    _pContext = nullptr;
    _pParameter = nullptr;
}

template <class Storage>
bool ParameterStorageApplyBuffer<Storage>::Apply(IKLPrimitive* primitive, IKLProgram*,
                                                 const std::string&, int location) {
    if (this->_pValue == nullptr || this->_GetParameter() == nullptr || primitive == nullptr) {
        return false;
    }
    IKLBuffer* const buffer = this->_pValue->GetBuffer();
    const std::string name = this->_GetParameter()->GetNameMangled();
    if (buffer == nullptr) {
        ConsolePrint("ParameterStorageApplyBuffer::Apply: Set Uniform Block impossible (%s) (NULL "
                     "buffer)\n",
                     name.c_str());
        return true;
    }
    if (!primitive->SetUniformBlock(name, location, buffer)) {
        ConsolePrint("ParameterStorageApplyBuffer::Apply: Set Uniform Block failed (%s)\n",
                     name.c_str());
        return false;
    }
    return true;
}

std::unique_ptr<IStorage> CreateParameterStorageBuffer(IOpenKLContext* context,
                                                       ParameterValueArray* parameter,
                                                       TypeSpecifier specifier, int length,
                                                       bool resizable) {
    const auto create = [=]<class T>(std::type_identity<T>) -> std::unique_ptr<IStorage> {
        auto storage = std::make_unique<
            ParameterStorageApplyBuffer<ParameterStorageBuffer<ParameterValueArray, T>>>();
        if (!storage->Init(context, parameter, length, resizable)) {
            return nullptr;
        }
        return storage;
    };
    return VisitElementType(specifier, std::unique_ptr<IStorage>(), create);
}

} // namespace Tolen::Effects

#include "Parameter_WrapperVectorInterfaceSingle.h"

#include "ValueText.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

Parameter_WrapperVectorInterfaceSingle::Parameter_WrapperVectorInterfaceSingle(
    IParameter* parameter, IParameter* companion)
    : IParameterWrapper(parameter), _pRef(companion), _shaders(companion->GetLength()) {}

void Parameter_WrapperVectorInterfaceSingle::Detach() {
    IParameterWrapper::Detach();
    _pRef = nullptr;
}

int Parameter_WrapperVectorInterfaceSingle::GetLength() const {
    return _pRef == nullptr ? 0 : _pRef->GetLength();
}

bool Parameter_WrapperVectorInterfaceSingle::SetLength(int length) {
    return _pRef != nullptr && ResizeIndexed(_pRef, _shaders, length, _life.GetWatch());
}

bool Parameter_WrapperVectorInterfaceSingle::Set(IShader* shader) {
    if (_pParameter == nullptr || _pRef == nullptr) {
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    const BorrowedShader target(shader);
    if (!_pParameter->Set(shader)) {
        return false;
    }
    if (!alive || target.Get() != shader) {
        return true;
    }
    _connected.Set(shader);
    if (shader == nullptr || AsLight(shader) != nullptr) {
        return _pRef != nullptr && _pRef->Set(UnwrapShader(shader).cell);
    }
    return true;
}

bool Parameter_WrapperVectorInterfaceSingle::Set(IShader* shader, int index) {
    if (_pParameter == nullptr || _pRef == nullptr) {
        return false;
    }
    const ShaderCell unwrapped = UnwrapShader(shader);
    if (shader != nullptr) {
        IShader* current = nullptr;
        if (unwrapped.pBase == nullptr || !_pParameter->Get(current)) {
            return false;
        }
        const bool isFree =
            current == nullptr || UnwrapShader(current).pBase == unwrapped.pBase;
        if (!TOLEN_CHECK_TEXT(isFree,
                              "incoming shader is different from the existing one for the "
                              "vectorized shader input. Unconnect all inputs then connect the new "
                              "shader",
                              "Source/Parameter_WrapperVectorInterfaceSingle")) {
            return false;
        }
    }
    const LifeToken::Watch alive = _life.GetWatch();
    const BorrowedShader target(shader);
    if (!_pParameter->Set(unwrapped.pBase) || !alive || _pRef == nullptr ||
        target.Get() != shader || !_pRef->Set(UnwrapShader(shader).cell, index)) {
        return false;
    }
    if (alive && shader != nullptr) {
        _shaders.Set(target.Get(), index);
    } else if (alive) {
        _shaders.Clear(index);
    }
    return true;
}

bool Parameter_WrapperVectorInterfaceSingle::Get(IShader*& shader) {
    shader = _connected.Get();
    return true;
}

bool Parameter_WrapperVectorInterfaceSingle::Get(IShader*& shader, int index) {
    return _shaders.Get(shader, index);
}

bool Parameter_WrapperVectorInterfaceSingle::GetAsString(std::string& out) const {
    out = ElementToString(_connected.Get());
    return true;
}

bool Parameter_WrapperVectorInterfaceSingle::GetAsString(std::string& out, int index) const {
    return _shaders.GetAsString(out, index);
}

} // namespace Tolen::Effects

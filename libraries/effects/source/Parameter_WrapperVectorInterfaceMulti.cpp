#include "Parameter_WrapperVectorInterfaceMulti.h"

namespace Tolen::Effects {

Parameter_WrapperVectorInterfaceMulti::Parameter_WrapperVectorInterfaceMulti(IParameter* parameter,
                                                                             IParameter* companion)
    : IParameterWrapper(parameter), _pRef(companion), _shaders(companion->GetLength()) {}

void Parameter_WrapperVectorInterfaceMulti::Detach() {
    IParameterWrapper::Detach();
    _pRef = nullptr;
}

int Parameter_WrapperVectorInterfaceMulti::GetLength() const {
    return _pRef == nullptr ? 0 : _pRef->GetLength();
}

bool Parameter_WrapperVectorInterfaceMulti::SetLength(int length) {
    return _pRef != nullptr && ResizeIndexed(_pRef, _shaders, length, _life.GetWatch());
}

bool Parameter_WrapperVectorInterfaceMulti::Set(IShader* shader, int index) {
    if (_pParameter == nullptr || _pRef == nullptr) {
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    if (shader != nullptr) {
        const BorrowedShader target(shader);
        const bool isConnected = ConnectIndexed(_pParameter, _pRef, shader, index, alive);
        if (isConnected && alive) {
            _shaders.Set(target.Get(), index);
        }
        return isConnected;
    }
    // Neither form is one that these kinds of parameters have: entries and indexers stay.
    _pParameter->Set(shader);
    if (alive && _pRef != nullptr) {
        _pRef->Set(0, index);
    }
    if (alive) {
        _shaders.Clear(index);
    }
    return true;
}

bool Parameter_WrapperVectorInterfaceMulti::Get(IShader*& shader, int index) {
    return _shaders.Get(shader, index);
}

bool Parameter_WrapperVectorInterfaceMulti::GetAsString(std::string& out, int index) const {
    return _shaders.GetAsString(out, index);
}

} // namespace Tolen::Effects

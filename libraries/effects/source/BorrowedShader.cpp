#include "BorrowedShader.h"

#include "EndingShader.h"

#include "TolenEffects/IShader.h"

namespace Tolen::Effects {

void BorrowedShader::Set(IShader* shader) {
    if (shader == _pShader) {
        return;
    }
    auto onEnd = MakeDelegate(this, &BorrowedShader::_OnEnd);
    if (_pShader != nullptr) {
        RemoveListenerEnd(_pShader, onEnd);
    }
    _pShader = shader;
    if (_pShader != nullptr) {
        AddListenerEnd(_pShader, onEnd);
    }
}

bool BorrowedShader::_OnEnd(IShader*) {
    _pShader = nullptr;
    return true;
}

} // namespace Tolen::Effects

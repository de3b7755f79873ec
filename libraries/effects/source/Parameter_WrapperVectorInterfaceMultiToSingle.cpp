#include "Parameter_WrapperVectorInterfaceMultiToSingle.h"

#include "ShaderIndexer.h"
#include "Shader_LightShader.h"
#include "ValueText.h"

#include "TolenCore/Assert.h"

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/Parameter_WrapperVectorInterfaceMultiToSingle";

const Vector2i kNoConnection(-1, -1);
const Vector2i kNoLight(-2, -2);

} // namespace

Parameter_WrapperVectorInterfaceMultiToSingle::Parameter_WrapperVectorInterfaceMultiToSingle(
    Shader_LightShader* shader, IParameter* parameter, IParameter* companion)
    : IParameterWrapper_ArrayCell(parameter), _pRef(companion), _pShader(shader),
      _index(shader->GetSubIndex()) {}

Parameter_WrapperVectorInterfaceMultiToSingle::~Parameter_WrapperVectorInterfaceMultiToSingle() {
    if (_pRef != nullptr && _index >= 0) {
        const bool res = _pRef->Set(kNoLight, _index);
        TOLEN_CHECK(res && "error while deleting the parameter wrapper", kSource);
    }
}

void Parameter_WrapperVectorInterfaceMultiToSingle::Detach() {
    IParameterWrapper_ArrayCell::Detach();
    _pRef = nullptr;
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::SetSubIndex(int index, bool move) {
    if (index == _index) {
        return true;
    }
    const LifeToken::Watch alive = _pShader->GetWatch();
    Vector2i ref;
    const bool isMoved =
        move && _pRef != nullptr && _pRef->Get(ref, _index) && _pRef->Set(ref, index);
    if (alive) {
        _index = index;
    }
    return isMoved || !move;
}

int Parameter_WrapperVectorInterfaceMultiToSingle::GetLength() const {
    return _pRef == nullptr ? 0 : _pRef->GetLength();
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::SetLength(int length) {
    return _pRef != nullptr && _pRef->SetLength(length);
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::Set(IShader* shader) {
    if (_pParameter == nullptr || _pRef == nullptr || _index < 0) {
        return false;
    }
    if (shader == _connected.Get()) {
        return true;
    }
    if (shader == nullptr) {
        _connected.Set(nullptr);
        return _pRef->Set(kNoConnection, _index);
    }
    const BorrowedShader target(shader);
    const LifeToken::Watch alive = _pShader->GetWatch();
    if (!ConnectIndexed(_pParameter, _pRef, shader, _index, alive)) {
        return false;
    }
    if (alive) {
        _connected.Set(target.Get());
        _StartListeningShaderWrapper(GetTargetWrapper());
    }
    return true;
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::Get(IShader*& shader) {
    shader = nullptr;
    if (_pShader->GetSubIndex() < 0) {
        return false;
    }
    shader = _connected.Get();
    return true;
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::GetAsString(std::string& out) const {
    out = ElementToString(_connected.Get());
    return true;
}

Shader_LightShader* Parameter_WrapperVectorInterfaceMultiToSingle::GetTargetWrapper() const {
    return AsLight(_connected.Get());
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::_StartListeningShaderWrapper(
    Shader_LightShader*) {
    return true;
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetWrapperDelete(IShader*) {
    return true;
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetBaseDelete(IShader*) {
    return TOLEN_CHECK_TEXT(false, "Implement!", kSource);
}

bool Parameter_WrapperVectorInterfaceMultiToSingle::_OnTargetWrapperIndexChange(
    Shader_LightShader* target, int iIndexOld) {
    Vector2i vRef;
    if (_pRef == nullptr || !_pRef->Get(vRef, _index)) {
        return false;
    }
    TOLEN_CHECK(vRef.y==iIndexOld && "mismatch in light shader indexer records", kSource);
    vRef.y = target->GetSubIndex();
    return _pRef->Set(vRef);
}

} // namespace Tolen::Effects

#include "ParameterInterfaceSingle.h"

#include "DefaultConstructor.h"

#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"

namespace Tolen::Effects {

namespace {

constexpr const char* kMismatch = "Input type mismatch. Expected \"%s\" but got \"%s::%s\"\n";

} // namespace

bool ParameterInterfaceSingle::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                    StructureNode* owner, Result* result) {
    _Init(manager, declaration, owner, "ParameterInterfaceSingle", 1, false);
    if (declaration->GetInitializer() != nullptr && !_InitInitializer(result)) {
        Shutdown();
        return false;
    }
    return true;
}

bool ParameterInterfaceSingle::_InitInitializer(Result* result) {
    const UserType* const type = GetConstructedType(_pDecl, "Source/ParameterInterfaceSingle");
    if (type == nullptr) {
        return false;
    }
    IShader* const shader = _CreateDefault(type->GetName()->GetString(), result);
    if (shader == nullptr) {
        ConsolePrint("ParameterInterfaceSingle::_InitInitializer Create Shader\n");
        return false;
    }
    _Store(0, shader, true);
    return true;
}

bool ParameterInterfaceSingle::Set(IShader* value, int) {
    return Set(value);
}

bool ParameterInterfaceSingle::Set(IShader* value) {
    if (_pValue == nullptr || !_Fits(value, kMismatch)) {
        return false;
    }
    if (value == _pValue->Get(0)) {
        return true;
    }
    if (!_CanConnect(value)) {
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    _DestroyDefault(_Store(0, value, false));
    return alive && _ChangeStructure();
}

} // namespace Tolen::Effects

#include "ParameterInterfaceArray.h"

#include "MgrEffectsImpl.h"
#include "Shader.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <algorithm>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/ParameterInterfaceArray";
constexpr const char* kMismatch = "Interface mismatch. Expected \"%s\" but got \"%s::%s\"";

/// The class that a constructor call names. Within an array constructor the calls have a name only.
std::string _GetClassName(const FunctionCall* call) {
    if (call->GetName() != nullptr) {
        return call->GetName()->GetString();
    }
    const Type* const type = call->GetType();
    if (type == nullptr || type->GetClass() != kClass_UserType) {
        return std::string();
    }
    return static_cast<const UserType*>(type)->GetName()->GetString();
}

} // namespace

bool ParameterInterfaceArray::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                   const ClassDefinition* definition, StructureNode* owner,
                                   int length, Result* result) {
    _pClass = definition;
    return _InitArray(manager, declaration, owner, length, result);
}

bool ParameterInterfaceArray::Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                                   const InterfaceDefinition* definition, StructureNode* owner,
                                   int length, Result* result) {
    _pInterface = definition;
    return _InitArray(manager, declaration, owner, length, result);
}

bool ParameterInterfaceArray::_InitArray(IMgrEffects* manager,
                                         const VariableDeclaration* declaration,
                                         StructureNode* owner, int length, Result* result) {
    if (length < 0) {
        return false;
    }
    _Init(manager, declaration, owner, "ParameterInterfaceArray", length == 0 ? 1 : length,
          length == 0);
    _nameCount = _nameMangled + "_Count";
    if (declaration->GetInitializer() != nullptr && !_InitInitializer(result)) {
        Shutdown();
        return false;
    }
    return true;
}

bool ParameterInterfaceArray::_InitInitializer(Result* result) {
    bool isArray = false;
    const FunctionCall* const call = _GetInitializerFunction(isArray);
    if (call == nullptr) {
        return false;
    }
    return isArray ? _InitInitializer_Multi(result, call)
                   : _InitInitializer_Single(result, 0, GetLength(), call);
}

const FunctionCall* ParameterInterfaceArray::_GetInitializerFunction(bool& isArray) const {
    // Each check reads only what the one before allowed.
    const Expression* const pExpressionInit = _pDecl->GetInitializer();
    if (!TOLEN_CHECK(pExpressionInit->GetClass() == kClass_FunctionCall, kSource)) {
        return nullptr;
    }
    const auto* const call = static_cast<const FunctionCall*>(pExpressionInit);
    const Type* const pTypeInit = call->GetType();
    if (!TOLEN_CHECK_TEXT(pTypeInit != nullptr && pTypeInit->GetClass() == kClass_UserType,
                          "pTypeInit->GetClass() == kClass_UserType", kSource)) {
        return nullptr;
    }
    const auto* const pUserTypeInit = static_cast<const UserType*>(pTypeInit);
    if (!TOLEN_CHECK(pUserTypeInit->GetName() != NULL, kSource)) {
        return nullptr;
    }
    isArray = pTypeInit->IsArray();
    return call;
}

bool ParameterInterfaceArray::_InitInitializer_Single(Result* result, int first, int end,
                                                      const FunctionCall* call) {
    const std::string name = _GetClassName(call);
    for (int i = first; i < end; ++i) {
        IShader* const shader = _CreateDefault(name, result);
        if (shader == nullptr) {
            ConsolePrint("ParameterInterfaceArray::_InitInitializer Default Shader Construction\n");
            return false;
        }
        _Store(i, shader, true);
    }
    return true;
}

bool ParameterInterfaceArray::_InitInitializer_Multi(Result* result, const FunctionCall* call) {
    const auto& arguments = call->GetParameters();
    const int count = static_cast<int>(arguments.size());
    if (GetLength() != count && !_Resize(count)) {
        ConsolePrint("ParameterInterfaceArray::_InitInitializer Length Mismatch\n");
        return false;
    }
    for (int iParam = 0; iParam < count; ++iParam) {
        const Expression* const argument = arguments[static_cast<std::size_t>(iParam)];
        if (argument->GetClass() != kClass_FunctionCall) {
            ConsolePrint(
                "ParameterInterfaceArray::_InitInitializer Expression Not A Constructor\n");
            return false;
        }
        IShader* const shader =
            _CreateDefault(_GetClassName(static_cast<const FunctionCall*>(argument)), result);
        if (shader == nullptr) {
            ConsolePrint("ParameterInterfaceArray::_InitInitializer Default Shader Construction\n");
            return false;
        }
        if (TOLEN_CHECK_TEXT(_pValue->Get(iParam) == nullptr, "_pValue->Get( iParam ) == NULL",
                             kSource)) {
            _Store(iParam, shader, true);
        }
    }
    return true;
}

bool ParameterInterfaceArray::IsResizable() const {
    return _pValue != nullptr && _pValue->IsResizable();
}

const std::string& ParameterInterfaceArray::GetNameDeclared() const {
    return _pDecl->GetIdentifier()->GetString();
}

bool ParameterInterfaceArray::GetShader(IShader*& shader, int index) const {
    if (index < 0 || index >= GetLength()) {
        return false;
    }
    shader = GetShaderBase(index);
    return true;
}

bool ParameterInterfaceArray::SetLength(int length) {
    if (_pValue == nullptr || length < 0) {
        return false;
    }
    const int before = GetLength();
    if (length == before) {
        return true;
    }
    if (!IsResizable()) {
        ConsoleError("Value::SetLength Not Resizable\n");
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    std::vector<IShader*> defaults;
    for (int i = length; i < before; ++i) {
        if (IShader* const made = _Store(i, nullptr, false)) {
            defaults.push_back(made);
        }
    }
    if (!_Resize(length)) {
        return false;
    }
    for (IShader* made : defaults) {
        _DestroyDefault(made);
        if (!alive) {
            return false;
        }
    }
    if (length > before && _pDecl->GetInitializer() != nullptr) {
        bool isArray = false;
        const FunctionCall* const call = _GetInitializerFunction(isArray);
        if (call != nullptr && !isArray) {
            _InitInitializer_Single(nullptr, before, length, call);
        }
    }
    return _ChangeStructure();
}

bool ParameterInterfaceArray::Set(IShader* value, int index) {
    if (_pValue == nullptr) {
        return false;
    }
    if (index < 0 || index >= GetLength()) {
        ConsolePrint("ParameterInterfaceArray::Set Index Out of Bounds\n");
        _pMgrEffects->GetImplementation()->AddResultMessage("Index (%d) out of bounds (length=%d)",
                                                            index, GetLength());
        return false;
    }
    if (!_Fits(value, kMismatch)) {
        return false;
    }
    if (value == _pValue->Get(index)) {
        return true;
    }
    if (!_CanConnect(value)) {
        return false;
    }
    const LifeToken::Watch alive = _life.GetWatch();
    _DestroyDefault(_Store(index, value, false));
    return alive && _ChangeStructure();
}

bool ParameterInterfaceArray::Set(IShader** values, int count) {
    if (_pValue == nullptr || count < 0 || (values == nullptr && count > 0)) {
        return false;
    }
    const auto fits = [this](IShader* shader) { return _Fits(shader, kMismatch); };
    const auto canConnect = [this](IShader* shader) { return _CanConnect(shader); };
    if (!std::all_of(values, values + count, fits) ||
        !std::all_of(values, values + count, canConnect)) {
        return false;
    }
    const bool isTooLong = count > GetLength();
    // Everything is in its place before a default goes: going, it empties the cells that hold it.
    std::vector<IShader*> defaults;
    for (int i = 0; i < GetLength(); ++i) {
        const bool isReplaced = i < count && !isTooLong;
        if (IsDefault(i) || isReplaced) {
            if (IShader* const made = _Store(i, isReplaced ? values[i] : nullptr, false)) {
                defaults.push_back(made);
            }
        }
    }
    const LifeToken::Watch alive = _life.GetWatch();
    for (IShader* made : defaults) {
        _DestroyDefault(made);
        if (!alive) {
            return false;
        }
    }
    if (isTooLong) {
        ConsoleError("Value::SetArray Array Out of Bounds\n");
        if (!defaults.empty()) {
            _ChangeStructure();
        }
        return false;
    }
    return _ChangeStructure();
}

} // namespace Tolen::Effects

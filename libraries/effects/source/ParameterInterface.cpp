#include "ParameterInterface.h"

#include "EndingShader.h"
#include "LocationText.h"
#include "MgrEffectsImpl.h"
#include "PrototypeShader.h"
#include "ScopedHold.h"
#include "Shader.h"
#include "StructureChange.h"

#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/Limits.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <utility>

namespace Tolen::Effects {

namespace {

std::uint64_t _GetClassNumber(Shader* shader) {
    return static_cast<PrototypeShader*>(shader->GetPrototype())->GetCreationNumber();
}

} // namespace

ParameterInterface::~ParameterInterface() {
    Shutdown();
}

void ParameterInterface::_Init(IMgrEffects* manager, const VariableDeclaration* declaration,
                               StructureNode* owner, const std::string& stem, int length,
                               bool isResizable) {
    _pMgrEffects = manager;
    _pDecl = declaration;
    _pOwner = owner;
    _key = manager->CreateKey();
    _nameMangled = stem + _key.ToString();
    _nameIndex = _nameMangled + "_Index";
    _pValue = std::make_unique<Value<IShader*>>(length, isResizable, nullptr);
    _bases.resize(static_cast<std::size_t>(_pValue->GetLength()));
    _defaults.resize(_bases.size());
    _countIncomplete = _pValue->GetLength();
}

void ParameterInterface::Shutdown() {
    if (_pMgrEffects == nullptr) {
        return;
    }
    std::vector<IShader*> defaults;
    for (int i = 0; i < GetLength(); ++i) {
        if (IShader* made = _Store(i, nullptr, false)) {
            defaults.push_back(made);
        }
    }
    for (IShader* made : defaults) {
        _DestroyDefault(made);
    }
    _pValue.reset();
    _bases.clear();
    _defaults.clear();
    _pMgrEffects->DestroyKey(_key);
    _key = Key::Null();
    _nameMangled = "Shutdown";
    _pMgrEffects = nullptr;
    _pOwner = nullptr;
}

bool ParameterInterface::AddListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) {
    if (_pOwner != nullptr) {
        _pOwner->MarkHeard();
    }
    return _listenersChangeStructure.Add(listener);
}

bool ParameterInterface::RemoveListenerChangeStructure(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeStructure.Remove(listener);
}

bool ParameterInterface::AddListenerChangeConnection(FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeConnection.Add(listener);
}

bool ParameterInterface::RemoveListenerChangeConnection(
    FastDelegate1<IParameter*, bool>& listener) {
    return _listenersChangeConnection.Remove(listener);
}

bool ParameterInterface::IsComplete(Result* result) const {
    if (_pValue == nullptr) {
        return false;
    }
    if (_countIncomplete == 0) {
        return true;
    }
    if (Shader* const shader = result == nullptr ? nullptr : GetShaderIncomplete()) {
        shader->IsComplete(result);
    }
    return false;
}

std::string ParameterInterface::GetType() {
    return _pDecl == nullptr
               ? std::string()
               : static_cast<const UserType*>(_pDecl->GetType())->GetName()->GetString();
}

std::string ParameterInterface::GetName() {
    return _pDecl == nullptr ? std::string() : _pDecl->GetIdentifier()->GetString();
}

int ParameterInterface::GetLength() const {
    return _pValue == nullptr ? 0 : _pValue->GetLength();
}

bool ParameterInterface::IsDefault(int index) const {
    return index >= 0 && index < GetLength() && _defaults[static_cast<std::size_t>(index)];
}

bool ParameterInterface::IsDefault() const {
    return std::find(_defaults.begin(), _defaults.end(), true) != _defaults.end();
}

bool ParameterInterface::GetAsString(std::string& out, int index) const {
    return _pValue != nullptr && _pValue->GetValueAsString(out, index);
}

bool ParameterInterface::GetAsString(std::string& out) const {
    return _pValue != nullptr && _pValue->GetValueAsString(out);
}

bool ParameterInterface::Get(IShader*& value, int index) {
    if (index < 0 || index >= GetLength()) {
        return false;
    }
    value = _pValue->Get(index);
    return true;
}

bool ParameterInterface::Get(IShader*& value) {
    return Get(value, 0);
}

Shader* ParameterInterface::GetShaderBase(int index) const {
    return index < 0 || index >= GetLength() ? nullptr : _bases[static_cast<std::size_t>(index)];
}

void ParameterInterface::ProveCells() {
    const Shader* last = nullptr;
    for (int i = 0; i < GetLength(); ++i) {
        Shader* const base = GetShaderBase(i);
        if (base != last && base != nullptr && base == _pValue->Get(i)) {
            _classesProven.insert(_GetClassNumber(base));
        }
        last = base;
    }
}

bool ParameterInterface::AreChangesProven() const {
    return std::all_of(_cellsChanged.begin(), _cellsChanged.end(), [this](int cell) {
        Shader* const base = GetShaderBase(cell);
        // Views may lack what stands behind them.
        return base == nullptr || (base == _pValue->Get(cell) &&
                                   _classesProven.count(_GetClassNumber(base)) != 0);
    });
}

Shader* ParameterInterface::GetShaderIncomplete() const {
    const auto found = std::find_if(_bases.begin(), _bases.end(), [](const Shader* base) {
        return base == nullptr || !base->IsCompleteNode();
    });
    return found == _bases.end() ? nullptr : *found;
}

bool ParameterInterface::_Fits(IShader* shader, const char* format) const {
    if (shader == nullptr) {
        return true;
    }
    const std::string& type =
        static_cast<const UserType*>(_pDecl->GetType())->GetName()->GetString();
    const std::string interfaceName = shader->GetInterfaceName();
    const std::string className = shader->GetClassName();
    if (type == className || type == interfaceName) {
        return true;
    }
    _pMgrEffects->GetImplementation()->AddResultMessage(format, type.c_str(), interfaceName.c_str(),
                                                        className.c_str());
    return false;
}

bool ParameterInterface::_CanConnect(IShader* shader) const {
    if (shader == nullptr) {
        return true;
    }
    Shader* const base = Shader::GetBase(shader);
    MgrEffectsImpl* const implementation = _pMgrEffects->GetImplementation();
    if (base == nullptr || base->IsGoing() || base->GetMgrEffects() != _pMgrEffects) {
        implementation->AddResultMessage(
            "sub shader %s can not be attached to %s, it's not compatible\n",
            shader->GetName().c_str(), _pDecl->GetIdentifier()->GetString().c_str());
        return false;
    }
    const bool isRankedBelow =
        !implementation->HasInputsOfClasses() && base->IsRankedBelow(_pOwner);
    if (!isRankedBelow && base->DependsOn(_pOwner)) {
        implementation->AddResultMessage(
            "Input cycle. \"%s::%s\" already depends on this input's shader\n",
            shader->GetInterfaceName().c_str(), shader->GetClassName().c_str());
        return false;
    }
    return true;
}

IShader* ParameterInterface::_Store(int index, IShader* shader, bool isDefault) {
    const auto cell = static_cast<std::size_t>(index);
    IShader* const before = _pValue->Get(index);
    IShader* const made = _defaults[cell] ? before : nullptr;
    _cellsChanged.push_back(index);
    _ForgetView(before, index);
    _Disconnect(index);
    _pValue->Set(shader, index);
    _defaults[cell] = isDefault;
    _bases[cell] = shader == nullptr ? nullptr : Shader::GetBase(shader);
    _Connect(index);
    _ListenToView(shader, index);
    return made;
}

void ParameterInterface::_ListenToView(IShader* view, int index) {
    if (view == _bases[static_cast<std::size_t>(index)]) {
        return;
    }
    std::set<int>& cells = _views[view];
    if (cells.empty()) {
        auto onEnd = MakeDelegate(this, &ParameterInterface::_OnEndView);
        AddListenerEnd(view, onEnd);
    }
    cells.insert(index);
}

void ParameterInterface::_ForgetView(IShader* view, int index) {
    const auto found = _views.find(view);
    if (found == _views.end()) {
        return;
    }
    found->second.erase(index);
    if (found->second.empty()) {
        auto onEnd = MakeDelegate(this, &ParameterInterface::_OnEndView);
        RemoveListenerEnd(view, onEnd);
        _views.erase(found);
    }
}

bool ParameterInterface::_OnEndView(IShader* view) {
    const auto found = _views.find(view);
    if (found == _views.end()) {
        return true;
    }
    const std::set<int> cells = std::move(found->second);
    _views.erase(found);
    for (const int index : cells) {
        _Store(index, nullptr, false);
    }
    _ChangeStructure();
    return true;
}

void ParameterInterface::_Connect(int index) {
    Shader* const base = _bases[static_cast<std::size_t>(index)];
    if (base == nullptr) {
        return;
    }
    base->AddUser(this, index);
    if (base->IsCompleteNode()) {
        --_countIncomplete;
    }
    if (_pOwner->IsHeard()) {
        base->MarkHeard();
    }
}

void ParameterInterface::_Disconnect(int index) {
    Shader*& base = _bases[static_cast<std::size_t>(index)];
    if (base == nullptr) {
        return;
    }
    base->RemoveUser(this, index);
    if (base->IsCompleteNode()) {
        ++_countIncomplete;
    }
    base = nullptr;
}

void ParameterInterface::_DestroyDefault(IShader* shader) {
    if (shader != nullptr) {
        _pMgrEffects->DestroyShader(shader);
    }
}

bool ParameterInterface::_Resize(int length) {
    const int before = GetLength();
    if (!_pValue->SetLength(length)) {
        return false;
    }
    _bases.resize(static_cast<std::size_t>(length));
    _defaults.resize(static_cast<std::size_t>(length));
    _countIncomplete += length - before;
    return true;
}

IShader* ParameterInterface::_CreateDefault(const std::string& name, Result* result) {
    MgrEffectsImpl* const implementation = _pMgrEffects->GetImplementation();
    const MgrEffectsImpl::DefaultScope scope(implementation);
    if (scope.GetDepth() > kLimitDefaultDepth) {
        if (result != nullptr) {
            result->Add("%s: default shaders nest deeper than the limit of %d",
                        LocationText(_pDecl->GetRange()).c_str(), kLimitDefaultDepth);
        }
        return nullptr;
    }
    IShader* const shader = _pMgrEffects->CreateShader(name, result);
    if (shader == nullptr) {
        return nullptr;
    }
    if (!_Fits(shader, "Input type mismatch. Expected \"%s\" but got \"%s::%s\"\n") ||
        !_CanConnect(shader)) {
        _pMgrEffects->DestroyShader(shader);
        return nullptr;
    }
    return shader;
}

bool ParameterInterface::_ChangeStructure() {
    if (_pOwner == nullptr) {
        return true;
    }
    const ScopedHold hold(_pMgrEffects);
    const LifeToken::Watch alive = _life.GetWatch();
    bool good = StructureChange::Run(_pOwner, StructureOrigin::Input);
    if (!alive) {
        return good;
    }
    good = _listenersChangeStructure.Fire(this) && good;
    if (!alive) {
        return good;
    }
    const bool heard = _listenersChangeConnection.FireAll(this);
    if (alive) {
        _cellsChanged.clear();
    }
    return heard && good;
}

bool ParameterInterface::RelayChangeStructure() {
    return _listenersChangeStructure.Fire(this);
}

void ParameterInterface::OnDeleteShader(Shader* base, const std::set<int>& cells) {
    for (const int index : cells) {
        const auto cell = static_cast<std::size_t>(index);
        // A cell may hold a view of the shader that goes.
        if (!TOLEN_CHECK_TEXT(base == _bases[cell], "pShader == _pValue->Get()",
                              "Source/ParameterInterfaceSingle")) {
            continue;
        }
        _cellsChanged.push_back(index);
        _ForgetView(_pValue->Get(index), index);
        _bases[cell] = nullptr;
        _pValue->Set(nullptr, index);
        _defaults[cell] = false;
        if (base->IsCompleteNode()) {
            ++_countIncomplete;
        }
    }
    _ChangeStructure();
}

void ParameterInterface::OnChangeCompleteness(int countCells, bool isComplete) {
    _countIncomplete += isComplete ? -countCells : countCells;
}

} // namespace Tolen::Effects

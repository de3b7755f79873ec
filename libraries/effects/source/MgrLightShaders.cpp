#include "MgrLightShaders.h"

#include "ScopedHold.h"

#include "TolenEffects/IMember.h"
#include "TolenEffects/IMgrEffects.h"
#include "TolenEffects/IParameter.h"

#include "TolenCore/Assert.h"
#include "TolenCore/Console.h"

#include <algorithm>
#include <utility>

namespace Tolen::Effects {

namespace {

constexpr const char* kSource = "Source/MgrLightShaders";

constexpr const char* kArrayClasses[] = {
    "LightInstanceNullArray",
    "LightInstanceStandardArray",

    "LightNullArray",
    "LightPointArray",
    "LightDirectArray",
    "LightAmbientArray",
    "LightLinearArray",
    "LightPlanarAreaArray",
    "LightPlanarAreaFacingArray",
    "LightSphereAreaBruteArray",
    "LightSphereAreaImportanceArray",
    "LightDome_ConstantArray",
    "LightDomeArray",
    "LightPortalRectArray",
    "LightCylindricalArray",
    "LightCylindricalCappedArray",

    "LightFocusNullArray",
    "LightFocusConeArray",
    "LightFocusPyramidArray",
    "LightFocusCylinderArray",
    "LightFocusBoxArray",
    "LightFocusDiscAreaArray",
    "LightFocusRectAreaArray",

    "LightDecayNullArray",
    "LightDecayDoubleArray",
    "LightDecayInverseArray",
    "LightDecayInvSquareArray",
    "LightDecayNearFarArray",

    "EmissionNullArray",
    "EmissionSurfaceDiffuseArray",
    "EmissionLinearDiffuseArray",
    "EmissionGoniophotometricArray",

    "ProjectorMapNullArray",
    "ProjectorMapConeArray",
    "ProjectorMapOmniArray",
    "ProjectorMapDirectBoxArray",
    "ProjectorMapDirectCylinderArray",

    "ShadowNullArray",
    "ShadowSharpArray",
    "ShadowBlurredArray",
    "ShadowAreaPlanarArray",
    "ShadowAreaPlanarAngularArray",
    "ShadowAreaSphereBruteArray",
    "ShadowAreaBoxArray",
};
static_assert(std::size(kArrayClasses) == 44);

constexpr const char* kReceiverClass = "LightManagerArray";

/// Each behind those that its inputs take.
constexpr const char* kNullShaders[] = {
    "LightDecayNullArray", "LightFocusNullArray", "EmissionNullArray",    "ProjectorMapNullArray",
    "ShadowNullArray",     "LightNullArray",      "Integrator2Null",      "Integrator3Null",
    "Integrator6Null",     "TextureBlack",        "LightInstanceNullArray",
};

MgrLightShaders* s_pMgrLightShaders = nullptr;

/// Gives the arrays among @p parts a length, up to the first that can't take it.
template <class Part>
bool _Resize(const std::vector<Part*>& parts, const int& length) {
    return std::all_of(parts.begin(), parts.end(), [&length](Part* part) {
        return part->GetLength() == length || part->SetLength(length);
    });
}

} // namespace

IMgrLightShaders* CreateMgrLightShaders() {
    if (s_pMgrLightShaders == nullptr) {
        s_pMgrLightShaders = new MgrLightShaders;
    }
    return s_pMgrLightShaders;
}

void DestroyMgrLightShaders() {
    if (s_pMgrLightShaders != nullptr) {
        s_pMgrLightShaders->Destroy();
    }
}

class MgrLightShaders::Operation {
public:
    explicit Operation(MgrLightShaders* manager) : _pManager(manager) {
        ++_pManager->_countOperations;
    }
    ~Operation() {
        if (_pManager->_countOperations == 1) {
            _End();
        }
        if (--_pManager->_countOperations == 0 && _pManager->_mustDestroy) {
            delete _pManager;
        }
    }
    Operation(const Operation&) = delete;
    Operation& operator=(const Operation&) = delete;

private:
    void _End() {
        do {
            _pManager->_EndViews();
            if (std::exchange(_pManager->_mustShutdown, false)) {
                _pManager->_Shutdown();
            }
        } while (!_pManager->_ending.empty() || _pManager->_mustShutdown);
    }

    MgrLightShaders* _pManager;
};

MgrLightShaders::~MgrLightShaders() {
    // Nobody may delete this any more.
    ++_countOperations;
    _Shutdown();
    _EndViews();
}

void MgrLightShaders::_EndViews() {
    while (!_ending.empty()) {
        const auto ending = std::move(_ending.back());
        _ending.pop_back();
    }
}

void MgrLightShaders::Destroy() {
    if (s_pMgrLightShaders == this) {
        s_pMgrLightShaders = nullptr;
    }
    if (_countOperations > 0) {
        _mustDestroy = true;
        return;
    }
    delete this;
}

bool MgrLightShaders::Init(IMgrEffects* manager, IMgrConsole* console) {
    if (manager == nullptr || console == nullptr || _pMgrEffects != nullptr) {
        return false;
    }
    const Operation operation(this);
    _pMgrEffects = manager;
    _pConsole = console;
    const auto addArrayClass = [this](const char* name) { return AddArrayClass(name); };
    return std::all_of(std::begin(kArrayClasses), std::end(kArrayClasses), addArrayClass) &&
           AddReceiverClass(kReceiverClass) && _InitNullShaders();
}

bool MgrLightShaders::_InitNullShaders() {
    return std::all_of(std::begin(kNullShaders), std::end(kNullShaders),
                       [this](const char* name) { return _InitNullShader(name); });
}

bool MgrLightShaders::_InitNullShader(const std::string& className) {
    IShader* const shader = CreateShader(className, nullptr);
    if (shader == nullptr) {
        return false;
    }
    const auto [entry, isNew] = _nullShaders.try_emplace(shader->GetInterfaceName());
    if (isNew) {
        entry->second.Set(shader);
    }
    return isNew;
}

bool MgrLightShaders::AddArrayClass(const std::string& name) {
    _arrayClasses.insert(name);
    return true;
}

bool MgrLightShaders::AddReceiverClass(const std::string& name) {
    _receiverClasses.insert(name);
    return true;
}

IShader* MgrLightShaders::CreateShader(const std::string& name, Result* result) {
    if (!TOLEN_CHECK(_pMgrEffects != NULL, kSource) || !TOLEN_CHECK(_pConsole != NULL, kSource) ||
        _isShuttingDown) {
        return nullptr;
    }
    const Operation operation(this);
    if (_arrayClasses.count(name) != 0) {
        return _CreateLightShader(name, result);
    }
    if (_receiverClasses.count(name) != 0) {
        return _CreateReceiver(name, result);
    }
    return _pMgrEffects->CreateShader(name, result);
}

IShader* MgrLightShaders::_CreateLightShader(const std::string& name, Result* result) {
    const ScopedHold hold(_pMgrEffects);
    auto found = _records.find(name);
    if (found == _records.end()) {
        IShader* const made = _pMgrEffects->CreateShader(name, result);
        if (made == nullptr) {
            return nullptr;
        }
        found = _records.try_emplace(name).first;
        found->second.shader.Set(made);
    }
    LightShaderRecord& record = found->second;
    IShader* const shader = record.shader.Get();
    auto owned = std::make_unique<Shader_LightShader>();
    Shader_LightShader* const wrapper = owned.get();
    const std::uint64_t number = wrapper->GetCreationNumber();
    record.wrappers.emplace(number, std::move(owned));
    const int index = record.count++;
    if (!wrapper->Init(_pMgrEffects, shader, index)) {
        return nullptr;
    }
    // A class with arrays that can't be resized has cells for its first lights all the same.
    if (_ResizeParameters(shader, record.count)) {
        _ResizeMembers(shader, record.count);
    }
    const bool isConnected = _ConnectNullShaders(wrapper);
    return isConnected && !_IsGoing() && record.wrappers.count(number) != 0 ? wrapper : nullptr;
}

bool MgrLightShaders::_ResizeParameters(IShader* shader, const int& length) {
    std::vector<IParameter*> arrays;
    auto collect = [&arrays](const std::string&, IParameter* parameter) {
        if (parameter->GetClass() != IParameter::kClass_Interface && parameter->IsArray()) {
            arrays.push_back(parameter);
        }
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
    shader->VisitParameters(visit);
    return _Resize(arrays, length);
}

bool MgrLightShaders::_ResizeMembers(IShader* shader, const int& length) {
    std::vector<IMember*> arrays;
    auto collect = [&arrays](const std::string&, IMember* member) {
        if (member->IsArray()) {
            arrays.push_back(member);
        }
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IMember*, bool>::Borrow(collect);
    shader->VisitMembers(visit);
    return _Resize(arrays, length);
}

bool MgrLightShaders::_ConnectNullShaders(Shader_LightShader* wrapper) {
    std::vector<IParameter*> inputs;
    auto collect = [&inputs](const std::string&, IParameter* parameter) {
        if (parameter->GetClass() == IParameter::kClass_Interface) {
            inputs.push_back(parameter);
        }
        return true;
    };
    auto visit = FastDelegate2<const std::string&, IParameter*, bool>::Borrow(collect);
    wrapper->VisitParameters(visit);
    return std::all_of(inputs.begin(), inputs.end(),
                       [this](IParameter* input) { return _ConnectNullShader(input); });
}

bool MgrLightShaders::_ConnectNullShader(IParameter* parameter) {
    IShader* connected = nullptr;
    if (!parameter->Get(connected)) {
        return false;
    }
    if (connected != nullptr) {
        return true;
    }
    const std::string type = parameter->GetType();
    IShader* const shader = _nullShaders[type].Get();
    if (shader == nullptr) {
        _pConsole->Error("No NULL shader for %s?", type.c_str());
    }
    return parameter->Set(shader);
}

IShader* MgrLightShaders::_CreateReceiver(const std::string& name, Result* result) {
    IShader* const shader = _pMgrEffects->CreateShader(name, result);
    auto owned = std::make_unique<Shader_LightShaderReceiver>();
    Shader_LightShaderReceiver* const receiver = owned.get();
    _receivers.emplace(receiver->GetCreationNumber(), std::move(owned));
    return receiver->Init(_pMgrEffects, shader) && !_IsGoing() ? receiver : nullptr;
}

bool MgrLightShaders::DestroyShader(IShader* shader) {
    if (shader == nullptr) {
        return true;
    }
    const Operation operation(this);
    if (auto* const receiver = dynamic_cast<Shader_LightShaderReceiver*>(shader)) {
        return _RemoveReceiver(receiver);
    }
    if (auto* const wrapper = dynamic_cast<Shader_LightShader*>(shader)) {
        return _RemoveLightShader(wrapper);
    }
    if (_pMgrEffects == nullptr) {
        return false;
    }
    _pMgrEffects->DestroyShader(shader);
    return true;
}

bool MgrLightShaders::_RemoveReceiver(Shader_LightShaderReceiver* receiver) {
    const auto found = _receivers.find(receiver->GetCreationNumber());
    if (!TOLEN_CHECK_TEXT(found != _receivers.end(), "missing record", kSource)) {
        return false;
    }
    _ending.push_back(std::move(found->second));
    _receivers.erase(found);
    return true;
}

bool MgrLightShaders::_RemoveLightShader(Shader_LightShader* wrapper) {
    IShader* const shader = wrapper->GetShader();
    if (shader == nullptr) {
        return false;
    }
    const auto record = _records.find(wrapper->GetClassName());
    if (!TOLEN_CHECK_TEXT(record != _records.end(), "Corrupted light shader record", kSource) ||
        !TOLEN_CHECK_TEXT(record->second.shader.Get() == shader, "The records don't match",
                          kSource)) {
        return false;
    }
    auto& wrappers = record->second.wrappers;
    const auto found = wrappers.find(wrapper->GetCreationNumber());
    if (!TOLEN_CHECK_TEXT(found != wrappers.end(), "LightShaderWrapper is not in the records",
                          kSource)) {
        return false;
    }
    _ending.push_back(std::move(found->second));
    wrappers.erase(found);
    return true;
}

bool MgrLightShaders::Update(bool unsupported) {
    const Operation operation(this);
    for (auto& [name, record] : _records) {
        if (!_UpdateRecord(record)) {
            return false;
        }
    }
    return TOLEN_CHECK_TEXT(!unsupported, "implement", kSource);
}

bool MgrLightShaders::_UpdateRecord(LightShaderRecord& record) {
    IShader* const shader = record.shader.Get();
    const ScopedHold hold(shader == nullptr ? nullptr : _pMgrEffects);
    int count = 0;
    for (auto it = record.wrappers.begin(); it != record.wrappers.end();) {
        const std::uint64_t number = it->first;
        if (!it->second->SetSubIndex(count, true)) {
            return false;
        }
        ++count;
        it = record.wrappers.upper_bound(number);
    }
    return shader == nullptr || (_ResizeParameters(shader, count) && _ResizeMembers(shader, count));
}

void MgrLightShaders::Shutdown() {
    if (_countOperations > 0) {
        _mustShutdown = true;
        return;
    }
    const Operation operation(this);
    _Shutdown();
}

void MgrLightShaders::_Shutdown() {
    _isShuttingDown = true;
    if (_pMgrEffects != nullptr && _ShutdownViews()) {
        for (auto& [name, record] : _records) {
            if (IShader* const shader = record.shader.Get()) {
                _pMgrEffects->DestroyShader(shader);
            }
        }
    }
    _nullShaders.clear();
    {
        // Out of the tables first: who hears of an end may look here.
        const auto records = std::move(_records);
        const auto receivers = std::move(_receivers);
        _records.clear();
        _receivers.clear();
    }
    _pMgrEffects = nullptr;
    _pConsole = nullptr;
    _isShuttingDown = false;
}

bool MgrLightShaders::_ShutdownViews() {
    // Views go first, as they hold the parameters of the real shaders.
    for (auto& [name, record] : _records) {
        while (!record.wrappers.empty()) {
            const auto wrapper = record.wrappers.extract(record.wrappers.begin());
        }
        if (!TOLEN_CHECK_TEXT(record.shader.Get() != nullptr, "null shader in the records",
                              kSource)) {
            return false;
        }
    }
    while (!_receivers.empty()) {
        const auto receiver = _receivers.extract(_receivers.begin());
        TOLEN_CHECK_TEXT(receiver.mapped()->GetShader() != nullptr, "null shader in the wrapper",
                         kSource);
    }
    _EndViews();
    return true;
}

} // namespace Tolen::Effects

#include "MgrEffectsImpl.h"

#include "EffectFactories.h"
#include "Graph.h"
#include "IFactoryEffect.h"
#include "Library.h"
#include "PreprocessorState.h"
#include "ProfileScope.h"
#include "PrototypeRequests.h"
#include "PrototypeShader.h"
#include "ScopedHold.h"
#include "Shader.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/Profiler.h"

#include "TolenCore/Console.h"
#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <algorithm>
#include <cstdarg>
#include <limits>

namespace Tolen::Effects {

namespace {

constexpr const char* kOutputColor = "o_color";

/// Takes what is said where nobody listens.
class SilentConsole : public IMgrConsole {
public:
    void Print(const char*, ...) override {}
    void Warning(const char*, ...) override {}
    void Error(const char*, ...) override {}
};

} // namespace

MgrEffectsImpl::MgrEffectsImpl()
    : _pendingEnds(MakeDelegate(this, &MgrEffectsImpl::_EndShader),
                   MakeDelegate(this, &MgrEffectsImpl::_ShutdownNow)) {}

MgrEffectsImpl::~MgrEffectsImpl() {
    _ShutdownNow();
}

bool MgrEffectsImpl::Init(IMgrEffects* mgrEffects, IMgrConsole* console, IOpenKLContext* context,
                          Result*) {
    if (_pMgrEffects != nullptr || mgrEffects == nullptr) {
        return false;
    }
    _pMgrEffects = mgrEffects;
    _pProfiler = std::make_unique<Profiler>();
    _requests = std::make_unique<PrototypeRequests>();
    _dumpTimings = false;
    _pConsole = console;
    _pOpenKLContext = context;
    // Before the manager listens, so that no client ever hears of this one.
    AcquireOutput(kType_Vec3, kOutputColor);
    FastDelegate2<TypeSpecifier, const std::string&, bool> onAdd(this,
                                                                 &MgrEffectsImpl::_OnAddOutput);
    FastDelegate1<const std::string&, bool> onRemove(this, &MgrEffectsImpl::_OnRemoveOutput);
    _outputs.AddListenerAddOutput(onAdd);
    _outputs.AddListenerRemoveOutput(onRemove);
    _keys.Clear();

    _factorySurface = CreateFactoryEffectSurface(_pMgrEffects);
    _factoryRenderer = CreateFactoryEffectRenderer(_pMgrEffects);
    _factoryPrefix = CreateFactoryEffectPrefix(_pMgrEffects);
    if (_factorySurface == nullptr || _factoryRenderer == nullptr || _factoryPrefix == nullptr) {
        Shutdown();
        return false;
    }
    return true;
}

void MgrEffectsImpl::Shutdown() {
    if (_pendingEnds.IsHeld()) {
        _pendingEnds.AddShutdown();
    } else {
        _ShutdownNow();
    }
}

bool MgrEffectsImpl::_ShutdownNow() {
    if (_pMgrEffects == nullptr || _isShuttingDown) {
        return true;
    }
    _isShuttingDown = true;
    _factorySurface.reset();
    _factoryRenderer.reset();
    _factoryPrefix.reset();

    // Prototypes of one library hold on to those of others: all let go before the first one dies.
    for (const auto& entry : _libraries) {
        entry.second->ShutdownPrototypeShaders();
    }
    while (!_libraries.empty()) {
        _libraries.erase(_libraries.begin());
    }
    _requests.reset();

    if (_dumpTimings) {
        _pProfiler->Dump();
    }
    _pProfiler.reset();
    _keys.Clear();

    FastDelegate2<TypeSpecifier, const std::string&, bool> onAdd(this,
                                                                 &MgrEffectsImpl::_OnAddOutput);
    FastDelegate1<const std::string&, bool> onRemove(this, &MgrEffectsImpl::_OnRemoveOutput);
    _outputs.RemoveListenerAddOutput(onAdd);
    _outputs.RemoveListenerRemoveOutput(onRemove);
    ReleaseOutput(kOutputColor);
    _outputs.Shutdown();
    _listenersAddOutput.Clear();
    _listenersRemoveOutput.Clear();
    _listenersChangeOutputIndices.Clear();

    _pOpenKLContext = nullptr;
    _pConsole = nullptr;
    _pMgrEffects = nullptr;
    _pResult = nullptr;
    _isShuttingDown = false;
    return true;
}

MgrEffectsImpl* MgrEffectsImpl::GetImplementation() {
    return this;
}

void MgrEffectsImpl::AddResult(Result& result) {
    if (_pResult != nullptr) {
        _pResult->Add(result);
    }
}

void MgrEffectsImpl::AddResultMessage(const char* format, ...) {
    if (_pResult == nullptr) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    const std::string message = FormatV(format, arguments);
    va_end(arguments);
    _pResult->Add("%s", message.c_str());
    _Console().Print("%s", message.c_str());
}

IMgrConsole& MgrEffectsImpl::_Console() const {
    static SilentConsole silent;
    // cppcheck-suppress returnTempReference ; both live on
    return _pConsole == nullptr ? silent : *_pConsole;
}

bool MgrEffectsImpl::AddLibrary(const std::string& name, const std::string& source,
                                Result* result) {
    const ProfileScope scope("Add Library", _pProfiler.get());
    if (_libraries.count(name) != 0) {
        return true;
    }
    auto library = std::make_unique<Library>();
    const int lineAdjustment = static_cast<int>(std::clamp<long long>(
        _lineAdjustment, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
    if (_pMgrEffects != nullptr && !_isShuttingDown &&
        library->Init(_pMgrEffects, name, source, result, lineAdjustment)) {
        _libraries.emplace(name, std::move(library));
        return true;
    }
    if (result != nullptr) {
        result->Add("Effects Manager: Failed to initialize Shader Library '%s'\n", name.c_str());
    }
    return false;
}

bool MgrEffectsImpl::AddLibrary(const std::string& file, Result* result) {
    PreprocessorState state;
    return _AddLibrary(file, state, result);
}

bool MgrEffectsImpl::VisitLibraries(const FastDelegate1<Library*, bool>& visit) const {
    for (const auto& entry : _libraries) {
        if (!visit(entry.second.get())) {
            return false;
        }
    }
    return true;
}

IPrototypeShader* MgrEffectsImpl::GetPrototypeShader(const std::string& name, Result* result) {
    const ProfileScope scope("GetPrototypeShader", _pProfiler.get());
    for (const auto& entry : _libraries) {
        if (PrototypeShader* prototype = entry.second->GetPrototypeShader(name, result)) {
            return prototype;
        }
    }
    return nullptr;
}

IPrototypeInterface* MgrEffectsImpl::GetPrototypeInterface(const std::string& name) {
    const ProfileScope scope("GetPrototypeInterface", _pProfiler.get());
    for (const auto& entry : _libraries) {
        if (IPrototypeInterface* prototype = entry.second->GetPrototypeInterface(name)) {
            return prototype;
        }
    }
    return nullptr;
}

IShader* MgrEffectsImpl::CreateShader(const std::string& name, Result* result) {
    const ProfileScope scope("CreateShader", _pProfiler.get());
    for (const auto& entry : _libraries) {
        if (IShader* shader = entry.second->CreateShader(name, result)) {
            return shader;
        }
    }
    if (result != nullptr) {
        result->Add("Could not create shader named \"%s\"", name.c_str());
    }
    return nullptr;
}

IShader* MgrEffectsImpl::CreateShader(const std::string& name) {
    const ProfileScope scope("CreateShader", _pProfiler.get());
    Result result;
    IShader* const shader = CreateShader(name, &result);
    if (shader == nullptr && _pConsole != nullptr) {
        result.ReportToConsole(_pConsole);
    }
    return shader;
}

void MgrEffectsImpl::DestroyShader(IShader* shader) {
    // A view of a shader is somebody else's, and may be gone when its turn comes.
    if (dynamic_cast<Shader*>(shader) == nullptr) {
        return;
    }
    const ScopedHold hold(this);
    _pendingEnds.AddShader(shader);
}

void MgrEffectsImpl::DestroyGraph(std::unique_ptr<Graph> graph) {
    const ScopedHold hold(this);
    _pendingEnds.AddGraph(std::move(graph));
}

bool MgrEffectsImpl::_EndShader(IShader* shader) {
    // Any library will do: the shader knows where it belongs.
    if (!_libraries.empty()) {
        _libraries.begin()->second->DestroyShader(shader);
    }
    return true;
}

bool MgrEffectsImpl::AddRayAttribute(TypeSpecifier type, const std::string& name) {
    _rayAttributes.push_back({type, name});
    return true;
}

bool MgrEffectsImpl::AddVariableGlobal(TypeSpecifier type, const std::string& name) {
    _variablesGlobal.push_back({type, name});
    return true;
}

bool MgrEffectsImpl::_VisitVariables(const std::vector<Variable>& variables, Visit& visit) {
    bool all = true;
    // By index, and with a copy: a visitor may add variables.
    for (std::size_t i = 0, count = variables.size(); i < count; ++i) {
        // NOLINTNEXTLINE(performance-unnecessary-copy-initialization)
        const Variable variable = variables[i];
        all = visit(variable.type, variable.name) && all;
    }
    return all;
}

bool MgrEffectsImpl::VisitRayAttributes(Visit& visit) {
    return _VisitVariables(_rayAttributes, visit);
}

bool MgrEffectsImpl::VisitVariablesGlobal(Visit& visit) {
    return _VisitVariables(_variablesGlobal, visit);
}

bool MgrEffectsImpl::_VisitEffects(IFactoryEffect* factory, FastDelegate1<IEffect*, bool>& visit) {
    return factory != nullptr && factory->VisitEffects(visit);
}

void MgrEffectsImpl::_DestroyEffect(IFactoryEffect* factory, IEffect* effect) {
    if (effect != nullptr && factory != nullptr) {
        factory->DestroyEffect(effect);
    }
}

bool MgrEffectsImpl::VisitEffectsSurface(FastDelegate1<IEffect*, bool>& visit) {
    return _VisitEffects(_factorySurface.get(), visit);
}

bool MgrEffectsImpl::VisitEffectsRenderer(FastDelegate1<IEffect*, bool>& visit) {
    return _VisitEffects(_factoryRenderer.get(), visit);
}

bool MgrEffectsImpl::VisitEffectsPrefix(FastDelegate1<IEffect*, bool>& visit) {
    return _VisitEffects(_factoryPrefix.get(), visit);
}

IEffect* MgrEffectsImpl::CreateEffectSurface() {
    return _factorySurface == nullptr ? nullptr : _factorySurface->CreateEffect();
}

void MgrEffectsImpl::DestroyEffectSurface(IEffect* effect) {
    _DestroyEffect(_factorySurface.get(), effect);
}

IEffect* MgrEffectsImpl::CreateEffectRenderer() {
    return _factoryRenderer == nullptr ? nullptr : _factoryRenderer->CreateEffect();
}

void MgrEffectsImpl::DestroyEffectRenderer(IEffect* effect) {
    _DestroyEffect(_factoryRenderer.get(), effect);
}

IEffect* MgrEffectsImpl::CreateEffectPrefix() {
    return _factoryPrefix == nullptr ? nullptr : _factoryPrefix->CreateEffect();
}

void MgrEffectsImpl::DestroyEffectPrefix(IEffect* effect) {
    _DestroyEffect(_factoryPrefix.get(), effect);
}

bool MgrEffectsImpl::_UpdateEffects(IFactoryEffect* factory, Result* result) {
    const auto update = [this, result](IEffect* effect) {
        if (effect == nullptr || effect->Update(result)) {
            return true;
        }
        if (result != nullptr && _pConsole != nullptr) {
            result->ReportToConsole(_pConsole);
        }
        return false;
    };
    auto visit = FastDelegate1<IEffect*, bool>::Borrow(update);
    return _VisitEffects(factory, visit);
}

bool MgrEffectsImpl::Update(Result* result) {
    const bool surface = _UpdateEffects(_factorySurface.get(), result);
    const bool prefix = _UpdateEffects(_factoryPrefix.get(), result);
    const bool renderer = _UpdateEffects(_factoryRenderer.get(), result);
    return surface && prefix && renderer;
}

bool MgrEffectsImpl::Update() {
    Result result;
    if (Update(&result)) {
        return true;
    }
    if (_pConsole != nullptr) {
        result.ReportToConsole(_pConsole);
    }
    return false;
}

bool MgrEffectsImpl::AddListenerAddOutput(MgrOutputs::ListenerAdd& listener) {
    return _listenersAddOutput.Add(listener);
}

bool MgrEffectsImpl::RemoveListenerAddOutput(MgrOutputs::ListenerAdd& listener) {
    return _listenersAddOutput.Remove(listener);
}

bool MgrEffectsImpl::AddListenerRemoveOutput(MgrOutputs::ListenerRemove& listener) {
    return _listenersRemoveOutput.Add(listener);
}

bool MgrEffectsImpl::RemoveListenerRemoveOutput(MgrOutputs::ListenerRemove& listener) {
    return _listenersRemoveOutput.Remove(listener);
}

bool MgrEffectsImpl::_OnAddOutput(TypeSpecifier type, const std::string& name) {
    return _listenersAddOutput.Fire(type, name);
}

bool MgrEffectsImpl::_OnRemoveOutput(const std::string& name) {
    return _listenersRemoveOutput.Fire(name);
}

bool MgrEffectsImpl::AcquireOutput(TypeSpecifier type, const std::string& name) {
    return _outputs.AcquireOutput(type, name);
}

bool MgrEffectsImpl::ReleaseOutput(const std::string& name) {
    return _outputs.ReleaseOutput(name);
}

int MgrEffectsImpl::GetCountOutputs() {
    return _outputs.GetCountOutputs();
}

bool MgrEffectsImpl::HasOutput(const std::string& name) {
    return _outputs.HasOutput(name);
}

bool MgrEffectsImpl::VisitOutputs(Visit& visit) {
    return _outputs.VisitOutputs(visit);
}

bool MgrEffectsImpl::SetOutputAttachmentIndex(const std::string& name, int index) {
    if (!_outputs.SetOutputAttachmentIndex(name, index)) {
        return false;
    }
    _listenersChangeOutputIndices.Fire();
    return true;
}

bool MgrEffectsImpl::GetOutputAttachmentIndex(int& index, const std::string& name) {
    return _outputs.GetOutputAttachmentIndex(index, name);
}

bool MgrEffectsImpl::ClearOutputAttachmentIndex(const std::string& name) {
    if (!_outputs.ClearOutputAttachmentIndex(name)) {
        return false;
    }
    _listenersChangeOutputIndices.Fire();
    return true;
}

bool MgrEffectsImpl::AddListenerChangeOutputIndices(FastDelegate0<bool>& listener) {
    return _listenersChangeOutputIndices.Add(listener);
}

bool MgrEffectsImpl::RemoveListenerChangeOutputIndices(FastDelegate0<bool>& listener) {
    return _listenersChangeOutputIndices.Remove(listener);
}

Key MgrEffectsImpl::CreateKey() {
    return _keys.Create(0);
}

void MgrEffectsImpl::DestroyKey(Key& key) {
    _keys.Destroy(key);
}

IMgrConsole* MgrEffectsImpl::GetConsole() const {
    return _pConsole;
}

IOpenKLContext* MgrEffectsImpl::GetOpenKLContext() const {
    return _pOpenKLContext;
}

Profiler* MgrEffectsImpl::GetProfiler() const {
    return _pProfiler.get();
}

} // namespace Tolen::Effects

#include "Library.h"

#include "FunctionIndex.h"
#include "KslParser.h"
#include "MgrEffectsImpl.h"
#include "PrototypeInterface.h"
#include "PrototypeRequests.h"
#include "PrototypeShader.h"

#include "TolenEffects/IShader.h"
#include "TolenEffects/Limits.h"
#include "TolenEffects/Module.h"

#include "TolenCore/Console.h"
#include "TolenCore/Format.h"
#include "TolenCore/Result.h"

#include <vector>

namespace Tolen::Effects {

Library::Library() = default;

Library::~Library() {
    Shutdown();
}

bool Library::Init(IMgrEffects* mgrEffects, const std::string& name, const std::string& source,
                   Result* result, int lineAdjustment) {
    _pMgrEffects = mgrEffects;
    _pModule.reset(Module::Create(nullptr));
    _name = name;
    std::vector<std::string> errors;
    // The tree's locations point at the name that they are given: it has to be the library's own.
    if (KslParser::Parse(_pModule.get(), errors, _name, source, lineAdjustment)) {
        for (ClassDefinition* definition : _pModule->GetClassDefinitions()) {
            _classes.emplace(definition->GetName()->GetString(), definition);
        }
        return true;
    }
    for (auto error = errors.rbegin(); result != nullptr && error != errors.rend(); ++error) {
        result->Add("%s", error->c_str());
    }
    Shutdown();
    ConsolePrint("Library::Init Parse\n");
    return false;
}

void Library::Shutdown() {
    ShutdownPrototypeShaders();
    while (!_prototypeShaders.empty()) {
        _Forget(_prototypeShaders.begin()->first);
    }
    _prototypeInterfaces.clear();
    _pFunctionIndex.reset();
    _classes.clear();
    _pModule.reset();
    _pMgrEffects = nullptr;
    _isClosing = false;
}

void Library::ShutdownPrototypeShaders() {
    _isClosing = true;
    for (const auto& entry : _prototypeShaders) {
        entry.second->Shutdown();
    }
}

IPrototypeInterface* Library::GetPrototypeInterface(const std::string& name) {
    if (_isClosing || _pModule == nullptr) {
        return nullptr;
    }
    const auto found = _prototypeInterfaces.find(name);
    if (found != _prototypeInterfaces.end()) {
        return found->second.get();
    }
    InterfaceDefinition* const definition = _pModule->GetInterfaceDefinition(name);
    return definition == nullptr ? nullptr : _CreatePrototypeInterface(definition);
}

IPrototypeInterface* Library::_CreatePrototypeInterface(InterfaceDefinition* definition) {
    auto prototype = std::make_unique<PrototypeInterface>();
    if (!prototype->Init(this, definition)) {
        return nullptr;
    }
    auto& entry = _prototypeInterfaces[definition->GetName()->GetString()];
    entry = std::move(prototype);
    return entry.get();
}

PrototypeShader* Library::GetPrototypeShader(const std::string& name, Result* result) {
    if (_isClosing || _pModule == nullptr) {
        return nullptr;
    }
    const auto found = _prototypeShaders.find(name);
    if (found != _prototypeShaders.end()) {
        return found->second.get();
    }
    const auto definition = _classes.find(name);
    return definition == _classes.end() ? nullptr
                                        : _CreatePrototypeShader(definition->second, result);
}

PrototypeShader* Library::_CreatePrototypeShader(ClassDefinition* definition, Result* result) {
    PrototypeRequests& requests = *_pMgrEffects->GetImplementation()->GetPrototypeRequests();
    const std::string name = definition->GetName()->GetString();
    const PrototypeRequests::Class loaded(this, name);
    if (requests.HasFailed(loaded)) {
        return nullptr;
    }
    if (requests.GetDepth() >= kLimitPrototypeDepth) {
        const std::string message = Format(
            "Limit of %d classes that refer to each other in a chain exceeded by class \"%s\" "
            "in file '%s' line %d",
            kLimitPrototypeDepth, name.c_str(), _name.c_str(), definition->GetRange().firstLine);
        ConsoleError("%s\n", message.c_str());
        if (result != nullptr) {
            result->Add("%s", message.c_str());
        }
        return nullptr;
    }

    // Entered before it is made: what refers back to the class finds it there instead of making it
    // over and over.
    auto& entry = _prototypeShaders[name];
    entry = std::make_unique<PrototypeShader>();
    PrototypeShader* const prototype = entry.get();
    requests.Begin(loaded);
    const bool good = prototype->Init(this, definition, result);
    const std::vector<PrototypeRequests::Class> unloaded = requests.End(good);
    if (good) {
        return prototype;
    }
    _Forget(name);
    for (const auto& [library, inside] : unloaded) {
        library->_Forget(inside);
    }
    return nullptr;
}

const FunctionIndex& Library::GetFunctionIndex() {
    if (_pFunctionIndex == nullptr) {
        _pFunctionIndex = std::make_unique<FunctionIndex>(_pModule.get());
    }
    return *_pFunctionIndex;
}

void Library::_Forget(const std::string& name) {
    const auto found = _prototypeShaders.find(name);
    if (found == _prototypeShaders.end()) {
        return;
    }
    // Its end may ask this library for others, and for itself.
    const std::unique_ptr<PrototypeShader> prototype = std::move(found->second);
    _prototypeShaders.erase(found);
}

IShader* Library::CreateShader(const std::string& name, Result* result) {
    PrototypeShader* const prototype = GetPrototypeShader(name, result);
    return prototype == nullptr ? nullptr : prototype->CreateShader(result);
}

void Library::DestroyShader(IShader* shader) {
    if (shader == nullptr) {
        return;
    }
    if (auto* prototype = static_cast<PrototypeShader*>(shader->GetPrototype())) {
        prototype->DestroyShader(shader);
    }
}

} // namespace Tolen::Effects

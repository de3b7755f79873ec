#include "BodyChecker.h"

#include "language/Builtins.h"
#include "language/RootText.h"
#include "language/Session.h"
#include "language/ShaderFiller.h"

#include "FunctionIndex.h"
#include "Library.h"

#include "TolenEffects/IEffect.h"
#include "TolenEffects/IPrototypeShader.h"
#include "TolenEffects/IShader.h"
#include "TolenEffects/MgrEffects.h"
#include "TolenEffects/Module.h"

#include "TolenCore/FastDelegate.h"
#include "TolenCore/Path.h"

#include <algorithm>
#include <regex>
#include <utility>

namespace Tolen::Language {

using namespace Effects;

namespace {

/// An effect of one of the kinds, which ends with its scope.
class ScopedEffect {
public:
    using Create = IEffect* (MgrEffects::*)();
    using Destroy = void (MgrEffects::*)(IEffect*);

    ScopedEffect(MgrEffects& manager, Create create, Destroy destroy)
        : _manager(manager), _destroy(destroy), _pEffect((manager.*create)()) {}
    ~ScopedEffect() { (_manager.*_destroy)(_pEffect); }
    ScopedEffect(const ScopedEffect&) = delete;
    ScopedEffect& operator=(const ScopedEffect&) = delete;

    IEffect* Get() const { return _pEffect; }

private:
    MgrEffects& _manager;
    Destroy _destroy;
    IEffect* _pEffect; ///< the manager's
};

} // namespace

/// The outcome that misses the least of what only some stages have: the code is for that stage.
BodyChecker::Outcome BodyChecker::_ChooseOutcome(const std::vector<Outcome>& outcomes) const {
    const auto countMissed = [this](const Outcome& outcome) {
        return std::count_if(outcome.messages.begin(), outcome.messages.end(),
                             [this](const Message& message) { return _IsOfStage(message.text); });
    };
    return *std::min_element(outcomes.begin(), outcomes.end(),
                             [&countMissed](const Outcome& a, const Outcome& b) {
                                 return countMissed(a) < countMissed(b);
                             });
}

/// Whether a message tells that something isn't there which is there in other stages.
bool BodyChecker::_IsOfStage(const std::string& text) const {
    static const std::regex kMissing("^(?:function )?'(\\w+)' (is not declared|belongs to)");
    std::smatch match;
    return std::regex_search(text, match, kMissing) &&
           (match[2] == "belongs to" || FindBuiltin(match[1]) != nullptr ||
            _coords.contains(match[1]));
}

BodyChecker::BodyChecker(Session& session, const std::vector<Library*>& libraries)
    : _session(session), _libraries(libraries) {
    for (const Library* const library : libraries) {
        _fileNames.insert(Path(library->GetName()).GetFileName());
        for (const ClassDefinition* definition : library->GetModule()->GetClassDefinitions()) {
            for (const auto& [name, coord] : definition->GetCoords()) {
                _coords.insert(name);
            }
        }
    }
}

BodyChecker::~BodyChecker() = default;

void BodyChecker::AddClass(const Library& library, const ClassDefinition& definition) {
    const std::string& name = definition.GetName()->GetString();
    // Of classes with one name, roots get the first.
    for (Library* const other : _libraries) {
        if (other == &library) {
            break;
        }
        if (other->GetModule()->GetClassDefinition(name) != nullptr) {
            return;
        }
    }
    Root root{&library, &definition, {}, {}};
    for (const FunctionDefinition* const method : definition.GetMemberFunctions()) {
        root.methods.push_back(method->GetFunctionPrototype());
    }
    _roots.push_back(std::move(root));
}

void BodyChecker::AddFunctions(const Library& library) {
    Root root{&library, nullptr, {}, {}};
    for (const FunctionDefinition* const function : library.GetModule()->GetFunctionDefinitions()) {
        const std::string& name = function->GetFunctionPrototype()->GetName()->GetString();
        const auto isBefore = [&library, &name](Library* other) {
            return other->GetName() < library.GetName() &&
                   !other->GetFunctionIndex().Find(name).empty();
        };
        if (std::none_of(_libraries.begin(), _libraries.end(), isBefore)) {
            root.methods.push_back(function->GetFunctionPrototype());
        }
    }
    if (!root.methods.empty()) {
        _roots.push_back(std::move(root));
    }
}

void BodyChecker::Check() {
    _pStatics = std::make_unique<ShaderFiller>(_session.GetManager(), _implementations);
    _AddImplementations();
    // Messages about one method would hide those of others, and methods of one class may be for
    // different effects. So what can't be compiled as a whole is compiled method by method.
    if (_MakeRoots(_roots)) {
        std::vector<Root> parts = _Split(_CheckRoots(_roots));
        if (_MakeRoots(parts)) {
            _CheckRoots(parts);
        }
    }
}

bool BodyChecker::_AddLibrary(const std::string& text) {
    Result result;
    const std::string name = std::string(kMadeLibrary) + std::to_string(_countMade++);
    const bool isAdded = _session.GetManager().AddLibrary(name, text, &result);
    _session.TakeMessages(result);
    return isAdded;
}

void BodyChecker::_AddImplementations() {
    std::string text;
    for (const Library* const library : _libraries) {
        for (const InterfaceDefinition* const definition :
             library->GetModule()->GetInterfaceDefinitions()) {
            const std::string& name = definition->GetName()->GetString();
            const std::string implementation = std::string(kMadeImplementation) + name;
            if (_implementations.emplace(name, implementation).second) {
                text += MakeImplementation(implementation, *definition);
            }
        }
    }
    if (!text.empty() && !_AddLibrary(text)) {
        _implementations.clear();
    }
    for (const Root& root : _roots) {
        Result ignored;
        IPrototypeShader* const prototype =
            root.pClass == nullptr ? nullptr
                                   : _session.GetManager().GetPrototypeShader(
                                         root.pClass->GetName()->GetString(), &ignored);
        if (prototype != nullptr) {
            _pStatics->Fill(*prototype);
        }
    }
}

bool BodyChecker::_MakeRoots(std::vector<Root>& roots) {
    std::string text;
    for (Root& root : roots) {
        root.name = "TolenCheckRoot_" + std::to_string(_countMade++);
        text += MakeRoot(root.name, root.pClass, root.methods);
    }
    return !text.empty() && _AddLibrary(text);
}

std::vector<BodyChecker::Root> BodyChecker::_Split(const std::vector<Root>& roots) const {
    std::vector<Root> parts;
    for (const Root& root : roots) {
        for (const FunctionPrototype* const method : root.methods) {
            parts.push_back({root.pLibrary, root.pClass, {method}, {}});
        }
    }
    return parts;
}

/// Reports what is wrong with roots that can't be taken apart. @return those that can
std::vector<BodyChecker::Root> BodyChecker::_CheckRoots(const std::vector<Root>& roots) {
    std::vector<Root> bad;
    for (const Root& root : roots) {
        const Outcome outcome = _CheckRoot(root);
        if (!outcome.isGood && root.methods.size() > 1) {
            bad.push_back(root);
        } else {
            _Report(root, outcome);
        }
    }
    return bad;
}

/// The outcome for the stage that takes the root, or else for the one that it is most likely for.
BodyChecker::Outcome BodyChecker::_CheckRoot(const Root& root) {
    std::vector<Stage> stages{kStage_Surface, kStage_Renderer, kStage_Prefix};
    if (root.methods.size() == 1 && root.methods.front()->GetName()->GetString() == "Render") {
        std::swap(stages[0], stages[1]);
    }
    std::vector<Outcome> outcomes;
    for (const Stage stage : stages) {
        outcomes.push_back(_Compile(root, stage));
        if (outcomes.back().isGood) {
            return outcomes.back();
        }
    }
    return _ChooseOutcome(outcomes);
}

BodyChecker::Outcome BodyChecker::_Compile(const Root& root, Stage stage) {
    static constexpr std::pair<ScopedEffect::Create, ScopedEffect::Destroy> kKinds[kStage_Count] = {
        {&MgrEffects::CreateEffectSurface, &MgrEffects::DestroyEffectSurface},
        {&MgrEffects::CreateEffectRenderer, &MgrEffects::DestroyEffectRenderer},
        {&MgrEffects::CreateEffectPrefix, &MgrEffects::DestroyEffectPrefix}};

    MgrEffects& manager = _session.GetManager();
    Outcome outcome;
    Result result;
    {
        ShaderFiller filler(manager, _implementations);
        IShader* const shader = filler.Make(root.name);
        _session.TakeMessages(result);
        if (shader == nullptr) {
            outcome.isGood = true; // nothing is known against it
            return outcome;
        }
        const ScopedEffect effect(manager, kKinds[stage].first, kKinds[stage].second);
        outcome.isGood = effect.Get() != nullptr && effect.Get()->SetName(root.name) &&
                         effect.Get()->SetRoot(shader) && effect.Get()->Update(&result);
    }
    outcome.messages = _TakeMessages(root, result);
    return outcome;
}

std::vector<Message> BodyChecker::_TakeMessages(const Root& root, Result& result) {
    std::vector<Message> diary;
    std::vector<Message> messages = _session.TakeMessages(result, &diary);
    // Messages about texts that were made here would mean nothing to anybody, nor would those that
    // only tell that there were others.
    const Session::Context context = _MakeContext(root);
    std::erase_if(messages, [&](const Message& message) {
        return !_fileNames.contains(Path(message.file).GetFileName()) &&
               !_session.GetPlacer().MeansSources(message, context);
    });
    for (Message& message : diary) {
        if (message.text.find("accumulate() call") != std::string::npos) {
            const bool isLeftOut = message.text.find("call omitted") != std::string::npos;
            message.severity =
                isLeftOut ? Diagnostic::kSeverity_Warning : Diagnostic::kSeverity_Error;
            messages.push_back(std::move(message));
        }
    }
    return messages;
}

Session::Context BodyChecker::_MakeContext(const Root& root) {
    return {root.pLibrary->GetName(),
            root.pClass == nullptr ? std::string() : root.pClass->GetName()->GetString()};
}

void BodyChecker::_Report(const Root& root, const Outcome& outcome) {
    _session.Add(outcome.messages, _MakeContext(root));
}

} // namespace Tolen::Language

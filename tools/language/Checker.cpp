#include "Checker.h"

#include "language/BodyChecker.h"
#include "language/Session.h"

#include "Library.h"
#include "MgrEffectsImpl.h"
#include "TolenEffects/Module.h"

#include "TolenCore/FastDelegate.h"

#include <utility>

namespace Tolen::Language {

using namespace Effects;

struct Checker::Texts {
    SourceTexts texts;
};

/// One check, from an empty manager on.
class Checker::Run {
public:
    explicit Run(const Checker& checker)
        : _names(checker._names), _session(checker._searchPaths, checker._pTexts->texts) {}

    const std::set<std::string>& GetFiles() const { return _session.GetAssets().GetAsked(); }

    std::vector<Diagnostic> Check(const std::vector<std::string>& files);

private:
    bool _AddLibrary(Library* library) {
        _libraries.push_back(library);
        return true;
    }
    bool _CheckClass(Library& library, const ClassDefinition& definition);

    const ClientNames& _names;
    Session _session;
    std::vector<Library*> _libraries; ///< also those that others have imported
};

std::vector<Diagnostic> Checker::Run::Check(const std::vector<std::string>& files) {
    std::string error;
    if (!_session.Start(_names, error)) {
        Diagnostic diagnostic;
        diagnostic.text = error;
        return {diagnostic};
    }
    _session.LoadLibraries(files);
    _session.GetManager().GetImplementation()->VisitLibraries(
        MakeDelegate(this, &Run::_AddLibrary));
    BodyChecker bodies(_session, _libraries);
    for (Library* const library : _libraries) {
        for (const ClassDefinition* definition : library->GetModule()->GetClassDefinitions()) {
            if (_CheckClass(*library, *definition)) {
                bodies.AddClass(*library, *definition);
            }
        }
        bodies.AddFunctions(*library);
        for (const PlacedMessage& lost :
             _session.GetPlacer().FindLostVariables(library->GetName())) {
            _session.Add(lost, Diagnostic::kSeverity_Warning);
        }
    }
    bodies.Check();
    return _session.GetDiagnostics();
}

/// Loads a class and makes a shader of it, which also evaluates the defaults of its inputs.
/// @return whether that could be done
bool Checker::Run::_CheckClass(Library& library, const ClassDefinition& definition) {
    Result result;
    IShader* const shader = library.CreateShader(definition.GetName()->GetString(), &result);
    _session.Report(result, shader != nullptr,
                    {library.GetName(), definition.GetName()->GetString()});
    library.DestroyShader(shader);
    return shader != nullptr;
}

Checker::Checker() : _pTexts(std::make_unique<Texts>()) {}

Checker::~Checker() = default;

void Checker::AddSearchPath(const std::string& folder) {
    _searchPaths.push_back(folder);
}

void Checker::SetText(const std::string& file, const std::string& text) {
    _pTexts->texts[FullPath(file)] = text;
}

void Checker::RemoveText(const std::string& file) {
    _pTexts->texts.erase(FullPath(file));
}

std::vector<Diagnostic> Checker::Check(const std::vector<std::string>& files) {
    Run run(*this);
    std::vector<Diagnostic> diagnostics = run.Check(files);
    _files = run.GetFiles();
    return diagnostics;
}

} // namespace Tolen::Language

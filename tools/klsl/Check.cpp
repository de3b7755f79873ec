#include "Commands.h"
#include "PlaceFinder.h"
#include "Session.h"

#include "Library.h"
#include "MgrEffectsImpl.h"
#include "TolenEffects/Module.h"

#include "TolenCore/FastDelegate.h"

#include <vector>

namespace Tolen::Klsl {

namespace {

using namespace Effects;

/// Takes down the libraries of a manager, also those that others have imported.
struct LibraryList {
    bool Add(Library* library) {
        libraries.push_back(library);
        return true;
    }

    std::vector<Library*> libraries;
};

/// Loads a class and makes a shader of it, which also evaluates the defaults of its inputs.
void CheckClass(Session& session, Library& library, const ClassDefinition& definition,
                const PlaceFinder& places) {
    Result result;
    IShader* const shader = library.CreateShader(definition.GetName()->GetString(), &result);
    const Diagnostic place = PlaceFinder::PlaceOf(library, definition);
    session.Report(result, shader != nullptr, [&](const std::string& text) {
        return places.Find(text, place);
    });
    library.DestroyShader(shader);
}

} // namespace

int Check(const Options& options) {
    Session session(options);
    if (!session.Start()) {
        return 1;
    }
    session.LoadLibraries();
    LibraryList list;
    session.GetManager().GetImplementation()->VisitLibraries(MakeDelegate(&list, &LibraryList::Add));
    const PlaceFinder places(list.libraries);
    for (Library* const library : list.libraries) {
        for (const ClassDefinition* definition : library->GetModule()->GetClassDefinitions()) {
            CheckClass(session, *library, *definition, places);
        }
    }
    return session.HasErrors() ? 1 : 0;
}

} // namespace Tolen::Klsl

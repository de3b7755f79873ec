#pragma once

#include "language/Message.h"
#include "language/MessagePlacer.h"

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Effects {
class ClassDefinition;
class FunctionPrototype;
class Library;
} // namespace Tolen::Effects

namespace Tolen::Language {

class Session;
class ShaderFiller;

/// Compiles the code of classes and functions to find what is wrong with it, whether or not there
/// is a program that uses it: roots are made that call all of it. What can be compiled for one kind
/// of effect is right. What can't be called, such as a function with a cube map, is passed over.
class BodyChecker {
public:
    /// @param session, libraries borrowed
    BodyChecker(Session& session, const std::vector<Effects::Library*>& libraries);
    ~BodyChecker();

    /// Adds a class whose methods are to be checked. Only classes that can be loaded.
    void AddClass(const Effects::Library& library, const Effects::ClassDefinition& definition);
    /// Adds the functions of a library.
    void AddFunctions(const Effects::Library& library);

    /// Compiles what has been added and reports to the session.
    void Check();

private:
    enum Stage { kStage_Surface, kStage_Renderer, kStage_Prefix, kStage_Count };

    /// What one root calls.
    struct Root {
        const Effects::Library* pLibrary;
        const Effects::ClassDefinition* pClass; ///< null for functions outside of classes
        std::vector<const Effects::FunctionPrototype*> methods;
        std::string name;
    };
    /// What came of the compilation for one stage.
    struct Outcome {
        bool isGood = false;
        std::vector<Message> messages; ///< those about texts of the user
    };

    bool _AddLibrary(const std::string& text);
    void _AddImplementations();
    bool _MakeRoots(std::vector<Root>& roots);
    std::vector<Root> _Split(const std::vector<Root>& roots) const;
    std::vector<Root> _CheckRoots(const std::vector<Root>& roots);
    Outcome _CheckRoot(const Root& root);
    Outcome _ChooseOutcome(const std::vector<Outcome>& outcomes) const;
    bool _IsOfStage(const std::string& text) const;
    Outcome _Compile(const Root& root, Stage stage);
    std::vector<Message> _TakeMessages(const Root& root, Result& result);
    static MessagePlacer::Context _MakeContext(const Root& root);
    void _Report(const Root& root, const Outcome& outcome);

    Session& _session;
    std::vector<Effects::Library*> _libraries;
    std::set<std::string> _fileNames;                    ///< of the libraries, without folders
    std::set<std::string> _coords;                       ///< the names of all coords
    std::map<std::string, std::string> _implementations; ///< by their interfaces
    std::unique_ptr<ShaderFiller> _pStatics;             ///< of the static inputs
    std::vector<Root> _roots;
    int _countMade = 0;
};

} // namespace Tolen::Language

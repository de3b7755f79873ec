#pragma once

#include "Diagnostic.h"
#include "Options.h"
#include "SourceLines.h"

#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Assets.h"
#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>

namespace Tolen::Klsl {

/// A manager on the embedded OpenKL, with everything that it says collected and shown.
class Session {
public:
    explicit Session(const Options& options);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the manager. @return false, told on stderr, when that fails
    bool Start();

    /// Loads all libraries of the command line and shows what is wrong with them.
    /// @return whether all of them could be loaded
    bool LoadLibraries();

    /// Where a message belongs that tells no place itself: file, line and subject.
    using PlaceOf = std::function<Diagnostic(const std::string& text)>;

    /// Shows what the console and @p result have got since the last report, and empties both. What
    /// has been shown before is passed over.
    /// @param success of what was done since; a failure without a message is shown as one
    void Report(Result& result, bool success, const PlaceOf& placeOf);

    bool HasErrors() const { return _hasErrors; }
    Effects::MgrEffects& GetManager() { return *_pManager; }
    OpenKL::IContext& GetContext() { return *_pContext; }

private:
    class Sink;

    void _Show(const Diagnostic& diagnostic);
    std::string _FindFile(const std::string& name, const std::string& likely) const;

    const Options& _options;
    MgrAssets _assets;
    IMgrAssets* _pAssetsBefore; ///< borrowed
    std::unique_ptr<Sink> _pSink;
    MgrConsole _console;
    IMgrConsole* _pConsoleBefore; ///< borrowed
    OpenKL::IContext* _pContext = nullptr; ///< owned, given back to DestroyContext
    std::unique_ptr<Effects::MgrEffects> _pManager;
    std::map<std::string, std::string> _files; ///< full paths with the names on the command line
    SourceLines _lines;
    std::set<std::string> _shown;
    bool _hasErrors = false;
};

} // namespace Tolen::Klsl

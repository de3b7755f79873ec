#pragma once

#include "language/ClientNames.h"
#include "language/Diagnostic.h"
#include "language/Message.h"
#include "language/MessagePlacer.h"
#include "language/ParserErrors.h"
#include "language/Preprocessor.h"
#include "language/SourceAssets.h"

#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <tuple>
#include <vector>

namespace Tolen::Language {

/// A manager on the embedded OpenKL, with everything that it says collected. Takes the place of the
/// process's console and assets for as long as it lives.
class Session {
public:
    /// @param texts borrowed; stand for the files of their full paths
    Session(const std::vector<std::string>& searchPaths, const SourceTexts& texts);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts the manager. @return false, with the reason in @p error, when that fails
    bool Start(const ClientNames& names, std::string& error);

    /// Loads libraries and reports what is wrong with them.
    /// @return whether all of them could be loaded
    bool LoadLibraries(const std::vector<std::string>& files);

    /// What was being done when messages came.
    using Context = MessagePlacer::Context;

    /// Takes down what the console and @p result have got since the last report, and empties both.
    /// What has been reported before is passed over.
    /// @param success of what was done since; a failure without a message is reported as one
    void Report(Result& result, bool success, const Context& context);

    /// Takes what the console and @p result have got, and empties both.
    /// @param pDiary unless null, takes what the console got that isn't meant as a complaint
    std::vector<Message> TakeMessages(Result& result, std::vector<Message>* pDiary = nullptr);
    /// Takes messages down. What has been reported before is passed over.
    void Add(const std::vector<Message>& messages, const Context& context);

    void Add(const PlacedMessage& message, Diagnostic::Severity severity);

    /// What has been reported: the messages of one file together in the order of its lines; files
    /// as they were loaded, then others as they came up.
    std::vector<Diagnostic> GetDiagnostics() const;

    Effects::MgrEffects& GetManager() { return *_pManager; }
    OpenKL::IContext& GetContext() { return *_pContext; }
    const SourceAssets& GetAssets() const { return _assets; }
    MessagePlacer& GetPlacer() { return *_pPlacer; }

private:
    class Sink;

    Diagnostic _Place(const Message& message, const Context& context);
    bool _PlaceOfParser(const Message& message, Diagnostic& diagnostic);
    bool _PlaceOfPreprocessor(const Message& message, Diagnostic& diagnostic);
    Diagnostic _MakeDiagnostic(const PlacedMessage& message, Diagnostic::Severity severity) const;
    bool _HasErrorIn(const IndexedSymbol& symbol) const;
    void _SetPlace(const FilePlace& place, Diagnostic& diagnostic) const;
    void _AddNote(const FilePlace& place, const std::string& text, Diagnostic& diagnostic) const;
    void _Add(Diagnostic diagnostic);
    std::string _NameOf(const std::string& path) const;

    SourceAssets _assets;
    IMgrAssets* _pAssetsBefore; ///< borrowed
    std::unique_ptr<Sink> _pSink;
    MgrConsole _console;
    IMgrConsole* _pConsoleBefore;          ///< borrowed
    OpenKL::IContext* _pContext = nullptr; ///< owned, given back to DestroyContext
    std::unique_ptr<Effects::MgrEffects> _pManager;
    ClientNames _names;
    std::unique_ptr<Preprocessor> _pPreprocessor;
    std::unique_ptr<SourceIndex> _pIndex;
    std::unique_ptr<MessagePlacer> _pPlacer;
    /// What is to come from the parser, by the full paths of libraries.
    std::map<std::string, std::deque<ParserError>> _parserErrors;
    std::map<std::string, std::string> _files; ///< full paths with the names that they came by
    std::vector<std::string> _fileOrder;       ///< as reported
    std::vector<Diagnostic> _diagnostics;
    std::set<std::tuple<std::string, int, std::string>> _reported;
};

} // namespace Tolen::Language

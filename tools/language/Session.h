#pragma once

#include "language/ClientNames.h"
#include "language/Diagnostic.h"
#include "language/Message.h"
#include "language/ParserErrors.h"
#include "language/Preprocessor.h"
#include "language/SourceAssets.h"

#include "TolenEffects/MgrEffects.h"
#include "TolenOpenKL/IContext.h"

#include "TolenCore/Console.h"
#include "TolenCore/Result.h"

#include <deque>
#include <functional>
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

    /// Where a message belongs that tells no place itself: a file, a line and a column.
    using PlaceOf = std::function<Diagnostic(const std::string& text)>;

    /// Takes down what the console and @p result have got since the last report, and empties both.
    /// What has been reported before is passed over.
    /// @param success of what was done since; a failure without a message is reported as one
    void Report(Result& result, bool success, const PlaceOf& placeOf);

    /// Takes what the console and @p result have got, and empties both.
    /// @param pDiary unless null, takes what the console got that isn't meant as a complaint
    std::vector<Message> TakeMessages(Result& result, std::vector<Message>* pDiary = nullptr);
    /// Takes messages down. What has been reported before is passed over.
    void Add(const std::vector<Message>& messages, const PlaceOf& placeOf);

    /// What has been reported: the messages of one file together in the order of its lines; files
    /// as they were loaded, then others as they came up.
    std::vector<Diagnostic> GetDiagnostics() const;

    Effects::MgrEffects& GetManager() { return *_pManager; }
    OpenKL::IContext& GetContext() { return *_pContext; }
    const SourceAssets& GetAssets() const { return _assets; }

private:
    class Sink;

    Diagnostic _Place(const Message& message, const PlaceOf& placeOf);
    bool _PlaceOfParser(const Message& message, Diagnostic& diagnostic);
    bool _PlaceOfPreprocessor(const Message& message, Diagnostic& diagnostic);
    void _SetPlace(const FilePlace& place, Diagnostic& diagnostic) const;
    void _AddNote(const FilePlace& place, const std::string& text, Diagnostic& diagnostic) const;
    void _Add(Diagnostic diagnostic);
    std::string _FindFile(const std::string& name, const std::string& likely) const;
    std::string _NameOf(const std::string& path) const;

    SourceAssets _assets;
    IMgrAssets* _pAssetsBefore; ///< borrowed
    std::unique_ptr<Sink> _pSink;
    MgrConsole _console;
    IMgrConsole* _pConsoleBefore;          ///< borrowed
    OpenKL::IContext* _pContext = nullptr; ///< owned, given back to DestroyContext
    std::unique_ptr<Effects::MgrEffects> _pManager;
    std::unique_ptr<Preprocessor> _pPreprocessor;
    /// What is to come from the parser, by the full paths of libraries.
    std::map<std::string, std::deque<ParserError>> _parserErrors;
    std::map<std::string, std::string> _files; ///< full paths with the names that they came by
    std::vector<std::string> _fileOrder;       ///< as reported
    std::vector<Diagnostic> _diagnostics;
    std::set<std::tuple<std::string, int, std::string>> _reported;
};

} // namespace Tolen::Language

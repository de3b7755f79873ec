#pragma once

#include "language/ClientNames.h"
#include "language/Diagnostic.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace Tolen::Language {

/// Finds out what is wrong with KLSL libraries: loads them, loads all of their classes, and
/// compiles the code of these with the embedded OpenKL. A check starts afresh each time; nothing of
/// an earlier one is left. One checker at a time in a process, since it takes the place of the
/// process's console and assets while it checks.
class Checker {
public:
    Checker();
    ~Checker();
    Checker(const Checker&) = delete;
    Checker& operator=(const Checker&) = delete;

    /// A folder to look for libraries and included files in.
    void AddSearchPath(const std::string& folder);

    /// What the client of the libraries adds to the language.
    void SetClientNames(const ClientNames& names) { _names = names; }

    /// Lets @p text stand for a file, as an editor holds it before it is saved.
    /// @param file an absolute path
    void SetText(const std::string& file, const std::string& text);
    /// Goes back to what is on disk.
    void RemoveText(const std::string& file);

    /// Checks libraries together, which may refer to each other.
    /// @return the messages, those of one file together in the order of its lines; files in the
    ///         order of @p files, others that these include or import behind them. Files are named
    ///         as in @p files, others by their full paths
    std::vector<Diagnostic> Check(const std::vector<std::string>& files);

    /// The full paths of all files that the last check looked for, there or not: when one of them
    /// changes, another check may say something else.
    const std::set<std::string>& GetFiles() const { return _files; }

private:
    class Run;

    std::vector<std::string> _searchPaths;
    ClientNames _names;
    std::set<std::string> _files;
    struct Texts;
    std::unique_ptr<Texts> _pTexts;
};

} // namespace Tolen::Language

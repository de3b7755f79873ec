#pragma once

#include "language/Diagnostic.h"

#include <memory>
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

    /// Lets @p text stand for a file, as an editor holds it before it is saved.
    /// @param file an absolute path
    void SetText(const std::string& file, const std::string& text);
    /// Goes back to what is on disk.
    void RemoveText(const std::string& file);

    /// Checks libraries together, which may refer to each other.
    /// @return the messages, those of one file together in the order of its lines; files in the
    /// order
    ///         of @p files, others that these include or import behind them. Files are named as in
    ///         @p files
    std::vector<Diagnostic> Check(const std::vector<std::string>& files);

private:
    class Run;

    std::vector<std::string> _searchPaths;
    struct Texts;
    std::unique_ptr<Texts> _pTexts;
};

} // namespace Tolen::Language

#pragma once

#include <map>
#include <string>
#include <vector>

namespace Tolen::Klsl {

/// Shows places in source files, each of which is read once.
class SourceLines {
public:
    /// @return line @p line, from 1, of @p file; null when there is none
    const std::string* Find(const std::string& file, int line);

private:
    std::map<std::string, std::vector<std::string>> _files;
};

/// The blanks and the "^" that go under @p line to point at its token @p subject, which may also be
/// a kind of token such as "int constant".
/// @return an empty text when the token isn't there or stands there more than once
std::string Caret(const std::string& line, const std::string& subject);

} // namespace Tolen::Klsl

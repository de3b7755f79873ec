#pragma once

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {

/// The path of a file, held in one normal form: "/" between parts, no doubled separators, no "."
/// parts, and ".." folded into the part before it where there is one.
class TOLEN_EXPORT Path {
public:
    Path() = default;
    Path(const std::string& text);
    Path(const char* text) : Path(std::string(text == nullptr ? "" : text)) {}

    /// The whole text; lives as long as the path.
    const char* AsChar() const { return _text.c_str(); }
    const std::string& AsString() const { return _text; }

    bool IsEmpty() const { return _text.empty(); }
    bool IsAbsolute() const { return !_text.empty() && _text.front() == '/'; }

    /// The folder, without a separator at its end; empty for a bare file name.
    Path GetFolder() const;
    /// The last part.
    std::string GetFileName() const;
    /// This path with @p other behind it; @p other itself when it is absolute.
    Path operator/(const Path& other) const;

    friend bool operator==(const Path& a, const Path& b) { return a._text == b._text; }
    friend bool operator!=(const Path& a, const Path& b) { return a._text != b._text; }
    friend bool operator<(const Path& a, const Path& b) { return a._text < b._text; }

private:
    std::string _text;
};

} // namespace Tolen

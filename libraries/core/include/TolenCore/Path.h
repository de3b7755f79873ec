#pragma once

#include "TolenCore/Export.h"

#include <string>

namespace Tolen {

/// The path of a file, held in one normal form: "/" between parts, no doubled separators, no "."
/// parts, and ".." folded into the part before it where there is one.
class TOLEN_EXPORT Path {
public:
    /// The empty path, which names nothing.
    Path() = default;
    /// Brings @p text into the normal form. ".." has no effect at the root; elsewhere one
    /// that has nothing to fold into stays in front.
    Path(const std::string& text);
    /// Brings @p text into the normal form; null gives the empty path.
    Path(const char* text) : Path(std::string(text == nullptr ? "" : text)) {}

    /// The whole text; lives as long as the path.
    const char* AsChar() const { return _text.c_str(); }
    /// The whole text.
    const std::string& AsString() const { return _text; }

    /// Whether this is the empty path, as "." is, too.
    bool IsEmpty() const { return _text.empty(); }
    /// Whether the path begins with "/".
    bool IsAbsolute() const { return !_text.empty() && _text.front() == '/'; }

    /// The folder, without a separator at its end; "/" in the root, empty for a bare file name.
    Path GetFolder() const;
    /// The last part; empty for the empty path and for "/".
    std::string GetFileName() const;
    /// This path with @p other behind it; @p other itself when it is absolute.
    Path operator/(const Path& other) const;

    /// Whether the normal forms are the same; nobody looks at files, nor follows links.
    friend bool operator==(const Path& a, const Path& b) { return a._text == b._text; }
    /// Whether the normal forms differ.
    friend bool operator!=(const Path& a, const Path& b) { return a._text != b._text; }
    /// By the bytes of the normal forms.
    friend bool operator<(const Path& a, const Path& b) { return a._text < b._text; }

private:
    std::string _text;
};

} // namespace Tolen

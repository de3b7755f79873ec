#pragma once

#include "Protocol.h"

#include "language/SourceText.h"

#include <cstddef>

namespace Tolen::LanguageServer {

/// Turns offsets into the positions of the protocol, whose lines and columns count from 0, in the
/// units that client and server have agreed on.
class Positions {
public:
    enum Encoding { kEncoding_Utf16, kEncoding_Utf8 };

    /// Takes the first encoding that the client lists and that is known here; all know UTF-16.
    void Negotiate(const Json& clientCapabilities);
    const char* GetEncodingName() const { return _encoding == kEncoding_Utf8 ? "utf-8" : "utf-16"; }

    Json MakePosition(const Language::SourceText& text, std::size_t offset) const;
    Json MakeRange(const Language::SourceText& text, const Language::SourceRange& range) const;

    /// Positions beyond a line or the text are taken for its end.
    /// @throw RequestError when @p position is none
    std::size_t GetOffset(const Language::SourceText& text, const Json& position) const;
    Language::SourceRange GetRange(const Language::SourceText& text, const Json& range) const;

private:
    Encoding _encoding = kEncoding_Utf16;
};

} // namespace Tolen::LanguageServer

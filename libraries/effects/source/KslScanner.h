#pragma once

#include <cstdint>
#include <string>

namespace Tolen::Effects {

class IParser;
struct LocationRange;

/// Cuts preprocessed KLSL text into tokens and hands them to an IParser.
///
/// Each token is the longest stretch of text that forms one, so tokens need no separator: "08" is
/// two integers, "1.5.5" two floats. Nothing is allocated; texts are passed on in place. A scanner
/// serves one text.
class KslScanner {
public:
    /// Sets out to scan @p source.
    /// @param parser borrowed, takes the tokens
    /// @param source borrowed, stays as it is until Scan has returned
    /// @param line   the number of lines before the first one of @p source; may be negative
    /// @return true
    bool Init(IParser* parser, const std::string& source, int line);

    /// Delivers all tokens up to the end of the text, or up to a character that starts none.
    ///
    /// Lines count from Init's line + 1. Columns count from 0 on the first line and from 1 on all
    /// others, as if each line began with the line feed before it. A line comment without a line
    /// feed behind it is no comment; a block comment without an end reaches to the end of the text.
    /// @return false for an empty text, and when an illegal character ended the scan
    bool Scan();

private:
    enum State : std::int32_t { kState_Error = 0, kState_Start = 13 };

    void _ScanToken();
    void _ScanWord();
    void _ScanNumber();
    void _ScanInteger(const char* end, int base);
    void _ScanFloat(const char* end);
    void _ScanOperator(int token, int length);
    void _ScanSlash();
    void _SkipLineComment();
    void _SkipBlockComment();
    void _NewLine(const char* lineFeed);

    char _At(const char* position) const { return position < _end ? *position : '\0'; }
    LocationRange _Location() const;

    IParser* _pParser = nullptr;        ///< borrowed
    const char* _tokenStart = nullptr;  ///< the token in work
    const char* _tokenEnd = nullptr;    ///< one past its last character
    State _state = kState_Start;
    const char* _cursor = nullptr;
    const char* _end = nullptr;         ///< one past the last character of the text
    const char* _lastLineFeed = nullptr; ///< the last one in the text; null if there is none
    const char* _lineStart = nullptr;   ///< the line feed before the line, or the start of the text
    std::int32_t _line = 0;
};

} // namespace Tolen::Effects

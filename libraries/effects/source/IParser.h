#pragma once

namespace Tolen::Effects {

struct LocationRange;

/// Takes the tokens of a KLSL text, one call each and in the order of the text, from a KslScanner.
///
/// Ranges come without a file. Texts point into the scanned buffer and aren't terminated. The
/// scanner goes on whatever an operation answers.
class IParser {
public:
    virtual ~IParser() = default;

    /// "true" or "false".
    virtual void ParseConstantBool(const LocationRange& range, bool value) = 0;
    /// @param value of 32 bits: what was written above 2147483647 arrives as a negative number
    virtual bool ParseConstantInt(const LocationRange& range, long value) = 0;
    /// @param text the spelling, with the "f" behind it if there is one
    virtual bool ParseConstantFloat(const LocationRange& range, const char* text, int length) = 0;
    /// A keyword or an operator. @param token one of KslToken
    virtual bool ParseKeyword(const LocationRange& range, int token) = 0;
    virtual bool ParseIdentifier(const LocationRange& range, const char* text, int length) = 0;
    /// A line feed, be it in plain text or in a comment.
    virtual bool NewLine() = 0;
};

} // namespace Tolen::Effects

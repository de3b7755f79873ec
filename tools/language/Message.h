#pragma once

#include "language/Diagnostic.h"

#include <string>
#include <vector>

namespace Tolen {
class Result;
} // namespace Tolen

namespace Tolen::Language {

/// One message of the library, with the place that it tells.
struct Message {
    Diagnostic::Severity severity = Diagnostic::kSeverity_Error;
    std::string file;          ///< with or without its folders; empty when the message tells none
    int line = 0;              ///< as told; 0 when the message tells none
    std::string text;          ///< what is wrong, on one line
    bool isOfCompiler = false; ///< tells a line of the generated code's source
    bool isOfParser = false;
    std::vector<Message> notes;
};

/// Takes a text of the library apart. Each line may begin with its place, as "file(12) : text" or
/// "file:12: text", or tell it at its end, as "... in file 'file' line 12"; notes go with the
/// message before them. Lines of more than 2,000 bytes are cut.
std::vector<Message> ReadMessages(Diagnostic::Severity severity, const std::string& text);

/// The messages of @p result in the order of the source: those of the parser are in reverse. The
/// few words that the evaluation of defaults leaves at each level on its way out become one
/// message, from the outside inwards.
std::vector<Message> ReadMessages(const Result& result);

} // namespace Tolen::Language
